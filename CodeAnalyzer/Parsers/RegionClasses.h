#pragma once

#include "Kesh/SyntaxParser/Regions.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

namespace Kesh::CodeAnalyzer {

/// What a region is to an expression, as far as its kind and its own characters tell.
enum class ERegionClass : std::uint8_t {
    Other, ///< left to the statement parsers
    Blank,
    Variable,
    Number,
    StringStart,
    Word,
    CalledWord, ///< called like a function: `isset`, `fn`
    ArrayWord,
    OtherKeyword,
    WordOperator,  ///< `and`, `instanceof`
    PrefixWord,    ///< `new`
    PrefixKeyword, ///< the same, but it begins no statement: `clone`
    EchoWord,
    PrintWord,
    ReturnWord,
    BreakWord,
    Sign,     ///< `+`, `-`, `&`: between two operands or before one
    Operator, ///< between two operands; a `=` may complete it
    Relation, ///< between two operands
    Negation, ///< before an operand: `!`, `~`, `@`
    Step,     ///< `++`, `--`
    Colon,
    DoubleColon,
    Backslash,
    Ellipsis,
    Carried, ///< `.`, and operators that pass as one
    Assign,
    Arrow,
    KeyArrow,
    Comma,
    StatementEnd,
    RoundOpen,
    RoundClose,
    SquareOpen,
    SquareClose,
    Count
};

/// Tells the classes of the regions that carry their text. Immutable once built; any thread.
class CRegionClasses
{
public:
    explicit CRegionClasses(const SyntaxParser::SPhpRegionDefs& defs);
    /// One for all that ask one after the other with the same kinds. Any thread.
    static std::shared_ptr<const CRegionClasses> Shared(const SyntaxParser::SPhpRegionDefs& defs);

    bool IsComment(const SyntaxParser::ISynRegion* definition) const
    {
        const SSlot& slot = Find(definition);
        return slot.rule == ERule::Fixed && slot.fixed == ERegionClass::Blank;
    }
    /// Whether the text is nothing but what is white space to the parsers.
    static bool IsBlank(std::wstring_view text)
    {
        for (const wchar_t c : text) // mostly one or a few
            if (c != L' ' && c != L'\t' && c != L'\n')
                return false;
        return true;
    }
    /// Whether the region is white space, as many are.
    bool IsWhiteSpace(const SyntaxParser::CRegion& region) const
    {
        return region.definition == m_defs.TokenDefs[SyntaxParser::PhpToken::Text] && !region.text.empty() &&
               IsBlank(region.text);
    }
    [[gnu::always_inline]] ERegionClass Of(const SyntaxParser::CRegion& region) const
    {
        const SSlot& slot = Find(region.definition);
        if (slot.rule == ERule::Fixed)
            return slot.fixed;
        if (region.text.size() == 1 && slot.rule <= ERule::Closing)
            return OfSign(slot.rule, region.text[0]);
        return FromText(slot.rule, region);
    }

private:
    /// How much the kind tells by itself.
    enum class ERule : std::uint8_t {
        Fixed,
        Plain,
        Opening,
        Closing,
        Word,
        Constant,
        CalledWord,
        Argument,
        Keyword
    };
    struct SSlot
    {
        const SyntaxParser::ISynRegion* definition = nullptr;
        ERule rule = ERule::Fixed;
        ERegionClass fixed = ERegionClass::Other;
    };
    /// What ASCII characters are when they stand alone, in plain text and as opening and closing brackets.
    static const std::array<std::array<ERegionClass, 0x80>, 3> SignsOf;
    static constexpr std::size_t Slots = 256; ///< several times the kinds there are: they hardly ever collide

    static std::size_t Hash(const SyntaxParser::ISynRegion* definition)
    {
        return (reinterpret_cast<std::uintptr_t>(definition) >> 3) * 0x9E3779B97F4A7C15 >> 56;
    }
    const SSlot& Find(const SyntaxParser::ISynRegion* definition) const
    {
        std::size_t i = Hash(definition);
        while (m_slots[i].definition != definition && m_slots[i].definition)
            i = (i + 1) % Slots;
        return m_slots[i];
    }
    void Add(const SyntaxParser::ISynRegion* definition, ERule rule, ERegionClass fixed);
    static ERegionClass OfSign(ERule rule, wchar_t sign)
    {
        const auto code = static_cast<char32_t>(sign);
        return code < 0x80 ? SignsOf[static_cast<std::size_t>(rule) - 1][code] : ERegionClass::Other;
    }
    static ERegionClass FromText(ERule rule, const SyntaxParser::CRegion& region);

    std::array<SSlot, Slots> m_slots;
    const SyntaxParser::SPhpRegionDefs m_defs;
};

} // namespace Kesh::CodeAnalyzer
