#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace Kesh::SyntaxParser {

/// A built-in name: its place among all of them in alphabetical order.
using TNameIndex = std::uint16_t;
/// In ascending order.
using TNameIndexes = std::span<const TNameIndex>;

/// The built-in names of HTML, SVG, MathML and CSS, in lower case: constants that cost nothing before they
/// are asked for. Any thread.
namespace NameTables {

std::span<const std::string_view> All();
TNameIndexes Tags();
TNameIndexes StyleProperties();
TNameIndexes GlobalAttributes();
/// The parts of a tag's attributes beside the global ones, which may share names.
struct STagAttributes
{
    TNameIndexes own;
    TNameIndexes svg;  ///< those of every SVG element
    TNameIndexes math; ///< those of every MathML element

    bool IsEmpty() const { return own.empty() && svg.empty() && math.empty(); }
};
/// All empty for a name that is no tag.
STagAttributes AttributesOf(TNameIndex tag);

/// Null when there is no such name.
std::optional<TNameIndex> Find(std::wstring_view name);
bool Has(TNameIndexes list, TNameIndex name);

} // namespace NameTables

} // namespace Kesh::SyntaxParser
