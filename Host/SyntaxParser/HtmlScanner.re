#include "SyntaxParser/HtmlScanner.h"

#include <algorithm>
#include <cwchar>

namespace Kesh::SyntaxParser {

namespace {

// `written` may be in any case, `lower` is in lower case; tag names are compared in ASCII.
bool IsSameName(const wchar_t* begin, const wchar_t* end, std::wstring_view lower)
{
    return std::equal(begin, end, lower.begin(), lower.end(), [](wchar_t written, wchar_t c) {
        return (written >= L'A' && written <= L'Z' ? written + (L'a' - L'A') : written) == c;
    });
}

} // namespace

/*!re2c
    re2c:define:YYCTYPE = char32_t;
    re2c:define:YYCURSOR = m_cursor;
    re2c:define:YYMARKER = marker;
    re2c:yyfill:enable = 0;
    re2c:flags:unicode = 1;
    re2c:sentinel = 0;

    space = [ \t\n\f\r];
    island = [\ufdd0];
    // A "<" ends a name, so that a tag still being typed does not swallow the next one.
    tagname = ([a-zA-Z] | island) [^ \t\n\f\r/><\x00]*;
    attrname = [^ \t\n\f\r/>\x00] [^ \t\n\f\r/>=<\x00]*;
*/

EHtmlToken CHtmlScanner::NextTag()
{
    const wchar_t* marker = nullptr;
    for (;;) {
        // Most of a document is text.
        while (*m_cursor != L'<' && *m_cursor != L'\0')
            ++m_cursor;
        const wchar_t* start = m_cursor;
        /*!re2c
            "\x00" {
                --m_cursor;
                return EHtmlToken::End;
            }
            "<!--" {
                SkipComment();
                continue;
            }
            "<![CDATA[" {
                SkipPast(L"]]>");
                continue;
            }
            "</>" { continue; }
            "<!" | "<?" | "</" {
                SkipPast(L">");
                continue;
            }
            "<" tagname {
                m_name = {Offset(start + 1), Offset(m_cursor)};
                return EHtmlToken::StartTag;
            }
            "</" tagname {
                m_name = {Offset(start + 2), Offset(m_cursor)};
                return EHtmlToken::EndTag;
            }
            * { continue; }
        */
    }
}

EHtmlToken CHtmlScanner::NextInTag()
{
    for (;;) {
        const wchar_t* start = m_cursor;
        /*!re2c
            space+ | "/" { continue; }
            ">" { return EHtmlToken::TagClose; }
            "/>" { return EHtmlToken::TagSelfClose; }
            "\x00" {
                --m_cursor;
                return EHtmlToken::End;
            }
            "<" / [a-zA-Z/!] {
                --m_cursor;
                return EHtmlToken::TagClose;
            }
            attrname {
                m_name = {Offset(start), Offset(m_cursor)};
                ReadValue();
                return EHtmlToken::Attribute;
            }
            * { continue; }
        */
    }
}

void CHtmlScanner::ReadValue()
{
    const wchar_t* marker = nullptr;
    const wchar_t* value = nullptr;
    /*!stags:re2c format = 'const wchar_t* @@ = nullptr;'; */
    /*!re2c
        space* "=" space* @value (["] [^"\x00]* | ['] [^'\x00]*) {
            ++value; // past the opening quote
            m_value = {Offset(value), Offset(m_cursor)};
            if (*m_cursor != L'\0')
                ++m_cursor; // the closing quote
            return;
        }
        space* "=" space* @value ([^ \t\n\f\r>"'\x00] [^ \t\n\f\r>\x00]*)? {
            m_value = {Offset(value), Offset(m_cursor)};
            return;
        }
        "" {
            m_value = {Offset(m_cursor), Offset(m_cursor)};
            return;
        }
    */
}

SStretch CHtmlScanner::RawText(std::wstring_view name)
{
    // A script may hold "<!-- <script> ... </script> -->": inside, an end tag ends the inner script only.
    enum { Plain, Commented, Nested } state = Plain;
    const bool script = name == L"script";
    const std::size_t begin = Offset(m_cursor);
    const wchar_t* marker = nullptr;
    for (;;) {
        const wchar_t* start = m_cursor;
        /*!re2c
            [^<\-\x00]+ { continue; }
            "\x00" {
                --m_cursor;
                return {begin, Offset(m_cursor)};
            }
            "<!--" {
                if (script && state == Plain)
                    state = Commented;
                m_cursor -= 2; // "<!-->" is a whole comment
                continue;
            }
            "-->" {
                state = Plain;
                continue;
            }
            "<" [a-zA-Z]+ / [ \t\n\f\r/>] {
                if (state == Commented && IsSameName(start + 1, m_cursor, name))
                    state = Nested;
                continue;
            }
            "</" [a-zA-Z]+ / [ \t\n\f\r/>] {
                if (!IsSameName(start + 2, m_cursor, name))
                    continue;
                if (state == Nested) {
                    state = Commented;
                    continue;
                }
                m_cursor = start;
                return {begin, Offset(start)};
            }
            * { continue; }
        */
    }
}

void CHtmlScanner::SkipComment()
{
    const wchar_t* marker = nullptr;
    const wchar_t* text = m_cursor;
    m_cursor -= 2; // "<!-->" and "<!--->" are whole comments
    for (;;) {
        const wchar_t* start = m_cursor;
        /*!re2c
            [^\-\x00]+ { continue; }
            "\x00" {
                --m_cursor;
                return;
            }
            "-->" { return; }
            "--!>" {
                if (start >= text)
                    return;
                continue;
            }
            * { continue; }
        */
    }
}

void CHtmlScanner::SkipPast(std::wstring_view end)
{
    const wchar_t* found = std::wcsstr(m_cursor, end.data());
    m_cursor = found ? found + end.size() : m_cursor + std::wcslen(m_cursor);
}

} // namespace Kesh::SyntaxParser
