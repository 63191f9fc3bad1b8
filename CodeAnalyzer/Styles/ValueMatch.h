#pragma once

#include "Styles/StyleTables.h"
#include "Styles/ValueParts.h"

#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// Matches a value against a syntax. A match is a set of the places where it may end, as bits, so that
/// nothing is tried twice; what takes too many steps is taken for right.
class CValueMatch
{
public:
    enum class EResult : std::uint8_t { Fits, Fails, TooLong };

    /// Where a value stops fitting, and what would fit there.
    struct SStop
    {
        std::size_t level = 0;
        std::size_t part = 0; ///< may be the end of the level
        std::vector<StyleTables::TSyntax> expected;
    };

    EResult Match(StyleTables::TSyntax syntax, const CValueParts& parts);
    /// After a match that failed; nothing where too much is left over.
    const SStop& Stop() const { return m_stop; }

private:
    using TEnds = std::uint64_t;
    using SSyntax = StyleTables::SSyntax;

    struct SPlace
    {
        std::size_t level;
        std::size_t part;
        bool operator==(const SPlace&) const = default;
    };

    TEnds Run(StyleTables::TSyntax syntax);
    TEnds At(StyleTables::TSyntax syntax, SPlace place);
    TEnds OfAlternatives(const SSyntax& node, SPlace place);
    TEnds OfEach(StyleTables::TSyntax syntax, std::size_t level, TEnds begins);
    TEnds OfLeaf(StyleTables::TSyntax syntax, const SSyntax& node, SPlace place);
    TEnds OfFunction(const SSyntax& node, const SValuePart& part, SPlace place);
    TEnds OfComma(StyleTables::TSyntax syntax, SPlace place);
    TEnds OfSequence(const SSyntax& node, SPlace place);
    TEnds OfAnyOrder(const SSyntax& node, SPlace place);
    TEnds OfRepeat(const SSyntax& node, SPlace place);
    TEnds AfterCommas(std::size_t level, TEnds ends);
    bool FitsBasic(const SSyntax& node, const SValuePart& part) const;
    void Fail(StyleTables::TSyntax syntax, SPlace place);

    const CValueParts* m_parts = nullptr;
    SStop m_stop;
    TTokenIndex m_stopToken = 0;
    std::optional<SPlace> m_failed;                   ///< where something failed to fit last
    std::unordered_map<std::uint64_t, TEnds> m_known; ///< of types, by type and place
    std::size_t m_steps = 0;
    std::size_t m_depth = 0;
    bool m_collects = false; ///< what would fit
    bool m_isTooLong = false;
};

} // namespace Kesh::CodeAnalyzer
