#!/usr/bin/env python3
"""Holds the grammar check against `php -l` on folders of PHP files and on slips made in them.

    scripts/measure-php.py [--checker BIN] [--slips 2000] [--each 1] [--seed 1] [--list FILE] [--cache DIR] FOLDER...

First every file as it is: which ones get an error although PHP takes them, and the other way round. Then slips: one
small change of a file each (with --each 5 five, far from each other); of those that PHP's parser rejects it says how
many are found, where, and how many errors a slip gives. --list keeps each slip that is not as it should be. PHP's
verdicts are kept in --cache by their texts, since asking takes longest.
"""
import argparse
import concurrent.futures
import hashlib
import json
import pathlib
import random
import re
import subprocess
import tempfile

TOKENS = r'''
while (($path = fgets(STDIN)) !== false) {
    $list = [];
    foreach (@token_get_all(file_get_contents(rtrim($path))) as $t)
        $list[] = is_array($t) ? [token_name($t[0]), $t[1]] : ['', $t];
    echo json_encode($list, JSON_INVALID_UTF8_SUBSTITUTE), "\n";
}'''
IDLE = {'T_WHITESPACE', 'T_COMMENT', 'T_DOC_COMMENT', 'T_INLINE_HTML', 'T_OPEN_TAG', 'T_CLOSE_TAG',
        'T_ENCAPSED_AND_WHITESPACE', 'T_START_HEREDOC', 'T_END_HEREDOC', 'T_OPEN_TAG_WITH_ECHO'}
PUNCTUATION = [';', ',', ')', '(', '{', '}', '[', ']', '=', '=>', '->', '$', '.', ':', "'", '"']


class Php:
    """What `php -l` says of a text."""

    def __init__(self, folder):
        self.folder = folder
        if folder:
            folder.mkdir(parents=True, exist_ok=True)

    def verdict(self, path):
        key = hashlib.sha1(path.read_bytes()).hexdigest()
        kept = self.folder / key if self.folder else None
        if kept and kept.exists():
            return json.loads(kept.read_text())
        run = subprocess.run(['php', '-n', '-d', 'short_open_tag=1', '-d', 'display_errors=1', '-d', 'log_errors=0',
                              '-l', path], capture_output=True, text=True, errors='replace')
        error = re.search(r'^(Parse|Fatal) error: +(.*) in .* on line (\d+)$', run.stdout, re.M)
        said = [error[1], int(error[3]), error[2]] if error else None
        if error is None and 'No syntax errors' not in run.stdout:
            raise RuntimeError(f'PHP said nothing of {path}: {run.stdout} {run.stderr}')
        if kept:
            kept.write_text(json.dumps(said))
        return said

    def verdicts(self, paths):
        with concurrent.futures.ThreadPoolExecutor(2) as pool:
            return list(pool.map(self.verdict, paths))

    def of_texts(self, texts):
        with tempfile.TemporaryDirectory() as folder:
            paths = [pathlib.Path(folder) / f'{i:06}.php' for i in range(len(texts))]
            for path, text in zip(paths, texts):
                path.write_bytes(text.encode())
            return self.verdicts(paths)


def ours(checker, folder, version):
    """The errors of each file, as (line, code, message)."""
    run = subprocess.run([checker, 'check', '--php-version', version, '--no-markup', '--format', 'json', '--jobs', '2', '--quiet',
                          '--include', '*.php', folder], capture_output=True, text=True)
    found = {}
    for record in json.loads(run.stdout):
        if record['severity'] == 'error' and 1000 < record['code'] < 2000:  # not of names in markup
            found.setdefault(record['file'], []).append((record['startLine'], record['code'], record['message']))
    return found


def change(tokens, at, dice):
    """A slip at a token: what stands at which tokens then, and what it is called."""
    kind, text = tokens[at]
    ways = ['delete', 'double', 'replace', 'punctuation', 'swap']
    if kind not in ('', 'T_VARIABLE', 'T_STRING', 'T_LNUMBER', 'T_CONSTANT_ENCAPSED_STRING') and text.isalpha() and len(text) > 2:
        ways += ['typo'] * 4
    if kind == 'T_CONSTANT_ENCAPSED_STRING':
        ways += ['quote'] * 2
    if text in ';(){}[],':
        ways += ['delete'] * 5
    if kind == 'T_VARIABLE':
        ways += ['cut']
    way = dice.choice(ways)
    if way == 'delete':
        return {at: ''}, way
    if way == 'double':
        return {at: text + ' ' + text}, way
    if way == 'replace':
        return {at: dice.choice([t for k, t in tokens if k not in IDLE])}, way
    if way == 'punctuation':
        return {at: text + dice.choice(PUNCTUATION)}, way
    if way == 'typo':
        i = dice.randrange(len(text) - 1)
        return {at: dice.choice([text[:i] + text[i + 1] + text[i] + text[i + 2:], text[:i] + text[i + 1:],
                                 text[:i] + text[i] + text[i:], text[:-1]])}, way
    if way == 'quote':
        return {at: dice.choice([text[1:], text[:-1]])}, way
    if way == 'cut':
        return {at: '$'}, way
    after = next((i for i in range(at + 1, len(tokens)) if tokens[i][0] not in IDLE), at)
    return {at: tokens[after][1], after: text}, way


def slip_of(tokens, count, dice):
    """Slips in a file: its text; of each the lines of the token before and of the slip, and its name; of each the
    text that has it alone."""
    places = [i for i, (kind, _) in enumerate(tokens) if kind not in IDLE]
    if len(places) < 30 * count:
        return None
    part = len(places) // count
    chosen = [places[p * part + dice.randrange(part - 1)] for p in range(count)]
    changed, names, alone = {}, {}, []
    for at in chosen:
        texts, way = change(tokens, at, dice)
        changed.update(texts)
        alone.append(''.join(texts.get(i, piece) for i, (_, piece) in enumerate(tokens)))
        names[at] = f'{way} {tokens[at][1]!r} -> {texts[at]!r}'
    line, last, lines, text = 1, 1, [], ''
    for i, (kind, piece) in enumerate(tokens):
        if i in names:
            lines.append([last, line, names[i]])
        line += piece.count('\n')
        last = last if kind in IDLE else line
        text += changed.get(i, piece)
    return text, lines, alone


def measure_files(options, folders, php):
    wrong = []
    total = 0
    for folder in folders:
        found = ours(options.checker, folder, options.version)
        paths = sorted(p for p in pathlib.Path(folder).rglob('*.php') if p.is_file() and not p.is_symlink() and
                       not {'vendor', 'node_modules'} & set(p.relative_to(folder).parts))
        total += len(paths)
        for path, said in zip(paths, php.verdicts(paths)):
            mine = found.get(str(path), [])
            if bool(mine) != bool(said):
                wrong.append((path, mine[:3], said))
    print(f'{total} files, {len(wrong)} judged otherwise than PHP does')
    for path, mine, said in wrong:
        print(f'  {path}: {mine or "nothing"}, PHP: {said}')


def measure_slips(options, folders, php):
    dice = random.Random(options.seed)
    sources = sorted(p for f in folders for p in pathlib.Path(f).rglob('*.php')
                     if p.is_file() and not p.is_symlink() and 1000 < p.stat().st_size < 40000)
    chosen = [dice.choice(sources) for _ in range(options.slips * 5 // 4)]
    run = subprocess.run(['php', '-d', 'short_open_tag=1', '-d', 'display_errors=stderr', '-d', 'memory_limit=-1', '-r', TOKENS], input='\n'.join(map(str, chosen)),
                         capture_output=True, text=True)
    made, single = [], []
    with tempfile.TemporaryDirectory() as folder:
        for source, tokens in zip(chosen, run.stdout.splitlines()):
            slip = slip_of(json.loads(tokens), options.each, dice)
            if slip is None or len(made) == options.slips:
                continue
            path = pathlib.Path(folder) / f'{len(made):05}.php'
            path.write_bytes(slip[0].encode())
            made.append((source, path, slip[1]))
            single += slip[2] if options.each > 1 else []
        said = php.verdicts([path for _, path, _ in made])
        found = ours(options.checker, folder, options.version)
        harmless = [verdict is None or verdict[0] == 'Fatal' for verdict in php.of_texts(single)]
        judge(options, made, said, found, harmless)


def judge(options, made, said, found, harmless):
    """`harmless`: of each slip of files with several, whether PHP's parser takes it when it is alone."""
    listed = []
    real = 0
    count = dict.fromkeys(['parse', 'compile', 'fine', 'verdict', 'found', 'between', 'near', 'phpnear', 'records', 'extra', 'most',
                           'all', 'many'], 0)
    for number, ((source, path, slips), php) in enumerate(zip(made, said)):
        mine = sorted(found.get(str(path), []))
        reasons, missed = [], []
        if bool(mine) != bool(php):
            reasons.append('verdict')
        else:
            count['verdict'] += 1
        if php is None or php[0] == 'Fatal':
            count['fine' if php is None else 'compile'] += 1
        else:
            count['parse'] += 1
            first = number * options.each
            counted = [s for i, s in enumerate(slips) if not harmless or not harmless[first + i]]
            real += len(counted)
            count['found'] += bool(mine)
            count['phpnear'] += any(abs(php[1] - at) <= 1 for _, at, _ in slips)
            if mine:
                line = mine[0][0]
                before, at, _ = slips[0]
                between = min(before, php[1]) <= line <= max(at, php[1])
                near = min(before, at - 1) <= line <= at + 1
                count['between'] += between
                count['near'] += near
                reasons += [] if between else ['place']
                reasons += [] if near else ['far']
                missed = [s for s in counted if not any(min(s[0], s[1] - 1) <= m[0] <= s[1] + 1 for m in mine)]
                count['all'] += len(counted) - len(missed)
                reasons += ['missed'] * bool(missed and options.each > 1)
                count['records'] += len(mine)
                count['most'] = max(count['most'], len(mine))
                count['many'] += len(mine) > len(slips)
                if len(mine) > len(slips):
                    reasons.append('many')
        if reasons:
            listed.append({'file': str(source), 'why': reasons, 'slips': slips, 'missed': missed, 'php': php, 'ours': mine[:20],
                           'count': len(mine), 'text': path.read_bytes().decode(errors='replace')})
    if options.list:
        pathlib.Path(options.list).write_text(json.dumps(listed, indent=1))
    parse = max(count['parse'], 1)
    slips = max(real, 1)
    print(f"{len(made)} files with {options.each} slips each: PHP's parser rejects {count['parse']}, its compiler "
          f"{count['compile']}, {count['fine']} are right\n"
          f"  same verdict       {count['verdict'] / len(made):7.2%}\n"
          f"  found              {count['found'] / parse:7.2%}\n"
          f"  slip to PHP's line {count['between'] / parse:7.2%}\n"
          f"  within a line      {count['near'] / parse:7.2%} (PHP {count['phpnear'] / parse:.2%})\n"
          f"  {real} slips that PHP's parser would reject alone, with an error within a line {count['all'] / slips:7.2%}\n"
          f"  errors a slip      {count['records'] / slips:7.3f}, most {count['most']}, more than slips in "
          f"{count['many'] / parse:.2%} of the files")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument('folders', nargs='+')
    parser.add_argument('--checker', default='build/dev/bin/code-analyzer')
    parser.add_argument('--version', default=subprocess.run(
        ['php', '-n', '-r', 'echo PHP_MAJOR_VERSION, ".", PHP_MINOR_VERSION;'], capture_output=True, text=True).stdout)
    parser.add_argument('--slips', type=int, default=2000)
    parser.add_argument('--each', type=int, default=1)
    parser.add_argument('--seed', type=int, default=1)
    parser.add_argument('--list')
    parser.add_argument('--cache', type=pathlib.Path)
    parser.add_argument('--no-files', action='store_true', help='slips only')
    options = parser.parse_args()
    php = Php(options.cache)
    if not options.no_files:
        measure_files(options, options.folders, php)
    if options.slips:
        measure_slips(options, options.folders, php)


if __name__ == '__main__':
    main()
