#include "Parsers/PlainExpression.h"

#include "Base/CommonString.h"
#include "Parsers/ExpressionStatementParser.h"

#include <algorithm>
#include <initializer_list>

namespace Kesh::CodeAnalyzer {

using Base::CCommonString;
using SyntaxParser::CRegion;
using SyntaxParser::PhpToken;
using enum ERegionClass;

namespace {

/// What to do with a region: go to a place, or one of these.
enum EStepKind : std::uint8_t {
    Refuse = PlaceCount,
    OpenGroup,
    OpenCall,
    OpenArrayCall,
    OpenLiteral,
    OpenIndex,
    ShutRound,
    ShutCast,
    ShutSquare,
    ShutIndex,
    CastOrOperand,
    SkipElement, ///< a `,` before which nothing stands
    End,
    EndOrRefuse, ///< the end, if the parser says so and no bracket is open; else the other
    EndOrOperand,
    EndOrElement,
    EndOrKeyArrow
};

using TRow = std::array<std::uint8_t, static_cast<std::size_t>(Count)>;

constexpr void Set(TRow& row, std::initializer_list<ERegionClass> kinds, int step)
{
    for (ERegionClass kind : kinds)
        row[static_cast<std::size_t>(kind)] = static_cast<std::uint8_t>(step);
}

constexpr auto Steps = [] {
    std::array<TRow, PlaceCount> rows;
    for (TRow& row : rows)
        row.fill(Refuse);

    TRow& operand = rows[AtOperand];
    Set(operand,
        {Sign, Operator, Relation, Negation, Step, Colon, DoubleColon, Backslash, Ellipsis, PrefixWord,
         PrefixKeyword},
        AtOperand);
    Set(operand, {Variable}, AfterChain);
    Set(operand, {Number}, AfterNumber);
    Set(operand, {StringStart}, InString);
    Set(operand, {Word}, AfterWord);
    Set(operand, {CalledWord}, AtCall);
    Set(operand, {ArrayWord}, AtArrayCall);
    Set(operand, {RoundOpen}, OpenGroup);
    Set(operand, {SquareOpen}, OpenLiteral);
    Set(operand, {SquareClose}, ShutIndex);

    TRow& start = rows[AtStart] = operand;
    Set(start, {Operator, Relation, Colon, DoubleColon, Ellipsis, SquareClose, PrefixKeyword}, Refuse);
    Set(start, {Word}, AfterStartWord);
    Set(start, {EchoWord, PrintWord}, AfterEcho);
    Set(start, {ReturnWord}, AfterReturn);
    Set(start, {BreakWord}, AfterBreak);

    TRow& element = rows[AtElement] = operand;
    Set(element, {Ellipsis}, AtElement);
    Set(element, {RoundClose}, ShutRound);
    Set(element, {SquareClose}, ShutSquare);
    Set(element, {Comma}, SkipElement);

    TRow& argument = rows[AtArgument] = operand;
    Set(argument, {Ellipsis}, AtArgument);
    Set(argument, {RoundClose}, ShutRound);
    Set(argument, {SquareClose}, Refuse);

    TRow& group = rows[AtGroup] = operand;
    Set(group, {Word, CalledWord, ArrayWord}, CastOrOperand);

    TRow& afterOperator = rows[AfterOperator] = operand;
    Set(afterOperator, {Assign}, AtOperand);

    TRow& echo = rows[AfterEcho] = operand;
    Set(echo, {Colon, Ellipsis, SquareClose}, Refuse);

    TRow& result = rows[AfterReturn] = operand;
    Set(result, {StatementEnd, Comma, KeyArrow, OtherKeyword}, EndOrRefuse);
    Set(result, {Colon}, EndOrOperand);

    Set(rows[AfterBreak], {StatementEnd}, EndOrRefuse);

    TRow& complete = rows[AfterOperand];
    Set(complete, {Sign, Operator, Carried}, AfterOperator);
    Set(complete, {Relation, WordOperator, Assign}, AtOperand);
    Set(complete, {Arrow, DoubleColon}, AtMember);
    Set(complete, {RoundOpen}, OpenCall);
    Set(complete, {SquareOpen}, OpenIndex);
    Set(complete, {RoundClose}, ShutRound);
    Set(complete, {SquareClose}, ShutSquare);
    Set(complete, {StatementEnd, OtherKeyword}, EndOrRefuse);
    Set(complete, {Colon}, EndOrOperand);
    Set(complete, {Comma}, EndOrElement);
    Set(complete, {KeyArrow}, EndOrKeyArrow);

    TRow& cast = rows[AtCastEnd] = complete;
    Set(cast, {RoundClose}, ShutCast);

    TRow& word = rows[AfterWord] = complete;
    Set(word, {Backslash}, AtOperand);

    TRow& chain = rows[AfterChain] = word;
    Set(chain, {Step}, AfterOperand);

    TRow& startWord = rows[AfterStartWord] = chain;
    Set(startWord, {Colon}, End);

    TRow& number = rows[AfterNumber] = complete;
    Set(number, {Word, Carried, RoundOpen, SquareOpen}, Refuse);

    Set(rows[AtCall], {RoundOpen}, OpenCall);
    Set(rows[AtArrayCall], {RoundOpen}, OpenArrayCall);

    Set(rows[AtMember], {Variable, Word, WordOperator, ArrayWord, OtherKeyword}, AfterChain);
    return rows;
}();

constexpr bool IsArray(EBracket kind)
{
    return kind == EBracket::ArrayCall || kind == EBracket::ArrayLiteral;
}

std::uint8_t StepFor(int place, ERegionClass kind)
{
    return Steps[static_cast<std::size_t>(place)][static_cast<std::size_t>(kind)];
}

} // namespace

CPlainExpression::CPlainExpression(const SyntaxParser::CDefRegions& defs, const CRegionClasses& classes,
                                   CExpressionStatementParser& parser)
    : m_classes(classes), m_stringEnd(defs.Php.TokenDefs[PhpToken::StringEnd]), m_parser(parser)
{
}

void CPlainExpression::Clear()
{
    m_count = 0;
    m_open = false;
    m_gap = {};
}

bool CPlainExpression::Start(CRegion& region)
{
    Clear();
    if (!region.text.data())
        return false;
    const ERegionClass kind = m_classes.Of(region);
    m_depth = 0;
    m_arrays = 0;
    m_keyArrowSeen = false;
    m_commaAllowed = kind == EchoWord;
    m_open = Follow(StepFor(AtStart, kind), region) == EStep::Taken;
    return m_open;
}

bool CPlainExpression::MakeRoom()
{
    if (m_count == MostKept)
        return false;
    m_room.resize(std::max(LeastKept, 2 * m_count));
    return true;
}

inline CPlainExpression::EStep CPlainExpression::Go(int place, const CRegion& region)
{
    if (!SKeptRegion::Fits(region) || (m_count == m_room.size() && !MakeRoom()))
        return EStep::Refused;
    m_place = static_cast<EPlainPlace>(place);
    SKept& kept = m_room[m_count++];
    kept.region.Set(region);
    kept.before = m_gap;
    m_gap = {};
    return EStep::Taken;
}

CPlainExpression::EStep CPlainExpression::Take(CRegion& region)
{
    if (m_place == InString)
        return region.definition == m_stringEnd ? Go(AfterOperand, region) : EStep::Taken;
    const ERegionClass kind = m_classes.Of(region);
    if (kind == Blank) {
        NoteBlanks(region);
        return EStep::Taken;
    }
    const std::uint8_t step = StepFor(m_place, kind);
    return step < PlaceCount ? Go(step, region) : Follow(step, region);
}

CPlainExpression::EStep CPlainExpression::Follow(std::uint8_t step, CRegion& region)
{
    switch (step) {
    case OpenGroup: return Open(EBracket::Group, AtGroup, region);
    case OpenCall: return Open(EBracket::Call, AtArgument, region);
    case OpenArrayCall: return Open(EBracket::ArrayCall, AtElement, region);
    case OpenLiteral: return Open(EBracket::ArrayLiteral, AtElement, region);
    case OpenIndex: return Open(EBracket::Index, AtOperand, region);
    case ShutRound: return CloseRound(AfterChain, region);
    case ShutCast: return CloseRound(AtOperand, region);
    case ShutSquare: return CloseSquare(region, false);
    case ShutIndex: return CloseSquare(region, true);
    case CastOrOperand:
        if (!m_parser.IsTypeRegion(&region))
            return Follow(StepFor(AtOperand, m_classes.Of(region)), region);
        return CCommonString::LowersTo(region.text, L"array") ? EStep::Refused : Go(AtCastEnd, region);
    case SkipElement: return InnermostIs(EBracket::ArrayLiteral) ? Go(AtElement, region) : EStep::Refused;
    case End: m_open = false; return EStep::Ended;
    case EndOrRefuse: return EndsWith(region) ? EStep::Ended : EStep::Refused;
    case EndOrOperand: return EndsWith(region) ? EStep::Ended : Go(AtOperand, region);
    case EndOrElement: return EndsWith(region) ? EStep::Ended : NextElement(region);
    case EndOrKeyArrow: return EndsWith(region) ? EStep::Ended : TakeKeyArrow(region);
    case Refuse: return EStep::Refused;
    default: return Go(step, region);
    }
}

CPlainExpression::EStep CPlainExpression::Open(EBracket kind, int place, const CRegion& region)
{
    if (m_depth == MostBrackets)
        return EStep::Refused;
    m_brackets[m_depth++] = kind;
    if (IsArray(kind)) {
        ++m_arrays;
        m_keyArrowSeen = false;
    }
    return Go(place, region);
}

void CPlainExpression::Pop()
{
    if (IsArray(m_brackets[--m_depth])) {
        --m_arrays;
        m_keyArrowSeen = true;
    }
}

CPlainExpression::EStep CPlainExpression::CloseRound(int place, CRegion& region)
{
    if (m_depth == 0) { // it belongs to the statement around the expression
        m_open = false;
        return EStep::Ended;
    }
    if (InnermostIs(EBracket::ArrayLiteral) || InnermostIs(EBracket::Index))
        return EStep::Refused;
    Pop();
    return Go(place, region);
}

CPlainExpression::EStep CPlainExpression::CloseSquare(const CRegion& region, bool indexOnly)
{
    if (!InnermostIs(EBracket::Index) && (indexOnly || !InnermostIs(EBracket::ArrayLiteral)))
        return EStep::Refused;
    Pop();
    return Go(AfterChain, region);
}

CPlainExpression::EStep CPlainExpression::NextElement(const CRegion& region)
{
    if (m_depth == 0)
        return m_commaAllowed ? Go(AtOperand, region) : EStep::Refused;
    if (InnermostIs(EBracket::Group) || InnermostIs(EBracket::Index))
        return EStep::Refused;
    m_keyArrowSeen = false;
    return Go(AtElement, region);
}

CPlainExpression::EStep CPlainExpression::TakeKeyArrow(const CRegion& region)
{
    if (m_arrays > 0) {
        if (m_keyArrowSeen)
            return EStep::Refused;
        m_keyArrowSeen = true;
    }
    return Go(AtOperand, region);
}

bool CPlainExpression::EndsWith(CRegion& region)
{
    if (m_depth > 0 || !m_parser.IsTerminalRegion(&region))
        return false;
    m_open = false;
    return true;
}

} // namespace Kesh::CodeAnalyzer
