#include "Styles/StyleTables.h"

#include <algorithm>
#include <iterator>
#include <limits>

namespace Kesh::CodeAnalyzer::StyleTables {

namespace {

struct SNamedSyntax
{
    std::string_view name;
    TSyntax syntax;
};

constexpr double Infinite = std::numeric_limits<double>::infinity();

#include "style-values.inc"

TSyntax Find(std::span<const SNamedSyntax> list, std::string_view name)
{
    const auto place = std::ranges::lower_bound(list, name, {}, &SNamedSyntax::name);
    return place != list.end() && place->name == name ? place->syntax : NoSyntax;
}

} // namespace

TSyntax Count()
{
    return static_cast<TSyntax>(std::size(Syntaxes));
}

const SSyntax& At(TSyntax syntax)
{
    return Syntaxes[syntax];
}

std::span<const std::uint16_t> Parts(const SSyntax& syntax)
{
    return {Children + syntax.first, syntax.second};
}

TSyntax OfType(std::uint16_t type)
{
    return Types[type];
}

std::string_view NameOfType(std::uint16_t type)
{
    return TypeNames[type];
}

const SRange* FindRange(std::uint16_t index)
{
    return index ? &Ranges[index - 1] : nullptr;
}

std::uint16_t FindWord(std::string_view word)
{
    const auto* place = std::ranges::lower_bound(Words, word);
    return place != std::end(Words) && *place == word ? static_cast<std::uint16_t>(place - Words) : NoWord;
}

std::string_view WordAt(std::uint16_t index)
{
    return Words[index];
}

TSyntax FindProperty(std::string_view name)
{
    return Find(Properties, name);
}

TSyntax FindDescriptor(std::string_view name)
{
    return Find(Descriptors, name);
}

bool IsRangeFeature(std::string_view name)
{
    return std::ranges::binary_search(RangeFeatures, name);
}

bool IsPseudo(std::string_view name)
{
    return std::ranges::binary_search(StyleTables::Pseudos(), name);
}

std::span<const std::string_view> Pseudos()
{
    return PseudoNames;
}

std::string_view DescriptorAt(std::size_t index)
{
    return index < std::size(Descriptors) ? Descriptors[index].name : std::string_view();
}

} // namespace Kesh::CodeAnalyzer::StyleTables
