#include "SyntaxParser/HtmlScanner.h"

#include <algorithm>
#include <cwchar>
#include <utility>

namespace Kesh::SyntaxParser {

namespace {

// In characters. Longer ones are not looked for, so that no text is searched again and again.
constexpr std::size_t LongestPlaceholder = 500;

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
    re2c:define:YYMARKER = m_marker;
    re2c:yyfill:enable = 0;
    re2c:flags:unicode = 1;
    re2c:sentinel = 0;

    space = [ \t\n\f\r];
    island = [\ufdd0];
*/

EHtmlToken CHtmlScanner::NextTag()
{
    for (;;) {
        // Most of a document is text.
        wchar_t* const tag = std::wmemchr(m_cursor, L'<', static_cast<std::size_t>(m_end - m_cursor));
        m_cursor = tag ? tag : m_end;
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
            "<" / ([a-zA-Z] | island) {
                ReadName();
                return EHtmlToken::StartTag;
            }
            "</" / ([a-zA-Z] | island) {
                ReadName();
                return EHtmlToken::EndTag;
            }
            * { continue; }
        */
    }
}

EHtmlToken CHtmlScanner::NextInTag()
{
    for (;;) {
        wchar_t* start = m_cursor;
        /*!re2c
            space+ | "/" { continue; }
            ">" { return EHtmlToken::TagClose; }
            "/>" { return EHtmlToken::TagSelfClose; }
            "\x00" {
                --m_cursor;
                return EHtmlToken::End;
            }
            // A tag that is still being typed does not swallow the next one.
            "<" / [a-zA-Z/!] {
                --m_cursor;
                return EHtmlToken::TagClose;
            }
            * {
                m_cursor = start;
                ReadName();
                ReadValue();
                return EHtmlToken::Attribute;
            }
        */
    }
}

void CHtmlScanner::ReadName()
{
    const std::size_t begin = Offset(m_cursor);
    for (;;) {
        wchar_t* start = m_cursor;
        /*!re2c
            [^ \t\n\f\r/>=<{@\x00]+ | "@" { continue; }
            "{"+ | "<" [%#] {
                MaskPlaceholder(start, false);
                continue;
            }
            "@" [a-zA-Z]+ " "? "(" {
                if (Offset(start) == begin)
                    MaskDirective(start);
                continue;
            }
            "@else" | "@end" [a-z]+ {
                std::fill(start, m_cursor, CMarkupText::Island);
                continue;
            }
            [=<] {
                if (Offset(start) == begin)
                    continue; // a name may start so
                m_cursor = start;
                m_name = {begin, Offset(start)};
                return;
            }
            "" {
                m_name = {begin, Offset(m_cursor)};
                return;
            }
        */
    }
}

void CHtmlScanner::ReadValue()
{
    /*!re2c
        space* "=" space* / ["'] {
            ReadQuoted();
            return;
        }
        space* "=" space* {
            ReadUnquoted();
            return;
        }
        "" {
            m_value = {Offset(m_cursor), Offset(m_cursor)};
            return;
        }
    */
}

void CHtmlScanner::ReadQuoted()
{
    const wchar_t quote = *m_cursor++;
    m_value.begin = Offset(m_cursor);
    for (;;) {
        wchar_t* start = m_cursor;
        /*!re2c
            [^"'{<\x00]+ | [{<] { continue; }
            "{{" | "{%" | "{!!" | "<" [%#] {
                MaskPlaceholder(start, true);
                continue;
            }
            "\x00" {
                --m_cursor;
                m_value.end = Offset(start);
                return;
            }
            ["'] {
                if (*start != quote)
                    continue;
                m_value.end = Offset(start);
                return;
            }
        */
    }
}

void CHtmlScanner::ReadUnquoted()
{
    m_value.begin = Offset(m_cursor);
    for (;;) {
        wchar_t* start = m_cursor;
        /*!re2c
            [^ \t\n\f\r><{\x00]+ | "<" { continue; }
            "{"+ | "<" [%#] {
                MaskPlaceholder(start, false);
                continue;
            }
            "" {
                m_value.end = Offset(m_cursor);
                return;
            }
        */
    }
}

void CHtmlScanner::MaskDirective(wchar_t* open)
{
    const wchar_t* const limit = open + wcsnlen(open, LongestPlaceholder);
    int depth = 1;
    for (wchar_t* c = m_cursor; c != limit; ++c) {
        depth += *c == L'(' ? 1 : *c == L')' ? -1 : 0;
        if (depth == 0) {
            m_cursor = c + 1;
            std::fill(open, m_cursor, CMarkupText::Island);
            return;
        }
    }
}

void CHtmlScanner::MaskPlaceholder(wchar_t* open, bool inLine)
{
    // The longest first.
    static constexpr std::pair<std::wstring_view, std::wstring_view> marks[] = {
        {L"{{{", L"}}}"}, {L"{{", L"}}"}, {L"{%", L"%}"}, {L"{!!", L"!!}"},
        {L"{", L"}"},     {L"<%", L"%>"}, {L"<#", L"#>"},
    };
    std::wstring_view text(open, wcsnlen(open, LongestPlaceholder));
    if (inLine)
        text = text.substr(0, text.find(L'\n'));
    for (const auto& [start, end] : marks) {
        if (!text.starts_with(start))
            continue;
        const std::size_t found = text.find(end, start.size());
        if (found != std::wstring_view::npos) {
            m_cursor = open + found + end.size();
            std::fill(open, m_cursor, CMarkupText::Island);
        }
        return;
    }
}

SStretch CHtmlScanner::RawText(std::wstring_view name)
{
    // A script may hold "<!-- <script> ... </script> -->": inside, an end tag ends the inner script only.
    enum { Plain, Commented, Nested } state = Plain;
    const bool script = name == L"script";
    const std::size_t begin = Offset(m_cursor);
    for (;;) {
        wchar_t* start = m_cursor;
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
    const wchar_t* text = m_cursor;
    m_cursor -= 2; // "<!-->" and "<!--->" are whole comments
    for (;;) {
        wchar_t* start = m_cursor;
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
    wchar_t* found = std::wcsstr(m_cursor, end.data());
    m_cursor = found ? found + end.size() : m_cursor + std::wcslen(m_cursor);
}

} // namespace Kesh::SyntaxParser
