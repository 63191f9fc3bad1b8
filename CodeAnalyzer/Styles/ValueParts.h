#pragma once

#include "Styles/StyleBlocks.h"

#include <cstdint>
#include <vector>

namespace Kesh::CodeAnalyzer {

enum class EUnit : std::uint8_t { None, Length, Angle, Time, Frequency, Resolution, Flex, Sound, Unknown };

/// Of a unit in lower case.
EUnit FindUnit(std::string_view unit);
/// Where the unit of a number begins.
std::size_t UnitOffset(std::string_view number);
/// A unit that is like another in writing; empty: none is.
std::string NearestUnit(std::string_view unit);

/// Whether a function computes a number; in lower case.
bool IsMathFunction(std::string_view name);

/// One part of a value, its blanks left out.
struct SValuePart
{
    enum EKind : std::uint8_t {
        Ident,
        Function, ///< with all that it takes
        String,
        Url,
        Number,
        Percentage,
        Dimension,
        Hash,
        UnicodeRange,
        Sign
    };

    EKind kind = Sign;
    EUnit unit = EUnit::None;
    bool isInteger = false;
    bool isDashed = false; ///< an identifier of the author: "--x"
    bool isMath = false;   ///< a function that computes a number
    wchar_t sign = 0;
    std::uint16_t word = 0;  ///< of an identifier or function
    std::uint16_t level = 0; ///< of what a function takes
    double number = 0;
    STokens tokens;
};

/// A value as the matcher sees it: level 0 holds its own parts, each function's arguments one more.
class CValueParts
{
public:
    /// False: too long to judge.
    bool Read(const CStyleText& text, const SBlocks& blocks, STokens value);

    std::size_t Size() const { return m_used; }
    const std::vector<SValuePart>& Level(std::size_t level) const { return m_levels[level]; }
    /// The place of a part, or of the end of its level.
    STokens TokensAt(std::size_t level, std::size_t part) const;

    /// No level has more.
    static constexpr std::size_t MostParts = 63;
    static constexpr std::size_t MostLevels = 200;

private:
    struct SOpen
    {
        std::size_t level;
        TTokenIndex end;
    };

    SValuePart ReadPart(const CStyleText& text, TTokenIndex index) const;
    TTokenIndex ReadUnicodeRange(const CStyleText& text, TTokenIndex index, TTokenIndex end) const;

    std::vector<std::vector<SValuePart>> m_levels;
    std::vector<TTokenIndex> m_ends;
    std::size_t m_used = 0;
};

} // namespace Kesh::CodeAnalyzer
