#include "SyntaxParser/PhpLexer.h"

namespace Kesh::SyntaxParser {

CPhpLexer::SCut CPhpLexer::NextInPhp(const wchar_t* begin)
{
    using enum EPhpToken;
    using K = EPhpTokenKind;
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

    blank+                       { return {YYCURSOR, Blank, K::Count}; }
    "$" wordStart                { return {SkipWordChars(YYCURSOR), Variable, K::Variable}; }
    "$"                          { return {YYCURSOR, Dollar, K::Dollar}; }
    number                       { return {YYCURSOR, Number, K::Number}; }
    "?>"                         { m_inPhp = false; return {YYCURSOR, CloseTag, K::CloseTag}; }
    "//"                         { return LexLineComment(YYCURSOR, LineComment); }
    "#"                          { return LexHash(YYCURSOR); }
    "/*"                         { return LexBlockComment(YYCURSOR); }
    [bB]? "'"                    { return {YYCURSOR, SingleQuote, K::Count}; }
    [bB]? "\""                   { return {YYCURSOR, DoubleQuote, K::Count}; }
    "`"                          { return {YYCURSOR, Backtick, K::Count}; }
    [bB]? "<<<" / [ \t]* label [\r\n] { return {YYCURSOR, Heredoc, K::Count}; }

    "."                          { return {YYCURSOR, CarriedOp, K::Dot}; }
    "??"                         { return {YYCURSOR, CarriedOp, K::Coalesce}; }
    "<=>"                        { return {YYCURSOR, CarriedOp, K::Spaceship}; }
    "|>"                         { return {YYCURSOR, CarriedOp, K::Pipe}; }
    "="                          { return {YYCURSOR, Assign, K::Assign}; }
    "??="                        { return {YYCURSOR, Assign, K::CoalesceAssign}; }
    "->"                         { return {YYCURSOR, Arrow, K::Arrow}; }
    "?->"                        { return {YYCURSOR, Arrow, K::NullsafeArrow}; }
    "::"                         { return {YYCURSOR, DoubleColon, K::DoubleColon}; }
    "=>"                         { return {YYCURSOR, DoubleArrow, K::DoubleArrow}; }
    "&"                          { return {YYCURSOR, Ampersand, K::BitAnd}; }
    "?"                          { return {YYCURSOR, Question, K::Question}; }
    ":"                          { return {YYCURSOR, Colon, K::Colon}; }
    "\\"                         { return {YYCURSOR, Backslash, K::Backslash}; }
    "||"                         { return {YYCURSOR, Symbol, K::BooleanOr}; }
    "&&"                         { return {YYCURSOR, Symbol, K::BooleanAnd}; }
    "==="                        { return {YYCURSOR, Symbol, K::Identical}; }
    "=="                         { return {YYCURSOR, Symbol, K::Equal}; }
    "!=="                        { return {YYCURSOR, Symbol, K::NotIdentical}; }
    "!=" | "<>"                  { return {YYCURSOR, Symbol, K::NotEqual}; }
    "<="                         { return {YYCURSOR, Symbol, K::LessEqual}; }
    ">="                         { return {YYCURSOR, Symbol, K::GreaterEqual}; }
    "<<"                         { return {YYCURSOR, Symbol, K::ShiftLeft}; }
    ">>"                         { return {YYCURSOR, Symbol, K::ShiftRight}; }
    "**"                         { return {YYCURSOR, Symbol, K::Power}; }
    "++"                         { return {YYCURSOR, Symbol, K::Increment}; }
    "--"                         { return {YYCURSOR, Symbol, K::Decrement}; }
    "..."                        { return {YYCURSOR, Symbol, K::Ellipsis}; }

    'abstract'                   { return {YYCURSOR, Abstract, K::Abstract}; }
    'array'                      { return {YYCURSOR, Array, K::Array}; }
    'break'                      { return {YYCURSOR, Break, K::Break}; }
    'case'                       { return {YYCURSOR, Case, K::Case}; }
    'catch'                      { return {YYCURSOR, Catch, K::Catch}; }
    'class'                      { return {YYCURSOR, Class, K::Class}; }
    'const'                      { return {YYCURSOR, Const, K::Const}; }
    'declare'                    { return {YYCURSOR, Declare, K::Declare}; }
    'default'                    { return {YYCURSOR, Default, K::Default}; }
    'do'                         { return {YYCURSOR, Do, K::Do}; }
    'else'                       { return {YYCURSOR, Else, K::Else}; }
    'elseif'                     { return {YYCURSOR, Elseif, K::Elseif}; }
    'enum'                       { return {YYCURSOR, Enum, K::Enum}; }
    'final'                      { return {YYCURSOR, Final, K::Final}; }
    'fn'                         { return {YYCURSOR, Fn, K::Fn}; }
    'for'                        { return {YYCURSOR, For, K::For}; }
    'foreach'                    { return {YYCURSOR, Foreach, K::Foreach}; }
    'function'                   { return {YYCURSOR, Function, K::Function}; }
    '__halt_compiler'            { return {YYCURSOR, HaltCompiler, K::HaltCompiler}; }
    'if'                         { return {YYCURSOR, If, K::If}; }
    'interface'                  { return {YYCURSOR, Interface, K::Interface}; }
    'list'                       { return {YYCURSOR, List, K::List}; }
    'namespace'                  { return {YYCURSOR, Namespace, K::Namespace}; }
    'match'                      { return {YYCURSOR, Match, K::Match}; }
    'new'                        { return {YYCURSOR, New, K::New}; }
    'readonly'                   { return {YYCURSOR, Readonly, K::Readonly}; }
    'static'                     { return {YYCURSOR, Static, K::Static}; }
    'switch'                     { return {YYCURSOR, Switch, K::Switch}; }
    'throw'                      { return {YYCURSOR, Throw, K::Throw}; }
    'trait'                      { return {YYCURSOR, Trait, K::Trait}; }
    'use'                        { return {YYCURSOR, Use, K::Use}; }
    'var'                        { return {YYCURSOR, Var, K::Var}; }
    'while'                      { return {YYCURSOR, While, K::While}; }
    'include' | 'include_once' | 'require' | 'require_once' { return {YYCURSOR, IncludeWord, K::Include}; }
    'print'                      { return {YYCURSOR, IncludeWord, K::Print}; }
    'yield'                      { return {YYCURSOR, IncludeWord, K::Yield}; }
    'yield' blank+ 'from' / [^a-zA-Z0-9_\x80-\U0010ffff] { return {YYCURSOR, IncludeWord, K::YieldFrom}; }
    'true' | 'false' | 'null' | 'self' | 'parent' | '__property__' { return {YYCURSOR, ConstantWord, K::Identifier}; }
    '__class__' | '__dir__' | '__file__' | '__function__' | '__line__' | '__method__' | '__namespace__' | '__trait__' {
        return {YYCURSOR, ConstantWord, K::MagicConstant};
    }
    'and'                        { return {YYCURSOR, Keyword, K::And}; }
    'as'                         { return {YYCURSOR, Keyword, K::As}; }
    'continue'                   { return {YYCURSOR, Keyword, K::Continue}; }
    'echo'                       { return {YYCURSOR, Keyword, K::Echo}; }
    'empty'                      { return {YYCURSOR, Keyword, K::Empty}; }
    'enddeclare'                 { return {YYCURSOR, Keyword, K::Enddeclare}; }
    'endfor'                     { return {YYCURSOR, Keyword, K::Endfor}; }
    'endforeach'                 { return {YYCURSOR, Keyword, K::Endforeach}; }
    'endif'                      { return {YYCURSOR, Keyword, K::Endif}; }
    'endswitch'                  { return {YYCURSOR, Keyword, K::Endswitch}; }
    'endwhile'                   { return {YYCURSOR, Keyword, K::Endwhile}; }
    'eval'                       { return {YYCURSOR, Keyword, K::Eval}; }
    'extends'                    { return {YYCURSOR, Keyword, K::Extends}; }
    'finally'                    { return {YYCURSOR, Keyword, K::Finally}; }
    'global'                     { return {YYCURSOR, Keyword, K::Global}; }
    'goto'                       { return {YYCURSOR, Keyword, K::Goto}; }
    'implements'                 { return {YYCURSOR, Keyword, K::Implements}; }
    'instanceof'                 { return {YYCURSOR, Keyword, K::Instanceof}; }
    'insteadof'                  { return {YYCURSOR, Keyword, K::Insteadof}; }
    'isset'                      { return {YYCURSOR, Keyword, K::Isset}; }
    'or'                         { return {YYCURSOR, Keyword, K::Or}; }
    'private'                    { return {YYCURSOR, Keyword, K::Private}; }
    'protected'                  { return {YYCURSOR, Keyword, K::Protected}; }
    'public'                     { return {YYCURSOR, Keyword, K::Public}; }
    'return'                     { return {YYCURSOR, Keyword, K::Return}; }
    'try'                        { return {YYCURSOR, Keyword, K::Try}; }
    'unset'                      { return {YYCURSOR, Keyword, K::Unset}; }
    'xor'                        { return {YYCURSOR, Keyword, K::Xor}; }
    'die' | 'exit'               { return {YYCURSOR, Keyword, K::Exit}; }
    'callable'                   { return {YYCURSOR, Name, K::Callable}; }
    'clone'                      { return {YYCURSOR, Name, K::Clone}; }
    word                         { return {YYCURSOR, Name, K::Identifier}; }
    'namespace' ("\\" word)+     { return {YYCURSOR, QualifiedName, K::RelativeName}; }
    word ("\\" word)+            { return {YYCURSOR, QualifiedName, K::QualifiedName}; }
    ("\\" word)+                 { return {YYCURSOR, QualifiedName, K::FullyQualifiedName}; }

    "\x00"                       { return YYCURSOR > m_limit ? SCut{m_limit, End, K::End} : SCut{YYCURSOR, Symbol, K::BadCharacter}; }
    *                            { return {YYCURSOR, Symbol, SymbolKind(*begin)}; }
    */
}

} // namespace Kesh::SyntaxParser
