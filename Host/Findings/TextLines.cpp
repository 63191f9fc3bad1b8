#include "Findings/TextLines.h"

#include <algorithm>

namespace Kesh::Findings {

namespace {

constexpr std::size_t WholeLine = 240; ///< longer lines are cut
constexpr std::int64_t Before = 80;    ///< characters kept in front of the position

} // namespace

CTextLines::CTextLines(std::wstring_view text) : m_text(text), m_starts{0}
{
    for (std::size_t at = text.find(L'\n'); at != std::wstring_view::npos; at = text.find(L'\n', at + 1))
        m_starts.push_back(at + 1);
}

std::wstring_view CTextLines::Line(std::int64_t number) const
{
    if (number < 0 || number >= static_cast<std::int64_t>(m_starts.size()))
        return {};
    const auto index = static_cast<std::size_t>(number);
    const std::size_t end = index + 1 < m_starts.size() ? m_starts[index + 1] - 1 : m_text.size();
    return m_text.substr(m_starts[index], end - m_starts[index]);
}

std::size_t CTextLines::Offset(const SyntaxParser::CIterator& position) const
{
    if (position.y < 0)
        return 0;
    if (position.y >= static_cast<std::int64_t>(m_starts.size()))
        return m_text.size();
    const auto column = static_cast<std::size_t>(std::max<std::int64_t>(0, position.x));
    return m_starts[static_cast<std::size_t>(position.y)] + std::min(column, Line(position.y).size());
}

SyntaxParser::CIterator CTextLines::Position(std::size_t offset) const
{
    offset = std::min(offset, m_text.size());
    const auto line = std::upper_bound(m_starts.begin(), m_starts.end(), offset) - 1;
    return {static_cast<std::int64_t>(offset - *line), line - m_starts.begin()};
}

std::wstring_view CTextLines::Span(const SyntaxParser::SScheme& span) const
{
    const std::size_t start = Offset(span.start);
    return m_text.substr(start, std::max(start, Offset(span.end)) - start);
}

SLineExcerpt CTextLines::Excerpt(const SyntaxParser::CIterator& position) const
{
    const std::wstring_view line = Line(position.y);
    if (line.size() <= WholeLine)
        return {std::wstring(line), 0, false};
    const auto from = static_cast<std::size_t>(
        std::clamp<std::int64_t>(position.x - Before, 0, static_cast<std::int64_t>(line.size() - WholeLine)));
    return {std::wstring(line.substr(from, WholeLine)), static_cast<std::int64_t>(from),
            from + WholeLine < line.size()};
}

} // namespace Kesh::Findings
