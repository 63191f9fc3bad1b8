#include "SyntaxParser/PhpLexer.h"

namespace Kesh::SyntaxParser {

CPhpLexer::SCut CPhpLexer::NextInPhp(const wchar_t* begin)
{
    using enum EPhpToken;
    // No token goes past the NUL character that follows the text. Lone tokens do not come here.
    const wchar_t* YYCURSOR = begin;
    const wchar_t* YYMARKER = begin;
    /*!stags:re2c format = "const wchar_t* @@ = nullptr;\n"; */

    /*!re2c
    re2c:define:YYCTYPE = "char32_t";
    re2c:flags:unicode = 1;
    re2c:yyfill:enable = 0;
    re2c:flags:bit-vectors = 1;
    re2c:flags:computed-gotos = 1;

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

    blank+                       { return {YYCURSOR, Blank}; }
    "$" wordStart                { return {SkipWordChars(YYCURSOR), Variable}; }
    "$"                          { return {YYCURSOR, Dollar}; }
    number                       { return {YYCURSOR, Number}; }
    "?>"                         { m_inPhp = false; return {YYCURSOR, CloseTag}; }
    "//"                         { return LexLineComment(YYCURSOR, LineComment); }
    "#"                          { return LexHash(YYCURSOR); }
    "/*"                         { return LexBlockComment(YYCURSOR); }
    [bB]? "'"                    { return {YYCURSOR, SingleQuote}; }
    [bB]? "\""                   { return {YYCURSOR, DoubleQuote}; }
    "`"                          { return {YYCURSOR, Backtick}; }
    [bB]? "<<<" / [ \t]* label [\r\n] { return {YYCURSOR, Heredoc}; }

    "."                          { return {YYCURSOR, CarriedOp}; }
    "??" | "<=>" | "|>"          { return {YYCURSOR, CarriedOp}; }
    "=" | "??="                  { return {YYCURSOR, Assign}; }
    "->" | "?->"                 { return {YYCURSOR, Arrow}; }
    "::"                         { return {YYCURSOR, DoubleColon}; }
    "=>"                         { return {YYCURSOR, DoubleArrow}; }
    "&"                          { return {YYCURSOR, Ampersand}; }
    "?"                          { return {YYCURSOR, Question}; }
    ":"                          { return {YYCURSOR, Colon}; }
    "\\"                         { return {YYCURSOR, Backslash}; }
    "||" | "&&" | "===" | "==" | "!==" | "!=" | "<>" | "<=" | ">=" | "<<" | ">>" | "**" | "++" | "--" | "..." {
        return {YYCURSOR, Symbol};
    }

    'abstract'                   { return {YYCURSOR, Abstract}; }
    'array'                      { return {YYCURSOR, Array}; }
    'break'                      { return {YYCURSOR, Break}; }
    'case'                       { return {YYCURSOR, Case}; }
    'catch'                      { return {YYCURSOR, Catch}; }
    'class'                      { return {YYCURSOR, Class}; }
    'const'                      { return {YYCURSOR, Const}; }
    'declare'                    { return {YYCURSOR, Declare}; }
    'default'                    { return {YYCURSOR, Default}; }
    'do'                         { return {YYCURSOR, Do}; }
    'else'                       { return {YYCURSOR, Else}; }
    'elseif'                     { return {YYCURSOR, Elseif}; }
    'enum'                       { return {YYCURSOR, Enum}; }
    'final'                      { return {YYCURSOR, Final}; }
    'fn'                         { return {YYCURSOR, Fn}; }
    'for'                        { return {YYCURSOR, For}; }
    'foreach'                    { return {YYCURSOR, Foreach}; }
    'function'                   { return {YYCURSOR, Function}; }
    '__halt_compiler'            { return {YYCURSOR, HaltCompiler}; }
    'if'                         { return {YYCURSOR, If}; }
    'interface'                  { return {YYCURSOR, Interface}; }
    'list'                       { return {YYCURSOR, List}; }
    'namespace'                  { return {YYCURSOR, Namespace}; }
    'match'                      { return {YYCURSOR, Match}; }
    'new'                        { return {YYCURSOR, New}; }
    'readonly'                   { return {YYCURSOR, Readonly}; }
    'static'                     { return {YYCURSOR, Static}; }
    'switch'                     { return {YYCURSOR, Switch}; }
    'throw'                      { return {YYCURSOR, Throw}; }
    'trait'                      { return {YYCURSOR, Trait}; }
    'use'                        { return {YYCURSOR, Use}; }
    'var'                        { return {YYCURSOR, Var}; }
    'while'                      { return {YYCURSOR, While}; }
    'include' | 'include_once' | 'require' | 'require_once' | 'print' | 'yield' { return {YYCURSOR, IncludeWord}; }
    'yield' blank+ 'from' / [^a-zA-Z0-9_\x80-\U0010ffff] { return {YYCURSOR, IncludeWord}; }
    'true' | 'false' | 'null' | 'self' | 'parent' | '__class__' | '__dir__' | '__file__' | '__function__'
    | '__line__' | '__method__' | '__namespace__' | '__trait__' | '__property__' {
        return {YYCURSOR, ConstantWord};
    }
    'and' | 'as' | 'continue' | 'die' | 'echo' | 'empty' | 'enddeclare' | 'endfor' | 'endforeach'
    | 'endif' | 'endswitch' | 'endwhile' | 'eval' | 'exit' | 'extends' | 'finally' | 'global' | 'goto'
    | 'implements' | 'instanceof' | 'insteadof' | 'isset' | 'or' | 'private' | 'protected'
    | 'public' | 'return' | 'try' | 'unset' | 'xor' {
        return {YYCURSOR, Keyword};
    }
    word                         { return {YYCURSOR, Name}; }
    word ("\\" word)+            { return {YYCURSOR, QualifiedName}; }
    ("\\" word)+                 { return {YYCURSOR, QualifiedName}; }

    "\x00"                       { return YYCURSOR > m_limit ? SCut{m_limit, End} : SCut{YYCURSOR, Symbol}; }
    *                            { return {YYCURSOR, Symbol}; }
    */
}

} // namespace Kesh::SyntaxParser
