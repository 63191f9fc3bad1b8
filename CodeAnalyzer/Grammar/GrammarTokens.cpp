#include "Grammar/GrammarTokens.h"

#include <algorithm>

namespace Kesh::CodeAnalyzer {

std::wstring LowerAscii(std::wstring_view text)
{
    std::wstring lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](wchar_t c) { return c >= L'A' && c <= L'Z' ? c | 0x20 : c; });
    return lower;
}

std::wstring CGrammarTokens::Lower(std::uint32_t index) const
{
    return LowerAscii(Text(index));
}

SyntaxParser::SScheme CGrammarTokens::Span(std::uint32_t index) const
{
    const SGrammarToken& token = m_tokens[index];
    const std::wstring_view text = token.View();
    SyntaxParser::SScheme span{{token.column, token.line}, {token.column + token.size, token.line}};
    const std::size_t lastLine = text.rfind(L'\n');
    if (lastLine != std::wstring_view::npos) {
        span.end.y += std::count(text.begin(), text.end(), L'\n');
        span.end.x = static_cast<std::int64_t>(text.size() - lastLine - 1);
    }
    return span;
}

} // namespace Kesh::CodeAnalyzer
