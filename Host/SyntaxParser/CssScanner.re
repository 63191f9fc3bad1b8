#include "SyntaxParser/CssScanner.h"

#include <cwchar>

namespace Kesh::SyntaxParser {

/*!re2c
    re2c:define:YYCTYPE = char32_t;
    re2c:define:YYCURSOR = m_cursor;
    re2c:define:YYMARKER = marker;
    re2c:yyfill:enable = 0;
    re2c:flags:unicode = 1;
    re2c:sentinel = 0;

    space = [ \t\n\f\r];
    hex = [0-9a-fA-F];
    escape = "\\" (hex{1,6} space? | [^\n\f\r0-9a-fA-F\x00]);
    first = [a-zA-Z_] | [\u0080-\U0010ffff] | escape;
    next = [-0-9] | first;
    ident = "-"? first next* | "--" next*;
    number = [0-9]* "."? [0-9]+ ('e' [-+]? [0-9]+)?;
*/

SCssToken CCssScanner::Next()
{
    const wchar_t* marker = nullptr;
    /*!stags:re2c format = 'const wchar_t* @@ = nullptr;'; */
    for (;;) {
        const std::size_t begin = GetPos();
        const auto token = [&](ECssToken kind) { return SCssToken{kind, {begin, GetPos()}}; };
        /*!re2c
            "\x00" {
                --m_cursor;
                return token(ECssToken::End);
            }
            "/*" {
                SkipComment();
                continue;
            }
            space+ | "<!--" | "-->" | "<![CDATA[" | "]]>" { return token(ECssToken::Space); }
            ident { return token(ECssToken::Ident); }
            'url(' / space* ["'] { return token(ECssToken::Function); }
            'url(' {
                SkipUrl();
                return token(ECssToken::Url);
            }
            ident "(" { return token(ECssToken::Function); }
            "@" ident { return token(ECssToken::AtKeyword); }
            "#" next+ { return token(ECssToken::Hash); }
            ["] ([^"\\\n\f\r\x00] | "\\" [^\x00])* ["]? { return token(ECssToken::String); }
            ['] ([^'\\\n\f\r\x00] | "\\" [^\x00])* [']? { return token(ECssToken::String); }
            number { return token(ECssToken::Number); }
            number "%" { return token(ECssToken::Percentage); }
            number ident { return token(ECssToken::Dimension); }
            ":" { return token(ECssToken::Colon); }
            ";" { return token(ECssToken::Semicolon); }
            "," { return token(ECssToken::Comma); }
            "." { return token(ECssToken::Period); }
            "*" { return token(ECssToken::Star); }
            "|" { return token(ECssToken::Bar); }
            "&" { return token(ECssToken::Ampersand); }
            [>+~] { return token(ECssToken::Combinator); }
            "(" { return token(ECssToken::ParenOpen); }
            ")" { return token(ECssToken::ParenClose); }
            "[" { return token(ECssToken::SquareOpen); }
            "]" { return token(ECssToken::SquareClose); }
            "{" { return token(ECssToken::BraceOpen); }
            "}" { return token(ECssToken::BraceClose); }
            * { return token(ECssToken::Other); }
        */
    }
}

void CCssScanner::SkipComment()
{
    const wchar_t* end = std::wcsstr(m_cursor, L"*/");
    m_cursor = end ? end + 2 : m_cursor + std::wcslen(m_cursor);
}

void CCssScanner::SkipUrl()
{
    for (;;) {
        /*!re2c
            [^)\\\x00]+ { continue; }
            "\\" [^\x00] { continue; }
            "\x00" {
                --m_cursor;
                return;
            }
            ")" { return; }
            * { continue; }
        */
    }
}

} // namespace Kesh::SyntaxParser
