#pragma once

#include "Kesh/SyntaxParser/Position.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Kesh::Findings {

/// Where in a document that may hold PHP something stands.
enum class EPlace : std::uint8_t {
    Markup,
    Code,       ///< between two words of PHP
    OpeningTag, ///< where PHP begins
    Inside,     ///< a string or a comment of PHP
};

/// In what the lines of a document begin and where PHP is in them, found in one pass over it.
class CPhpPlaces
{
public:
    CPhpPlaces(std::wstring_view text, const std::wstring& factory, std::size_t lines);

    EPlace AtStartOf(std::int64_t line) const;
    /// Where a comment of PHP may stand in the line of a place: there, behind the word that it lies in, or
    /// behind the tag that opens PHP in front of it. Null: nowhere.
    std::optional<SyntaxParser::CIterator> ForComment(const SyntaxParser::CIterator& place) const;

    /// A region, and what it is.
    struct SRegion
    {
        SyntaxParser::SScheme span;
        EPlace place;
    };

private:
    std::vector<EPlace> m_places;
    std::vector<SRegion> m_regions;
};

} // namespace Kesh::Findings
