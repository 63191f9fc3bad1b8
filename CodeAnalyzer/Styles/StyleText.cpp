#include "Styles/StyleText.h"

#include <algorithm>
#include <cstdint>

namespace Kesh::CodeAnalyzer {

bool CStyleText::IsSign(TTokenIndex index, wchar_t sign) const
{
    return Is(index, EStyleTokenKind::Delim) && Text(index)[0] == sign;
}

bool CStyleText::IsIsland(TTokenIndex index) const
{
    return KindOf(index) == EStyleTokenKind::Ident &&
           Text(index).find_first_not_of(SyntaxParser::MarkupIsland) == std::wstring_view::npos;
}

bool CStyleText::HasNewline(TTokenIndex index) const
{
    return Text(index).find_first_of(L"\n\r\f") != std::wstring_view::npos;
}

std::string CStyleText::NameOf(TTokenIndex index) const
{
    std::wstring_view text = Text(index);
    if (KindOf(index) == EStyleTokenKind::AtKeyword || KindOf(index) == EStyleTokenKind::Hash)
        text.remove_prefix(1);
    else if (KindOf(index) == EStyleTokenKind::Function)
        text.remove_suffix(1);
    return StyleLower(text);
}

SMarkupSpan CStyleText::SpanOf(STokens tokens) const
{
    if (tokens.IsEmpty())
        return EndBefore(tokens.begin);
    return {m_tokens[tokens.begin].span.begin, m_tokens[tokens.end - 1].span.end};
}

SMarkupSpan CStyleText::EndBefore(TTokenIndex index) const
{
    const TTokenIndex before = Before(index);
    const std::size_t end = before < Size() ? m_tokens[before].span.end : m_whole.begin;
    return {end, end};
}

TTokenIndex CStyleText::Before(TTokenIndex index) const
{
    while (index > 0 && IsBlank(index - 1))
        --index;
    return index > 0 ? index - 1 : Size();
}

TTokenIndex CStyleText::SkipBlanks(TTokenIndex index, TTokenIndex end) const
{
    while (index < end && IsBlank(index))
        ++index;
    return index;
}

STokens CStyleText::Trimmed(STokens tokens) const
{
    tokens.begin = SkipBlanks(tokens.begin, tokens.end);
    while (tokens.begin < tokens.end && IsBlank(tokens.end - 1))
        --tokens.end;
    return tokens;
}

std::string StyleLower(std::wstring_view text)
{
    std::string lower(text.size(), '\x7F');
    std::ranges::transform(text, lower.begin(), [](wchar_t c) {
        const auto code = static_cast<std::uint32_t>(c);
        return static_cast<char>(code - L'A' < 26 ? code + 32 : std::min(code, 0x7FU));
    });
    return lower;
}

} // namespace Kesh::CodeAnalyzer
