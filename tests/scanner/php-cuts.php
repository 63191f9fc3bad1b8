<?php
// Reads file names from standard input. For each it prints the file's name and how PHP's own tokenizer cuts it, as
// "CLASS LENGTH" lines in characters, with the splits and merges that the region source makes by intent.

const CASTS = [T_INT_CAST, T_DOUBLE_CAST, T_STRING_CAST, T_ARRAY_CAST, T_OBJECT_CAST, T_BOOL_CAST, T_UNSET_CAST];
const COMPOUND = [T_PLUS_EQUAL, T_MINUS_EQUAL, T_MUL_EQUAL, T_POW_EQUAL, T_DIV_EQUAL, T_CONCAT_EQUAL, T_MOD_EQUAL,
    T_AND_EQUAL, T_OR_EQUAL, T_XOR_EQUAL, T_SL_EQUAL, T_SR_EQUAL];

function cut(string $class, string $text): void
{
    if ($text !== '') {
        echo $class, ' ', mb_strlen($text, 'UTF-8'), "\n";
    }
}

/** The texts from token $i up to the one that $ends says is the last; $i is left on that one. */
function collect(array $tokens, int &$i, callable $ends): string
{
    $text = '';
    for (++$i; $i < count($tokens) && !$ends($tokens[$i]); ++$i) {
        $text .= $tokens[$i]->text;
    }
    return $text;
}

function cutString(string $text): void
{
    $start = strpbrk($text, '\'"')[0] === $text[0] ? 1 : 2;
    cut('string-start', substr($text, 0, $start));
    cut('string', substr($text, $start, -1));
    cut('string-end', substr($text, -1));
}

function cutFile(string $source): void
{
    $tokens = PhpToken::tokenize($source);
    $html = '';
    for ($i = 0; $i < count($tokens); ++$i) {
        $token = $tokens[$i];
        $text = $token->text;
        if ($token->id === T_INLINE_HTML) {
            $html .= $text;
            continue;
        }
        cut('html', $html);
        $html = '';
        if ($token->id === T_OPEN_TAG) {
            cut('open-tag', rtrim($text));
            // the line break of the tag and what follows it are one run of blanks
            $blank = substr($text, strlen(rtrim($text)));
            if ($i + 1 < count($tokens) && $tokens[$i + 1]->id === T_WHITESPACE) {
                $blank .= $tokens[++$i]->text;
            }
            cut('blank', $blank);
        } elseif ($token->id === T_OPEN_TAG_WITH_ECHO) {
            cut('open-tag', '<?');
            cut('word', '=');
        } elseif ($token->id === T_CLOSE_TAG) {
            cut('close-tag', '?>');
            $html = substr($text, 2);
        } elseif ($token->id === T_WHITESPACE) {
            cut('blank', $text);
        } elseif ($token->id === T_COMMENT || $token->id === T_DOC_COMMENT) {
            cut('comment', $text);
        } elseif ($token->id === T_ATTRIBUTE) {
            $depth = 1;
            $rest = collect($tokens, $i, function ($t) use (&$depth) {
                $depth += ($t->text === '[' || $t->id === T_ATTRIBUTE) - ($t->text === ']');
                return $depth === 0;
            });
            cut('comment', '#[' . $rest . ']');
        } elseif ($token->id === T_VARIABLE) {
            cut('variable', $text);
        } elseif ($token->id === T_CONSTANT_ENCAPSED_STRING) {
            cutString($text);
        } elseif ($text === '"' || $text === 'b"') {
            cut('string-start', $text);
            cut('string', collect($tokens, $i, fn ($t) => $t->text === '"'));
            cut('string-end', '"');
        } elseif ($text === '`') {
            cut('operator', '`');
            cut('string', collect($tokens, $i, fn ($t) => $t->text === '`'));
            cut('operator', '`');
        } elseif ($token->id === T_START_HEREDOC) {
            cut('operator', '<<<');
            $body = collect($tokens, $i, fn ($t) => $t->id === T_END_HEREDOC);
            cut('heredoc', substr($text, 3) . $body . $tokens[$i]->text);
        } elseif (in_array($token->id, CASTS, true)) {
            preg_match('/^\((\s*)(\w+)(\s*)\)$/', $text, $m);
            cut('bracket', '(');
            cut('blank', $m[1]);
            cut('word', $m[2]);
            cut('blank', $m[3]);
            cut('bracket', ')');
        } elseif (in_array($token->id, COMPOUND, true)) {
            cut('operator', substr($text, 0, -1));
            cut('operator', '=');
        } elseif ($token->id === T_LNUMBER || $token->id === T_DNUMBER) {
            cut('number', $text);
        } elseif ($token->id === T_HALT_COMPILER) {
            cut('word', $text);
        } elseif (in_array($text, ['(', ')', '[', ']', '{', '}'], true)) {
            cut('bracket', $text);
        } elseif (preg_match('/^\\\\?[a-z_\x80-\xff]/i', $text)) {
            cut('word', $text);
        } else {
            cut('operator', $text);
        }
    }
    cut('html', $html);
}

while (($file = fgets(STDIN)) !== false) {
    $file = rtrim($file, "\n");
    $source = preg_replace('/^\xEF\xBB\xBF/', '', file_get_contents($file));
    echo 'FILE ', $file, "\n";
    cutFile(str_replace(["\r\n", "\r"], "\n", $source));
}
