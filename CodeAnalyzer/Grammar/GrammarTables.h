#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace Kesh::CodeAnalyzer {

/// What Bison's tables say, laid out so that each step of the automaton reads two places, and never one
/// outside of them.
template <std::size_t StateCount, std::size_t TokenCount, std::size_t LeftCount, std::size_t RuleCount,
          std::size_t EntryCount>
struct SGrammarTables
{
    /// A row of entries: where it begins, and what holds for whatever has no entry in it.
    struct SRow
    {
        std::uint16_t begin;
        std::int16_t otherwise;
    };
    struct SEntry
    {
        std::int16_t of; ///< the column
        std::int16_t what;
    };
    struct SRule
    {
        std::uint16_t left; ///< what is recognised
        std::uint16_t length;
    };

    /// Rows may overlap each other and begin before the first entry; the one of a state that reads none is
    /// all empty.
    static constexpr std::size_t Before = TokenCount + StateCount;
    static constexpr std::size_t Behind = std::max(TokenCount, StateCount);
    static constexpr std::uint16_t EmptyRow = 0;
    /// Where a row of Bison's begins here.
    static constexpr std::uint16_t RowAt(int base)
    {
        const int begin = static_cast<int>(Before) + base;
        return begin > 0 && begin <= static_cast<int>(Before + EntryCount)
                   ? static_cast<std::uint16_t>(begin)
                   : throw "a row outside of the table";
    }

    std::array<SRow, StateCount> states{}; ///< by tokens
    std::array<SRow, LeftCount> gotos{};   ///< by states
    std::array<SEntry, Before + EntryCount + Behind> entries{};
    std::array<SRule, RuleCount> rules{};

    /// What to do in a state with a token: above 0 go to that state, below 0 reduce by that rule, 0 is an
    /// error.
    constexpr int Action(int state, int token) const
    {
        const SRow row = states[static_cast<std::size_t>(state)];
        const SEntry entry = entries[row.begin + static_cast<std::size_t>(token)];
        return entry.of == token ? entry.what : row.otherwise;
    }
    /// The rule that a state reduces by whatever follows; 0 when that depends.
    constexpr int RuleOfState(int state) const
    {
        const SRow row = states[static_cast<std::size_t>(state)];
        return row.begin == EmptyRow ? -row.otherwise : 0;
    }
    /// The state in which `state` is left by what the rule recognises.
    constexpr int Goto(int state, SRule rule) const
    {
        const SRow row = gotos[rule.left];
        const SEntry entry = entries[row.begin + static_cast<std::size_t>(state)];
        return entry.of == state ? entry.what : row.otherwise;
    }
};

} // namespace Kesh::CodeAnalyzer
