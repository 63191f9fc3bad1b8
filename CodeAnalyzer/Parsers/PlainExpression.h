#pragma once

#include "Parsers/ExpressionData.h"
#include "Parsers/KeptRegion.h"
#include "Parsers/RegionClasses.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace Kesh::CodeAnalyzer {

class CExpressionStatementParser;

/// What the region just taken lets follow.
enum EPlainPlace : std::uint8_t {
    AtStart,
    AtOperand,      ///< an operand
    AtElement,      ///< an element of a list, or its end
    AtArgument,     ///< the first argument of a call, or its end
    AtGroup,        ///< an operand, or the type of a cast
    AtCastEnd,      ///< the `)` of a cast
    AfterOperator,  ///< an operand, or the `=` that completes the operator
    AfterEcho,      ///< what is echoed
    AfterReturn,    ///< an operand, or the end
    AfterBreak,     ///< the end
    AfterOperand,   ///< an operator
    AfterChain,     ///< the same, or whatever continues the operand
    AfterWord,      ///< the same after a word
    AfterStartWord, ///< the same after a word that began the statement
    AfterNumber,    ///< the same after a number
    AtCall,         ///< the `(` of a call
    AtArrayCall,    ///< the `(` of an array
    AtMember,       ///< the name of a member
    InString,       ///< the end of the string
    PlaceCount
};

/// Follows an expression that has nothing to be said of: operands and operators in turn, brackets in pairs.
/// Most are such, and it costs far less than the states of the expression parser. It keeps what it has taken:
/// once a region is not plain, the states parse the expression from its beginning, so that they alone decide
/// what is wrong and where.
class CPlainExpression
{
public:
    enum class EStep { Taken, Ended, Refused };
    /// What stands between two regions that carry code.
    struct SGap
    {
        bool blanks = false;
        bool lineBreak = false;
    };
    struct SKept
    {
        SKeptRegion region;
        SGap before;
    };

    /// `parser` is asked where the expression ends; it and the classes are not owned.
    CPlainExpression(const SyntaxParser::CDefRegions& defs, const CRegionClasses& classes,
                     CExpressionStatementParser& parser);

    /// Whether the region begins a plain expression. What was kept before is gone.
    bool Start(SyntaxParser::CRegion& region);
    EStep Take(SyntaxParser::CRegion& region);
    /// Takes the region if it is white space between others, as every third is.
    bool TakeWhiteSpace(const SyntaxParser::CRegion& region)
    {
        if (!m_classes.IsWhiteSpace(region) || m_place == InString)
            return false;
        NoteBlanks(region);
        return true;
    }

    /// Whether an expression has begun and not ended.
    bool IsOpen() const { return m_open; }
    /// The last expression, or what has been taken of it, until another one starts.
    std::span<const SKept> Kept() const { return {m_room.data(), m_count}; }
    /// What has come since the last region that was kept.
    SGap Gap() const { return m_gap; }
    void Clear();

private:
    static constexpr std::size_t MostBrackets = 32;
    static constexpr std::size_t LeastKept = 64;
    static constexpr std::size_t MostKept = 16384; ///< what is longer is left to the states

    void NoteBlanks(const SyntaxParser::CRegion& region)
    {
        m_gap.blanks = true;
        m_gap.lineBreak |= region.start.y != region.end.y;
        if (m_place == AfterOperator)
            m_place = AtOperand;
    }
    EStep Follow(std::uint8_t step, SyntaxParser::CRegion& region);
    [[gnu::noinline]] bool MakeRoom();
    EStep Go(int place, const SyntaxParser::CRegion& region);
    EStep Open(EBracket kind, int place, const SyntaxParser::CRegion& region);
    EStep CloseRound(int place, SyntaxParser::CRegion& region);
    EStep CloseSquare(const SyntaxParser::CRegion& region, bool indexOnly);
    EStep NextElement(const SyntaxParser::CRegion& region);
    EStep TakeKeyArrow(const SyntaxParser::CRegion& region);
    bool EndsWith(SyntaxParser::CRegion& region);
    void Pop();
    bool InnermostIs(EBracket kind) const { return m_depth > 0 && m_brackets[m_depth - 1] == kind; }

    const CRegionClasses& m_classes;
    const SyntaxParser::ISynRegion* const m_stringEnd;
    CExpressionStatementParser& m_parser;
    std::vector<SKept> m_room;
    std::size_t m_count = 0; ///< of those that are kept
    std::array<EBracket, MostBrackets> m_brackets;
    std::size_t m_depth = 0;
    EPlainPlace m_place = AtStart;
    bool m_open = false;
    bool m_commaAllowed = false;
    bool m_keyArrowSeen = false;
    int m_arrays = 0; ///< open array literals and calls
    SGap m_gap;
};

} // namespace Kesh::CodeAnalyzer
