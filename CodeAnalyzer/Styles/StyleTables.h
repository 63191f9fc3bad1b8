#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace Kesh::CodeAnalyzer {

/// What the names of CSS stand for; all from generated tables. Any thread.
namespace StyleTables {

/// Nodes of the value definition syntax.
enum class EN : std::uint8_t {
    Word,
    Sign,
    Function, ///< its name, and what it takes
    Basic,    ///< one of EBasic, and its range
    Type,     ///< defined elsewhere
    Seq,      ///< one after another
    All,      ///< all in any order
    Any,      ///< one or more in any order
    One,
    Repeat,
    List, ///< a repetition with commas
    NonEmpty
};

/// What has no syntax of its own, in the order of the script that writes the tables.
enum class EBasic : std::uint16_t {
    AnyValue,
    Component,
    Ident,
    CustomIdent,
    DashedIdent,
    String,
    Url,
    Number,
    Integer,
    Percentage,
    Length,
    Angle,
    Time,
    Frequency,
    Resolution,
    Flex,
    Dimension,
    HexColor,
    Hash,
    UnicodeRange,
    Zero,
    Function
};

struct SSyntax
{
    EN kind;
    std::uint8_t min; ///< of repetitions
    std::uint8_t max; ///< 255: no limit
    std::uint16_t first;
    std::uint16_t second;
};

struct SRange
{
    double min;
    double max;
};

using TSyntax = std::uint16_t;
constexpr TSyntax NoSyntax = 0xFFFF;
constexpr std::uint16_t NoWord = 0xFFFF;

TSyntax Count();
const SSyntax& At(TSyntax syntax);
/// The parts of a combination.
std::span<const std::uint16_t> Parts(const SSyntax& syntax);
TSyntax OfType(std::uint16_t type);
std::string_view NameOfType(std::uint16_t type);
/// By the index that nodes hold, which is one more than the place; null: 0.
const SRange* FindRange(std::uint16_t index);

/// The index of a lower-case word, or NoWord: no syntax has it.
std::uint16_t FindWord(std::string_view word);
std::string_view WordAt(std::uint16_t index);

/// NoSyntax: not known.
TSyntax FindProperty(std::string_view name);
/// `name` is "@font-face/src"; media features are descriptors of "@media".
TSyntax FindDescriptor(std::string_view name);
bool IsRangeFeature(std::string_view name);
/// ":hover", "::before", ":is()".
bool IsPseudo(std::string_view name);

std::span<const std::string_view> Pseudos();
/// The names of the descriptors of "@rule/".
template <class TVisit> void EachDescriptor(std::string_view prefix, TVisit visit);
std::string_view DescriptorAt(std::size_t index); ///< empty: no more

template <class TVisit> void EachDescriptor(std::string_view prefix, TVisit visit)
{
    for (std::size_t i = 0; !DescriptorAt(i).empty(); ++i)
        if (DescriptorAt(i).starts_with(prefix))
            visit(DescriptorAt(i).substr(prefix.size()));
}

} // namespace StyleTables
} // namespace Kesh::CodeAnalyzer
