#pragma once

#include "Findings/Finding.h"

#include <string_view>
#include <vector>

namespace Kesh::Findings {

/// Finds lines and spans in a text whose lines end with "\n". The text must outlive it. Positions beyond the
/// text are taken for its end.
class CTextLines
{
public:
    explicit CTextLines(std::wstring_view text);

    std::size_t Count() const { return m_starts.size(); }
    /// Without its line end.
    std::wstring_view Line(std::int64_t number) const;
    /// The place of a position in the text.
    std::size_t Offset(const SyntaxParser::CIterator& position) const;
    SyntaxParser::CIterator Position(std::size_t offset) const;
    std::wstring_view Span(const SyntaxParser::SScheme& span) const;
    SLineExcerpt Excerpt(const SyntaxParser::CIterator& position) const;

private:
    std::wstring_view m_text;
    std::vector<std::size_t> m_starts;
};

} // namespace Kesh::Findings
