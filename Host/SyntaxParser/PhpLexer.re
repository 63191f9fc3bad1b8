#include "SyntaxParser/PhpLexer.h"

namespace Kesh::SyntaxParser {

EPhpToken CPhpLexer::NextInPhp()
{
    using enum EPhpToken;
    const wchar_t* YYMARKER = m_cursor;
    m_begin = m_cursor;
    /*!stags:re2c format = "const wchar_t* @@ = nullptr;\n"; */

    /*!re2c
    re2c:define:YYCTYPE = "char32_t";
    re2c:define:YYCURSOR = m_cursor;
    re2c:define:YYLIMIT = m_limit;
    re2c:flags:unicode = 1;
    re2c:yyfill:enable = 0;
    re2c:eof = 0;

    wordStart = [a-zA-Z_\x80-\U0010ffff];
    word      = wordStart (wordStart | [0-9])*;
    blank     = [ \t\r\n];
    digits    = [0-9] ("_"? [0-9])*;
    exponent  = [eE] [+-]? digits;
    number    = "0" [xX] [0-9a-fA-F] ("_"? [0-9a-fA-F])*
              | "0" [bB] [01] ("_"? [01])*
              | "0" [oO] [0-7] ("_"? [0-7])*
              | digits ("." digits?)? exponent?
              | "." digits exponent?;
    label     = word | "'" word "'" | "\"" word "\"";

    blank+                       { return Blank; }
    "$" word                     { return Variable; }
    "$"                          { return Dollar; }
    number                       { return Number; }
    "?>"                         { m_inPhp = false; return CloseTag; }
    "//"                         { return LexLineComment(LineComment); }
    "#"                          { return LexHash(); }
    "/*"                         { return LexBlockComment(); }
    [bB]? "'"                    { return SingleQuote; }
    [bB]? "\""                   { return DoubleQuote; }
    "`"                          { return Backtick; }
    [bB]? "<<<" / [ \t]* label [\r\n] { return Heredoc; }

    "."                          { return CarriedOp; }
    "??" | "<=>" | "|>"          { return CarriedOp; }
    "=" | "??="                  { return Assign; }
    "->" | "?->"                 { return Arrow; }
    "::"                         { return DoubleColon; }
    "=>"                         { return DoubleArrow; }
    "&"                          { return Ampersand; }
    "?"                          { return Question; }
    ":"                          { return Colon; }
    ","                          { return Comma; }
    ";"                          { return Semicolon; }
    "\\"                         { return Backslash; }
    "("                          { return OpenRound; }
    ")"                          { return CloseRound; }
    "["                          { return OpenSquare; }
    "]"                          { return CloseSquare; }
    "{"                          { return OpenBrace; }
    "}"                          { return CloseBrace; }
    "||" | "&&" | "===" | "==" | "!==" | "!=" | "<>" | "<=" | ">=" | "<<" | ">>" | "**" | "++" | "--" | "..." {
        return Symbol;
    }

    'abstract'                   { return Abstract; }
    'array'                      { return Array; }
    'break'                      { return Break; }
    'case'                       { return Case; }
    'catch'                      { return Catch; }
    'class'                      { return Class; }
    'const'                      { return Const; }
    'declare'                    { return Declare; }
    'default'                    { return Default; }
    'do'                         { return Do; }
    'else'                       { return Else; }
    'elseif'                     { return Elseif; }
    'enum'                       { return Enum; }
    'final'                      { return Final; }
    'fn'                         { return Fn; }
    'for'                        { return For; }
    'foreach'                    { return Foreach; }
    'function'                   { return Function; }
    '__halt_compiler'            { return HaltCompiler; }
    'if'                         { return If; }
    'interface'                  { return Interface; }
    'list'                       { return List; }
    'match'                      { return Match; }
    'new'                        { return New; }
    'readonly'                   { return Readonly; }
    'static'                     { return Static; }
    'switch'                     { return Switch; }
    'throw'                      { return Throw; }
    'trait'                      { return Trait; }
    'use'                        { return Use; }
    'var'                        { return Var; }
    'while'                      { return While; }
    'include' | 'include_once' | 'require' | 'require_once' | 'print' | 'yield' { return IncludeWord; }
    'yield' blank+ 'from' / [^a-zA-Z0-9_\x80-\U0010ffff] { return IncludeWord; }
    'true' | 'false' | 'null' | 'self' | 'parent' | '__class__' | '__dir__' | '__file__' | '__function__'
    | '__line__' | '__method__' | '__namespace__' | '__trait__' | '__property__' {
        return ConstantWord;
    }
    'and' | 'as' | 'continue' | 'die' | 'echo' | 'empty' | 'enddeclare' | 'endfor' | 'endforeach'
    | 'endif' | 'endswitch' | 'endwhile' | 'eval' | 'exit' | 'extends' | 'finally' | 'global' | 'goto'
    | 'implements' | 'instanceof' | 'insteadof' | 'isset' | 'namespace' | 'or' | 'private' | 'protected'
    | 'public' | 'return' | 'try' | 'unset' | 'xor' {
        return Keyword;
    }
    word                         { return Name; }
    word ("\\" word)+            { return QualifiedName; }
    ("\\" word)+                 { return QualifiedName; }

    $                            { return End; }
    *                            { return Symbol; }
    */
}

} // namespace Kesh::SyntaxParser
