#pragma once

#include <cstdint>
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

/// In what the lines of a document begin, found in one pass over it.
class CPhpPlaces
{
public:
    CPhpPlaces(std::wstring_view text, const std::wstring& factory, std::size_t lines);

    EPlace AtStartOf(std::int64_t line) const;

private:
    std::vector<EPlace> m_places;
};

} // namespace Kesh::Findings
