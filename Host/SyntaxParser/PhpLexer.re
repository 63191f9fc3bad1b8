#include "SyntaxParser/PhpLexer.h"

namespace Kesh::SyntaxParser {

EPhpToken CPhpLexer::NextInPhp()
{
    using enum EPhpToken;
    // A local cursor stays in a register.
    const wchar_t* YYCURSOR = m_cursor;
    const wchar_t* YYMARKER = m_cursor;
    m_begin = m_cursor;
    /*!stags:re2c format = "const wchar_t* @@ = nullptr;\n"; */

    /*!re2c
    re2c:define:YYCTYPE = "char32_t";
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

    blank+                       { return Cut(YYCURSOR, Blank); }
    "$" word                     { return Cut(YYCURSOR, Variable); }
    "$"                          { return Cut(YYCURSOR, Dollar); }
    number                       { return Cut(YYCURSOR, Number); }
    "?>"                         { m_inPhp = false; return Cut(YYCURSOR, CloseTag); }
    "//"                         { return LexLineComment(YYCURSOR, LineComment); }
    "#"                          { return LexHash(YYCURSOR); }
    "/*"                         { return LexBlockComment(YYCURSOR); }
    [bB]? "'"                    { return Cut(YYCURSOR, SingleQuote); }
    [bB]? "\""                   { return Cut(YYCURSOR, DoubleQuote); }
    "`"                          { return Cut(YYCURSOR, Backtick); }
    [bB]? "<<<" / [ \t]* label [\r\n] { return Cut(YYCURSOR, Heredoc); }

    "."                          { return Cut(YYCURSOR, CarriedOp); }
    "??" | "<=>" | "|>"          { return Cut(YYCURSOR, CarriedOp); }
    "=" | "??="                  { return Cut(YYCURSOR, Assign); }
    "->" | "?->"                 { return Cut(YYCURSOR, Arrow); }
    "::"                         { return Cut(YYCURSOR, DoubleColon); }
    "=>"                         { return Cut(YYCURSOR, DoubleArrow); }
    "&"                          { return Cut(YYCURSOR, Ampersand); }
    "?"                          { return Cut(YYCURSOR, Question); }
    ":"                          { return Cut(YYCURSOR, Colon); }
    ","                          { return Cut(YYCURSOR, Comma); }
    ";"                          { return Cut(YYCURSOR, Semicolon); }
    "\\"                         { return Cut(YYCURSOR, Backslash); }
    "("                          { return Cut(YYCURSOR, OpenRound); }
    ")"                          { return Cut(YYCURSOR, CloseRound); }
    "["                          { return Cut(YYCURSOR, OpenSquare); }
    "]"                          { return Cut(YYCURSOR, CloseSquare); }
    "{"                          { return Cut(YYCURSOR, OpenBrace); }
    "}"                          { return Cut(YYCURSOR, CloseBrace); }
    "||" | "&&" | "===" | "==" | "!==" | "!=" | "<>" | "<=" | ">=" | "<<" | ">>" | "**" | "++" | "--" | "..." {
        return Cut(YYCURSOR, Symbol);
    }

    'abstract'                   { return Cut(YYCURSOR, Abstract); }
    'array'                      { return Cut(YYCURSOR, Array); }
    'break'                      { return Cut(YYCURSOR, Break); }
    'case'                       { return Cut(YYCURSOR, Case); }
    'catch'                      { return Cut(YYCURSOR, Catch); }
    'class'                      { return Cut(YYCURSOR, Class); }
    'const'                      { return Cut(YYCURSOR, Const); }
    'declare'                    { return Cut(YYCURSOR, Declare); }
    'default'                    { return Cut(YYCURSOR, Default); }
    'do'                         { return Cut(YYCURSOR, Do); }
    'else'                       { return Cut(YYCURSOR, Else); }
    'elseif'                     { return Cut(YYCURSOR, Elseif); }
    'enum'                       { return Cut(YYCURSOR, Enum); }
    'final'                      { return Cut(YYCURSOR, Final); }
    'fn'                         { return Cut(YYCURSOR, Fn); }
    'for'                        { return Cut(YYCURSOR, For); }
    'foreach'                    { return Cut(YYCURSOR, Foreach); }
    'function'                   { return Cut(YYCURSOR, Function); }
    '__halt_compiler'            { return Cut(YYCURSOR, HaltCompiler); }
    'if'                         { return Cut(YYCURSOR, If); }
    'interface'                  { return Cut(YYCURSOR, Interface); }
    'list'                       { return Cut(YYCURSOR, List); }
    'match'                      { return Cut(YYCURSOR, Match); }
    'new'                        { return Cut(YYCURSOR, New); }
    'readonly'                   { return Cut(YYCURSOR, Readonly); }
    'static'                     { return Cut(YYCURSOR, Static); }
    'switch'                     { return Cut(YYCURSOR, Switch); }
    'throw'                      { return Cut(YYCURSOR, Throw); }
    'trait'                      { return Cut(YYCURSOR, Trait); }
    'use'                        { return Cut(YYCURSOR, Use); }
    'var'                        { return Cut(YYCURSOR, Var); }
    'while'                      { return Cut(YYCURSOR, While); }
    'include' | 'include_once' | 'require' | 'require_once' | 'print' | 'yield' { return Cut(YYCURSOR, IncludeWord); }
    'yield' blank+ 'from' / [^a-zA-Z0-9_\x80-\U0010ffff] { return Cut(YYCURSOR, IncludeWord); }
    'true' | 'false' | 'null' | 'self' | 'parent' | '__class__' | '__dir__' | '__file__' | '__function__'
    | '__line__' | '__method__' | '__namespace__' | '__trait__' | '__property__' {
        return Cut(YYCURSOR, ConstantWord);
    }
    'and' | 'as' | 'continue' | 'die' | 'echo' | 'empty' | 'enddeclare' | 'endfor' | 'endforeach'
    | 'endif' | 'endswitch' | 'endwhile' | 'eval' | 'exit' | 'extends' | 'finally' | 'global' | 'goto'
    | 'implements' | 'instanceof' | 'insteadof' | 'isset' | 'namespace' | 'or' | 'private' | 'protected'
    | 'public' | 'return' | 'try' | 'unset' | 'xor' {
        return Cut(YYCURSOR, Keyword);
    }
    word                         { return Cut(YYCURSOR, Name); }
    word ("\\" word)+            { return Cut(YYCURSOR, QualifiedName); }
    ("\\" word)+                 { return Cut(YYCURSOR, QualifiedName); }

    $                            { return Cut(YYCURSOR, End); }
    *                            { return Cut(YYCURSOR, Symbol); }
    */
}

} // namespace Kesh::SyntaxParser
