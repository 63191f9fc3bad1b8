#include "SyntaxParser/CssTokenizer.h"

#include <algorithm>

namespace Kesh::SyntaxParser {

namespace {

constexpr std::size_t TokensPerCancelCheck = 1024;

bool IsNewline(wchar_t c)
{
    return c == L'\n' || c == L'\r' || c == L'\f';
}

bool IsSpace(wchar_t c)
{
    return c == L' ' || c == L'\t' || IsNewline(c);
}

bool IsDigit(wchar_t c)
{
    return c >= L'0' && c <= L'9';
}

bool IsHexDigit(wchar_t c)
{
    return IsDigit(c) || (c >= L'a' && c <= L'f') || (c >= L'A' && c <= L'F');
}

bool IsNameStart(wchar_t c)
{
    return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z') || c == L'_' || c >= 0x80;
}

bool IsNameCharacter(wchar_t c)
{
    return IsNameStart(c) || IsDigit(c) || c == L'-';
}

// What no URL without quotes holds.
bool IsBadInUrl(wchar_t c)
{
    return c == L'"' || c == L'\'' || c == L'(' || c < 0x20 || c == 0x7F;
}

} // namespace

void CCssTokenizer::Run(SMarkupSpan part)
{
    m_text = m_places.Text().substr(0, part.end);
    m_at = part.begin;
    for (std::size_t count = 1; !IsAtEnd(); ++count) {
        SStyleToken token;
        token.span.begin = m_at;
        m_unfinished = false;
        token.kind = Read(m_text[m_at]);
        token.span.end = m_at;
        token.unfinished = m_unfinished;
        m_sink.AddStyle(token);
        if (count % TokensPerCancelCheck == 0 && m_places.IsCancelled())
            return;
    }
}

EStyleTokenKind CCssTokenizer::Read(wchar_t c)
{
    if (IsSpace(c))
        return ReadSpace();
    if (c == L'"' || c == L'\'')
        return ReadString(c);
    if (c == L'/' && At(1) == L'*')
        return ReadComment();
    if (StartsNumber())
        return ReadNumber();
    if (c == L'-' && At(1) == L'-' && At(2) == L'>') {
        m_at += 3;
        return EStyleTokenKind::Cdc;
    }
    if (StartsName(0))
        return ReadIdentLike();
    if (c == L'#' && (IsNameCharacter(At(1)) || StartsEscape(1))) {
        ++m_at;
        SkipName();
        return EStyleTokenKind::Hash;
    }
    if (c == L'@' && StartsName(1)) {
        ++m_at;
        SkipName();
        return EStyleTokenKind::AtKeyword;
    }
    if (c == L'<' && m_text.substr(m_at).starts_with(L"<!--")) {
        m_at += 4;
        return EStyleTokenKind::Cdo;
    }
    return ReadSign(c);
}

EStyleTokenKind CCssTokenizer::ReadSign(wchar_t c)
{
    ++m_at;
    switch (c) {
    case L':': return EStyleTokenKind::Colon;
    case L';': return EStyleTokenKind::Semicolon;
    case L',': return EStyleTokenKind::Comma;
    case L'[': return EStyleTokenKind::SquareOpen;
    case L']': return EStyleTokenKind::SquareClose;
    case L'(': return EStyleTokenKind::RoundOpen;
    case L')': return EStyleTokenKind::RoundClose;
    case L'{': return EStyleTokenKind::CurlyOpen;
    case L'}': return EStyleTokenKind::CurlyClose;
    default: return EStyleTokenKind::Delim;
    }
}

EStyleTokenKind CCssTokenizer::ReadSpace()
{
    while (IsSpace(At(0)))
        ++m_at;
    return EStyleTokenKind::Space;
}

EStyleTokenKind CCssTokenizer::ReadString(wchar_t quote)
{
    for (++m_at; !IsAtEnd(); ++m_at) {
        const wchar_t c = m_text[m_at];
        if (c == quote) {
            ++m_at;
            return EStyleTokenKind::String;
        }
        if (IsNewline(c))
            return EStyleTokenKind::BadString;
        if (c != L'\\' || m_at + 1 >= m_text.size())
            continue;
        ++m_at;
        if (m_text[m_at] == L'\r' && At(1) == L'\n')
            ++m_at;
    }
    m_unfinished = true;
    return EStyleTokenKind::String;
}

EStyleTokenKind CCssTokenizer::ReadNumber()
{
    m_at += At(0) == L'+' || At(0) == L'-';
    SkipDigits();
    if (At(0) == L'.' && IsDigit(At(1))) {
        ++m_at;
        SkipDigits();
    }
    const std::size_t sign = At(1) == L'+' || At(1) == L'-';
    if ((At(0) == L'e' || At(0) == L'E') && IsDigit(At(1 + sign))) {
        m_at += 1 + sign;
        SkipDigits();
    }
    if (StartsName(0)) {
        SkipName();
        return EStyleTokenKind::Dimension;
    }
    if (At(0) != L'%')
        return EStyleTokenKind::Number;
    ++m_at;
    return EStyleTokenKind::Percentage;
}

EStyleTokenKind CCssTokenizer::ReadIdentLike()
{
    const std::size_t begin = m_at;
    SkipName();
    if (At(0) != L'(')
        return EStyleTokenKind::Ident;
    const std::wstring_view name = m_text.substr(begin, m_at - begin);
    ++m_at;
    const bool isUrl = std::ranges::equal(name, std::wstring_view(L"url"),
                                          [](wchar_t a, wchar_t b) { return (a | 0x20) == b; });
    if (!isUrl)
        return EStyleTokenKind::Function;
    std::size_t next = 0;
    while (IsSpace(At(next)))
        ++next;
    return At(next) == L'"' || At(next) == L'\'' ? EStyleTokenKind::Function : ReadUrl();
}

EStyleTokenKind CCssTokenizer::ReadUrl()
{
    ReadSpace();
    for (; !IsAtEnd(); ++m_at) {
        const wchar_t c = m_text[m_at];
        if (c == L')') {
            ++m_at;
            return EStyleTokenKind::Url;
        }
        if (IsSpace(c)) {
            ReadSpace();
            if (!IsAtEnd() && At(0) != L')')
                return ReadBadUrl();
            --m_at;
        } else if (c == L'\\' && StartsEscape(0)) {
            SkipEscape();
            --m_at;
        } else if (IsBadInUrl(c) || c == L'\\') {
            return ReadBadUrl();
        }
    }
    m_unfinished = true;
    return EStyleTokenKind::Url;
}

EStyleTokenKind CCssTokenizer::ReadBadUrl()
{
    for (; !IsAtEnd(); ++m_at) {
        if (m_text[m_at] == L')') {
            ++m_at;
            return EStyleTokenKind::BadUrl;
        }
        if (StartsEscape(0)) {
            SkipEscape();
            --m_at;
        }
    }
    m_unfinished = true;
    return EStyleTokenKind::BadUrl;
}

EStyleTokenKind CCssTokenizer::ReadComment()
{
    const std::size_t end = m_text.find(L"*/", m_at + 2);
    m_unfinished = end == std::wstring_view::npos;
    m_at = m_unfinished ? m_text.size() : end + 2;
    return EStyleTokenKind::Comment;
}

void CCssTokenizer::SkipName()
{
    for (;;) {
        if (IsNameCharacter(At(0)))
            ++m_at;
        else if (StartsEscape(0))
            SkipEscape();
        else
            return;
    }
}

void CCssTokenizer::SkipEscape()
{
    ++m_at;
    if (!IsHexDigit(At(0))) {
        m_at += !IsAtEnd();
        return;
    }
    for (int digits = 0; digits < 6 && IsHexDigit(At(0)); ++digits)
        ++m_at;
    if (At(0) == L'\r' && At(1) == L'\n')
        m_at += 2;
    else if (IsSpace(At(0)))
        ++m_at;
}

void CCssTokenizer::SkipDigits()
{
    while (IsDigit(At(0)))
        ++m_at;
}

bool CCssTokenizer::StartsEscape(std::size_t offset) const
{
    return At(offset) == L'\\' && m_at + offset + 1 < m_text.size() && !IsNewline(At(offset + 1));
}

bool CCssTokenizer::StartsName(std::size_t offset) const
{
    if (At(offset) != L'-')
        return IsNameStart(At(offset)) || StartsEscape(offset);
    const wchar_t next = At(offset + 1);
    return next == L'-' || IsNameStart(next) || StartsEscape(offset + 1);
}

bool CCssTokenizer::StartsNumber() const
{
    const std::size_t sign = At(0) == L'+' || At(0) == L'-';
    return IsDigit(At(sign)) || (At(sign) == L'.' && IsDigit(At(sign + 1)));
}

} // namespace Kesh::SyntaxParser
