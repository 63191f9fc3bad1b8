#include "Parsers/ExpressionStatementParser.h"

#include "Base/CommonString.h"

#include <cassert>
#include <initializer_list>
#include <utility>

namespace Kesh::CodeAnalyzer {

using Base::CCommonString;
using SyntaxParser::CRegion;
using SyntaxParser::STextChange;

namespace {

constexpr std::uint64_t Set(std::initializer_list<int> states)
{
    std::uint64_t set = 0;
    for (int state : states)
        set |= std::uint64_t{1} << state;
    return set;
}

// The states that each state may move to; a handler that is done with a region may also hand it on to the
// handler of the state it has moved to.
constexpr std::uint64_t Successors[ExpressionStateCount] = {
    /* AssignExpr */ Set({2, 21, 22}),
    /* AfterWordStart */ Set({10}),
    /* UOperand */ Set({2, 5, 9, 10, 12, 17, 18, 20, 21, 22, 23, 30, 31, 32, 33, 34, 35}),
    /* BinarOp */ Set({0, 2, 4, 10, 11, 22}),
    /* BinarAssignOp */ Set({0, 2}),
    /* FuncCallStart */ Set({7, 8}),
    /* PseudoFuncCallStart */ Set({8}),
    /* FuncCallParams */ Set({9, 24}),
    /* FuncCallNoBrParams */ Set({10}),
    /* Func */ Set({10, 33, 34}),
    /* Chain */ Set({2, 3, 9, 11}),
    /* ChainArrow */ Set({2, 9, 10}),
    /* Number */ Set({3, 13, 15}),
    /* FloatCommaNumber */ Set({14}),
    /* ExpNumber */ Set({3}),
    /* NumberDot */ Set({2, 16}),
    /* DottedNumber */ Set({3, 13}),
    /* String */ Set({3}),
    /* Backtick */ Set({3}),
    /* StringEnd */ Set({3}),
    /* Dot */ Set({3, 17}),
    /* Array */ Set({22}),
    /* ArrayKey */ Set({2, 3}),
    /* OpenRoundBr */ Set({2, 24, 25}),
    /* TypeOperator */ Set({2, 3}),
    /* ArrayTypeOperator */ Set({2, 22}),
    /* Return */ Set({2}),
    /* Break */ Set({28, 29}),
    /* BreakArg */ Set({29}),
    /* BreakAfterArg */ Set({}),
    /* Stream */ Set({3}),
    /* Dollar */ Set({2, 32}),
    /* VarDollar */ Set({10}),
    /* AnonymousFunction */ Set({}),
    /* AnonymousClass */ Set({}),
    /* MayBeFuncCall */ Set({2, 3, 9, 10}),
};

// The states to which blanks and comments mean something; for the others they are not there.
constexpr std::uint64_t SeesBlanks =
    Set({BinarAssignOpState, FloatCommaNumberState, StringState, BacktickState, StreamState,
         AnonymousFunctionState, AnonymousClassState});

} // namespace

CExpressionStatementParser::CExpressionStatementParser(SyntaxParser::CDefRegions* defs,
                                                       boost::shared_ptr<SyntaxParser::IReader> reader,
                                                       CParentParser* parent)
    : CStatementParser(defs, reader, parent),
      m_plain(*defs, *m_classes, *this),
      m_functionParser(defs, reader, this),
      m_classParser(defs, reader, this)
{
}

void CExpressionStatementParser::SetState(int state)
{
    assert(state == m_data.state || (Successors[m_data.state] >> state & 1));
    m_data.state = state;
}

void CExpressionStatementParser::BeforeParse(const STextChange& /*change*/)
{
    m_data = SExpressionData();
    m_dataStack.clear();
    m_plain.Clear();
}

// The texts of the regions go with the pass.
void CExpressionStatementParser::AfterParse()
{
    RecordOperations();
}

const std::vector<SSubExpr>& CExpressionStatementParser::GetSubExpressions()
{
    RecordOperations();
    return m_data.subExpressions;
}

// Of a plain expression nothing has been recorded yet.
void CExpressionStatementParser::RecordOperations()
{
    if (m_plain.Kept().empty())
        return;
    const bool hasEnded = !m_plain.IsOpen();
    ParseKept();
    if (hasEnded)
        FinishExpression();
}

void CExpressionStatementParser::Reset(CRegion* region)
{
    SExpressionData& data = m_data;
    ForgetBrackets();
    data.keyArrowSeen = false;
    data.operators.clear();
    data.operands.clear();
    data.subExpressions.clear();
    data.start = {region->start, region->end};
    data.startRecorded = true;
    data.operandDue = false;
    data.commaAllowed = false;
    data.matchHead = false;
    data.nextCall = EBracket::Call;
    data.lineBreakSeen = false;
}

int CExpressionStatementParser::StatementStartRegion(CRegion* region)
{
    return (m_followsPlain && m_plain.Start(*region)) || StartInStates(region);
}

void CExpressionStatementParser::DispathRegion(CRegion* region)
{
    if (!m_plain.IsOpen())
        DispatchToState(region);
    else if (!m_plain.TakeWhiteSpace(*region))
        DispatchToPlain(region);
}

void CExpressionStatementParser::DispatchToPlain(CRegion* region)
{
    switch (m_plain.Take(*region)) {
    case CPlainExpression::EStep::Taken: break;
    case CPlainExpression::EStep::Ended: m_parent->OnStructureEnd(region, 0); break;
    case CPlainExpression::EStep::Refused:
        ParseKept();
        DispatchToState(region);
        break;
    }
}

void CExpressionStatementParser::ParseKept()
{
    bool isFirst = true;
    for (const CPlainExpression::SKept& kept : m_plain.Kept()) {
        NoteGap(kept.before);
        CRegion region = kept.region.Get();
        if (std::exchange(isFirst, false))
            StartInStates(&region);
        else
            DispatchToState(&region);
    }
    NoteGap(m_plain.Gap());
    m_plain.Clear();
}

void CExpressionStatementParser::NoteGap(CPlainExpression::SGap gap)
{
    if (!gap.blanks)
        return;
    m_data.indexable = false;
    m_data.lineBreakSeen |= gap.lineBreak;
    if (m_data.state == BinarAssignOpState)
        SetState(UOperandState);
}

void CExpressionStatementParser::DispatchToState(CRegion* region)
{
    if ((SeesBlanks >> m_data.state & 1) || !IsIgnored(region))
        HandleRegion(region);
}

void CExpressionStatementParser::HandleRegion(CRegion* region)
{
    switch (m_data.state) {
    case AssignExprState: HandleAssignExprState(region); break;
    case AfterWordStartState: HandleAfterWordStartState(region); break;
    case UOperandState: HandleUOperandState(region); break;
    case BinarOpState: HandleBinarOpState(region); break;
    case BinarAssignOpState: HandleBinarAssignOpState(region); break;
    case FuncCallStartState: HandleFuncCallStartState(region); break;
    case PseudoFuncCallStartState: HandlePseudoFuncCallStartState(region); break;
    case FuncCallParamsState: HandleFuncCallParamsState(region); break;
    case FuncCallNoBrParamsState: HandleFuncCallNoBrParamsState(region); break;
    case FuncState: HandleFuncState(region); break;
    case ChainState:
        if (m_data.operandDue)
            HandleOperandDue(region);
        else
            HandleChainState(region);
        break;
    case ChainArrowState: HandleChainArrowState(region); break;
    case NumberState: HandleNumberState(region); break;
    case FloatCommaNumberState: HandleFloatCommaNumberState(region); break;
    case ExpNumberState: HandleExpNumberState(region); break;
    case NumberDotState: HandleNumberDotState(region); break;
    case DottedNumberState: HandleDottedNumberState(region); break;
    case StringState: HandleStringState(region); break;
    case BacktickState: HandleBacktickState(region); break;
    case StringEndState: HandleStringEndState(region); break;
    case DotState: HandleDotState(region); break;
    case ArrayState: HandleArrayState(region); break;
    case ArrayKeyState: HandleArrayKeyState(region); break;
    case OpenRoundBrState: HandleOpenRoundBrState(region); break;
    case TypeOperatorState: HandleTypeOperatorState(region); break;
    case ArrayTypeOperatorState: HandleArrayTypeOperatorState(region); break;
    case ReturnState: HandleReturnState(region); break;
    case BreakState: HandleBreakState(region); break;
    case BreakArgState: HandleBreakArgState(region); break;
    case BreakAfterArgState: HandleBreakAfterArgState(region); break;
    case StreamState: HandleStreamState(region); break;
    case DollarState: HandleDollarState(region); break;
    case VarDollarState: HandleVarDollarState(region); break;
    case AnonymousFunctionState: m_functionParser.DispathRegion(region); break;
    case AnonymousClassState: m_classParser.DispathRegion(region); break;
    case MayBeFuncCallState: HandleMayBeFuncCallState(region); break;
    default: break;
    }
}

int CExpressionStatementParser::IsTerminalRegion(CRegion* region)
{
    return IsStatementEnd(region);
}

void CExpressionStatementParser::DoExpressionEnd(CRegion* region)
{
    FinishExpression();
    m_parent->OnStructureEnd(region, 0);
}

void CExpressionStatementParser::FinishExpression()
{
    PushOperand();
    while (m_data.operands.size() >= 2 && !m_data.operators.empty())
        ReduceOnce();
    m_data.operators.clear();
    m_data.operands.clear();
    m_data.currentOperand = {};
    ForgetBrackets();
    m_data.state = AssignExprState;
}

void CExpressionStatementParser::DoExpressionError(int code, CRegion* region, int skip)
{
    m_data.subExpressions.clear();
    m_data.operands.clear();
    m_data.operators.clear();
    m_data.currentOperand = {};
    m_data.state = AssignExprState;
    m_parent->OnStructureError(code, region, skip);
}

bool CExpressionStatementParser::TakesOperand() const
{
    constexpr std::uint64_t WithOperand =
        Set({AssignExprState, UOperandState, PseudoFuncCallStartState, FuncCallNoBrParamsState,
             NumberDotState, ArrayKeyState, OpenRoundBrState, ReturnState});
    return (WithOperand >> m_data.state & 1) || m_data.operandDue;
}

bool CExpressionStatementParser::IsIgnored(CRegion* region)
{
    if (!IsNonSignificantRegion(region))
        return false;
    if (IsToken(region, PhpToken::Word) && TakesOperand()) // "php" is a name like any other
        return false;
    m_data.indexable = false;
    m_data.lineBreakSeen |= region->start.y != region->end.y;
    return true;
}

void CExpressionStatementParser::NoteRegion(CRegion* region)
{
    m_data.lastEnd = region->end;
    m_data.lineBreakSeen = false;
    m_data.indexable = IsVar(region, PhpVar::Variable) || IsClosing(region, L']');
}

void CExpressionStatementParser::NoteArgument(CRegion* region)
{
    const std::wstring_view word = TrimmedText(region);
    const bool isEcho = CCommonString::LowersTo(word, L"echo") || Equals(word, L"=");
    m_data.commaAllowed |= isEcho && !AnyBracketOpen();
    if (CCommonString::LowersTo(word, L"exit") || CCommonString::LowersTo(word, L"die"))
        m_data.argument = EArgument::InBrackets;
    else if (CCommonString::LowersTo(word, L"continue") || CCommonString::LowersTo(word, L"yield"))
        m_data.argument = EArgument::Optional;
    else
        m_data.argument = EArgument::Required;
}

void CExpressionStatementParser::NoteFunction(CRegion* region)
{
    const std::wstring_view text = TrimmedText(region);
    if (CCommonString::LowersTo(text, L"list"))
        m_data.nextCall = EBracket::List;
    else if (CCommonString::LowersTo(text, L"match"))
        m_data.nextCall = EBracket::MatchHead;
    else
        m_data.nextCall = EBracket::Call;
}

void CExpressionStatementParser::StartEmbedded(CRegion* region, int kind)
{
    m_data.embeddedKind = kind;
    if (kind == 0) {
        SetState(AnonymousFunctionState);
        m_functionParser.StatementStartRegion(region);
    } else {
        SetState(AnonymousClassState);
        m_classParser.StatementStartRegion(region);
    }
}

// The copy is made when the body begins; what follows the body of a closure or a class continues a complete
// operand.
void CExpressionStatementParser::SaveDataToStack()
{
    const bool isEmbedded = m_data.state == AnonymousFunctionState || m_data.state == AnonymousClassState;
    m_dataStack.push_back(std::move(m_data));
    if (isEmbedded)
        m_dataStack.back().state = ChainState;
    const int embeddedState =
        m_dataStack.back().embeddedKind == 0 ? AnonymousFunctionState : AnonymousClassState;
    m_data = SExpressionData();
    m_data.state = embeddedState;
}

void CExpressionStatementParser::LoadDataFromStack()
{
    m_data = std::move(m_dataStack.back());
    m_dataStack.pop_back();
}

void CExpressionStatementParser::OnParsingContinue(CRegion* region, int offer)
{
    SaveDataToStack();
    m_parent->OnParsingContinue(region, offer);
}

void CExpressionStatementParser::RestoreForContinue()
{
    m_plain.Clear();
    const int kind = m_dataStack.empty() ? 0 : m_dataStack.back().embeddedKind;
    if (kind == 0) {
        m_data.state = AnonymousFunctionState;
        m_functionParser.RestoreForContinue();
    } else {
        m_data.state = AnonymousClassState;
        m_classParser.RestoreForContinue();
    }
}

void CExpressionStatementParser::OnStructureEnd(CRegion* region, int redispatch)
{
    if (m_dataStack.empty()) { // suspended by an earlier pass that ended inside a closure
        m_data.state = AssignExprState;
        m_parent->OnStructureEnd(region, 1);
        return;
    }
    LoadDataFromStack();
    if (redispatch == 1)
        DispathRegion(region);
    else
        NoteRegion(region);
}

void CExpressionStatementParser::OnStructureError(int code, CRegion* region, int skipToEnd)
{
    m_parent->OnStructureError(code, region, skipToEnd);
}

void CExpressionStatementParser::AddErrors(const std::vector<SCAError>& errors)
{
    m_parent->AddErrors(errors);
}

void CExpressionStatementParser::OnError()
{
    m_dataStack.clear();
}

} // namespace Kesh::CodeAnalyzer
