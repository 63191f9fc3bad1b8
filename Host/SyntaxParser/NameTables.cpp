#include "SyntaxParser/NameTables.h"

#include <algorithm>
#include <iterator>

namespace Kesh::SyntaxParser::NameTables {

namespace {

#include "markup-names.inc"

/// Compares a wide string with ASCII.
bool Precedes(std::string_view listed, std::wstring_view name)
{
    return std::lexicographical_compare(
        listed.begin(), listed.end(), name.begin(), name.end(),
        [](auto a, auto b) { return static_cast<char32_t>(a) < static_cast<char32_t>(b); });
}

} // namespace

std::span<const std::string_view> All()
{
    return Names;
}

TNameIndexes Tags()
{
    return TagList;
}

TNameIndexes StyleProperties()
{
    return StylePropertyList;
}

TNameIndexes GlobalAttributes()
{
    return GlobalAttributeList;
}

STagAttributes AttributesOf(TNameIndex tag)
{
    const auto* place = std::lower_bound(std::begin(TagList), std::end(TagList), tag);
    if (place == std::end(TagList) || *place != tag)
        return {};
    const auto number = place - std::begin(TagList);
    STagAttributes attributes;
    const std::size_t begin = number == 0 ? 0 : OwnEnds[number - 1];
    attributes.own = TNameIndexes(OwnAttributes).subspan(begin, OwnEnds[number] - begin);
    if (Has(SvgTags, tag))
        attributes.svg = SvgAttributes;
    if (Has(MathTags, tag))
        attributes.math = MathAttributes;
    return attributes;
}

std::optional<TNameIndex> Find(std::wstring_view name)
{
    const auto* place = std::lower_bound(std::begin(Names), std::end(Names), name, Precedes);
    if (place == std::end(Names) || place->size() != name.size() ||
        !std::equal(name.begin(), name.end(), place->begin(),
                    [](wchar_t a, char b) { return a == static_cast<wchar_t>(b); }))
        return std::nullopt;
    return static_cast<TNameIndex>(place - std::begin(Names));
}

bool Has(TNameIndexes list, TNameIndex name)
{
    return std::binary_search(list.begin(), list.end(), name);
}

} // namespace Kesh::SyntaxParser::NameTables
