#include "SyntaxParser/PhpLexer.h"

#include <array>
#include <cwchar>
#include <string_view>

namespace Kesh::SyntaxParser {

namespace {

bool IsLineEnd(wchar_t c)
{
    return c == L'\n' || c == L'\r';
}

/// Which ASCII characters matter in a string.
using TStops = std::array<bool, 0x80>;

constexpr TStops Stops(std::string_view characters)
{
    TStops stops{};
    for (const char c : characters)
        stops[static_cast<unsigned char>(c)] = true;
    stops[0] = true; // may be the end of the text
    return stops;
}

constexpr TStops SingleQuoteStops = Stops("'\\\n");
constexpr TStops DoubleQuoteStops = Stops("\"\\{\n");
constexpr TStops BacktickStops = Stops("`\\{\n");

const wchar_t* Find(const wchar_t* p, const wchar_t* limit, wchar_t c)
{
    const wchar_t* found = std::wmemchr(p, c, static_cast<std::size_t>(limit - p));
    return found ? found : limit;
}

} // namespace

CPhpLexer::CPhpLexer(std::wstring_view text, bool shortTags)
    : m_begin(text.data()), m_cursor(text.data()), m_limit(text.data() + text.size()), m_shortTags(shortTags)
{
}

bool CPhpLexer::IsWordStart(wchar_t c)
{
    return IsWordChar(c) && !(c >= L'0' && c <= L'9');
}

EPhpToken CPhpLexer::Next()
{
    const SCut cut = Next(m_cursor);
    Take(m_cursor, cut.end);
    return cut.token;
}

// Whether the lower-case text stands at `p`, in any case.
bool CPhpLexer::StartsAt(const wchar_t* p, const char* lower) const
{
    for (; *lower; ++p, ++lower) {
        if (p >= m_limit || (*p | 0x20) != static_cast<wchar_t>(static_cast<unsigned char>(*lower)))
            return false;
    }
    return true;
}

bool CPhpLexer::IsLongTag(const wchar_t* p) const
{
    return StartsAt(p, "<?php") && (p + 5 == m_limit || IsBlank(p[5]));
}

bool CPhpLexer::OpensPhp(const wchar_t* p) const
{
    if (m_limit - p < 2 || p[1] != L'?')
        return false;
    if (m_shortTags)
        return !StartsAt(p + 2, "xml"); // an XML declaration is markup
    return (m_limit - p > 2 && p[2] == L'=') || IsLongTag(p);
}

CPhpLexer::SCut CPhpLexer::NextInHtml(const wchar_t* begin)
{
    const wchar_t* p = begin;
    for (; p < m_limit; ++p) {
        p = Find(p, m_limit, L'<');
        if (p == m_limit || OpensPhp(p))
            break;
    }
    if (p > begin)
        return {p, EPhpToken::Html, EPhpTokenKind::InlineHtml};
    if (p == m_limit)
        return {p, EPhpToken::End, EPhpTokenKind::End};

    m_inPhp = true;
    if (p[2] == L'=' && p + 2 < m_limit)
        return {p + 3, EPhpToken::OpenTagEcho, EPhpTokenKind::OpenTagEcho};
    return {p + (IsLongTag(p) ? 5 : 2), EPhpToken::OpenTag, EPhpTokenKind::OpenTag};
}

const wchar_t* CPhpLexer::FindLineCommentEnd(const wchar_t* p) const
{
    while (p < m_limit && !IsLineEnd(*p) && !(*p == L'?' && p[1] == L'>'))
        ++p;
    return p;
}

// `p` is just after the comment's opening.
const wchar_t* CPhpLexer::FindCommentEnd(const wchar_t* p) const
{
    // There are far fewer slashes than asterisks in a comment.
    for (const wchar_t* slash = p; slash < m_limit; ++slash) {
        slash = Find(slash, m_limit, L'/');
        if (slash < m_limit && slash > p && slash[-1] == L'*')
            return slash + 1;
    }
    return m_limit;
}

CPhpLexer::SCut CPhpLexer::LexLineComment(const wchar_t* p, EPhpToken token) const
{
    return {FindLineCommentEnd(p), token, EPhpTokenKind::Count};
}

CPhpLexer::SCut CPhpLexer::LexBlockComment(const wchar_t* p) const
{
    const bool isDoc = *p == L'*' && IsBlank(p[1]);
    return {FindCommentEnd(p), isDoc ? EPhpToken::DocComment : EPhpToken::BlockComment, EPhpTokenKind::Count};
}

CPhpLexer::SCut CPhpLexer::LexHash(const wchar_t* p)
{
    if (*p != L'[' || m_openAttribute)
        return LexLineComment(p, EPhpToken::HashComment);
    const wchar_t* end = FindAttributeEnd(p + 1);
    if (!end) {
        m_openAttribute = true;
        return LexLineComment(p, EPhpToken::HashComment);
    }
    return {end, EPhpToken::Attribute, EPhpTokenKind::Count};
}

// After the `]` that closes `#[`; null when there is none.
const wchar_t* CPhpLexer::FindAttributeEnd(const wchar_t* p) const
{
    const wchar_t* end = FindCode(p, L']');
    return end < m_limit ? end + 1 : nullptr;
}

// The bracket that closes the code beginning at `p`; the limit when there is none.
const wchar_t* CPhpLexer::FindCode(const wchar_t* p, wchar_t closing) const
{
    const wchar_t opening = closing == L']' ? L'[' : L'{';
    // What is open around `p`: code up to a bracket, or a string with code in it up to its quote.
    std::vector<wchar_t> open{closing};
    while (p < m_limit) {
        const wchar_t c = *p;
        if (open.back() == L'"' || open.back() == L'`') {
            if (c == L'\\') {
                ++p;
            } else if (c == open.back()) {
                open.pop_back();
            } else if (c == L'{' && p[1] == L'$') {
                open.push_back(L'}');
            } else if (c == L'$' && p[1] == L'{') {
                open.push_back(L'}');
                ++p;
            }
        } else if (c == open.back()) {
            open.pop_back();
            if (open.empty())
                return p;
        } else if ((c == L'{' && open.back() == L'}') || (c == opening && open.back() == closing)) {
            open.push_back(open.back());
        } else if (c == L'"' || c == L'`') {
            open.push_back(c);
        } else if (c == L'\'') {
            for (++p; p < m_limit && *p != L'\''; ++p)
                p += *p == L'\\';
        } else if (c == L'/' && p[1] == L'*') {
            p = FindCommentEnd(p + 2) - 1;
        } else if ((c == L'/' && p[1] == L'/') || (c == L'#' && p[1] != L'[')) {
            p = FindLineCommentEnd(p) - 1;
        }
        ++p;
    }
    return m_limit;
}

CPhpLexer::SContent CPhpLexer::FindQuote(const wchar_t* begin, wchar_t quote) const
{
    const TStops& stops = quote == L'\''  ? SingleQuoteStops
                          : quote == L'"' ? DoubleQuoteStops
                                          : BacktickStops;
    const wchar_t* escaped = nullptr;
    bool mayHoldLines = false;
    for (const wchar_t* p = begin; p < m_limit; ++p) {
        while (static_cast<char32_t>(*p) >= stops.size() || !stops[static_cast<char32_t>(*p)])
            ++p;
        if (*p == quote)
            return {p, mayHoldLines};
        if (*p == L'\\') {
            escaped = ++p;
            mayHoldLines |= *p == L'\n';
        } else if (*p == L'{') {
            const bool afterDollar = p > begin && p[-1] == L'$' && p - 1 != escaped;
            if (afterDollar || p[1] == L'$') {
                p = FindCode(p + 1, L'}');
                mayHoldLines = true;
            }
        } else {
            mayHoldLines |= *p == L'\n';
        }
    }
    return {m_limit, mayHoldLines};
}

CPhpLexer::SHeredoc CPhpLexer::FindHeredoc(const wchar_t* p) const
{
    while (*p == L' ' || *p == L'\t')
        ++p;
    const bool quoted = *p == L'\'' || *p == L'"';
    if (quoted)
        ++p;
    const std::wstring_view label(p, static_cast<std::size_t>(SkipWord(p) - p));
    p += label.size();
    const wchar_t* body = quoted ? p + 1 : p;
    for (; p < m_limit; ++p) {
        if (!IsLineEnd(*p))
            continue;
        const wchar_t* word = p + 1;
        while (*word == L' ' || *word == L'\t')
            ++word;
        const std::size_t left = word < m_limit ? static_cast<std::size_t>(m_limit - word) : 0;
        if (left >= label.size() && std::wstring_view(word, label.size()) == label &&
            !IsWordChar(word[label.size()]))
            return {body, word, word + label.size()};
    }
    return {body, nullptr, m_limit};
}

const wchar_t* CPhpLexer::SkipBlanks(const wchar_t* p) const
{
    for (;;) {
        while (p < m_limit && IsBlank(*p))
            ++p;
        if (p + 1 >= m_limit)
            return p;
        if (*p == L'/' && p[1] == L'*')
            p = FindCommentEnd(p + 2);
        else if ((*p == L'/' && p[1] == L'/') || (*p == L'#' && p[1] != L'['))
            p = FindLineCommentEnd(p);
        else
            return p;
        if (p + 1 < m_limit && *p == L'?' && p[1] == L'>')
            return p;
    }
}

const wchar_t* CPhpLexer::SkipWord(const wchar_t* p) const
{
    return IsWordStart(*p) ? SkipWordChars(p) : p;
}

} // namespace Kesh::SyntaxParser
