#include "Base/CommonString.h"
#include "Kesh/CodeAnalyzer/Catalog.h"
#include "Parsers/ExpressionStatementParser.h"

namespace Kesh::CodeAnalyzer {

using Base::CCommonString;
using SyntaxParser::CRegion;

// What begins an operand wherever one may stand, at the start of a statement as well as after an operator:
// the state that follows, or none. `argumentState` follows a word that takes an argument with or without
// brackets.
std::optional<EExpressionState> CExpressionStatementParser::BeginOperand(CRegion* region,
                                                                         EExpressionState argumentState)
{
    if (IsNoNeedParamsFuncKeyword(region)) {
        NoteArgument(region);
        return argumentState;
    }
    if (IsExtra(region, PhpExtra::CalledWord) || IsFuncStyleKeyword(region)) {
        NoteFunction(region);
        return FuncState;
    }
    if (IsVar(region, PhpVar::ExtraDollar))
        return VarDollarState;
    if (IsVar(region, PhpVar::Variable))
        return ChainState;
    if (IsToken(region, PhpToken::Number))
        return NumberState;
    if (IsToken(region, PhpToken::StringStart))
        return StringState;
    if (IsToken(region, PhpToken::Text) && LastChar(region) == L'`')
        return BacktickState;
    if (IsOpening(region, L'(')) {
        OpenRound(region, EBracket::Group);
        return OpenRoundBrState;
    }
    if (IsOpening(region, L'[')) {
        OpenArrayLiteral(region);
        return ArrayKeyState;
    }
    if (IsKeyword(region, L"array")) {
        ++m_data.arrayConstructs;
        return ArrayState;
    }
    if (IsSymbol(region, L"$"))
        return DollarState;
    if (IsSymbol(region, L"\\"))
        return UOperandState;
    return std::nullopt;
}

// What else begins an expression that is a statement.
std::optional<EExpressionState> CExpressionStatementParser::BeginStatement(CRegion* region)
{
    if (IsToken(region, PhpToken::Keyword)) {
        const std::wstring_view word = TrimmedText(region);
        if (CCommonString::LowersTo(word, L"return"))
            return ReturnState;
        if (CCommonString::LowersTo(word, L"break"))
            return BreakState;
        if (IsExpressionKeyword(word))
            return BinarOpState;
        return std::nullopt;
    }
    if (IsPrefixOperator(region))
        return UOperandState;
    // The word "php" after a short opening tag is none of the statement's.
    if (IsWord(region) && !CCommonString::LowersTo(TrimmedText(region), L"php"))
        return AfterWordStartState;
    return std::nullopt;
}

int CExpressionStatementParser::StartInStates(CRegion* region)
{
    if (IsNonSignificantRegion(region))
        return false;
    Reset(region);
    auto state = BeginOperand(region, PseudoFuncCallStartState);
    if (!state)
        state = BeginStatement(region);
    if (!state)
        return false;
    m_data.state = *state;
    NoteRegion(region);
    return true;
}

// 0: the right side after `=`.
void CExpressionStatementParser::HandleAssignExprState(CRegion* region)
{
    SetState(UOperandState);
    HandleUOperandState(region);
}

// 1: after a word that began the statement.
void CExpressionStatementParser::HandleAfterWordStartState(CRegion* region)
{
    if (IsTerminalRegion(region) || IsSymbol(region, L":")) { // a constant; the label of a `goto`
        DoExpressionEnd(region);
        return;
    }
    SetState(ChainState);
    HandleChainState(region);
}

// 2: an operand.
void CExpressionStatementParser::HandleUOperandState(CRegion* region)
{
    if (!m_data.startRecorded) {
        m_data.start = {region->start, region->end};
        m_data.startRecorded = true;
    }

    if (const auto state = BeginOperand(region, FuncCallStartState)) {
        SetState(*state);
    } else if (IsClosing(region, L']')) { // of an index; a literal that ends here stays open as an array
        --m_data.squareDepth;
        Close(region);
        SetState(ChainState);
    } else if (IsOpening(region, L'{')) {
        OpenBrace(region, EBracket::Brace);
    } else if (IsPrefixOperator(region)) {
        // another operand state
    } else if (IsWord(region) ||
               (IsToken(region, PhpToken::Keyword) && IsExpressionKeyword(TrimmedText(region)))) {
        SetState(MayBeFuncCallState);
    } else if (IsToken(region, PhpToken::Text)) {
        if (IsSymbol(region, L"<<<"))
            SetState(StreamState);
    } else if (IsExtra(region, PhpExtra::Function)) {
        StartEmbedded(region, 0);
    } else if (IsClassWord(region)) {
        StartEmbedded(region, 1);
    } else if (IsToken(region, PhpToken::Dot)) {
        SetState(DotState);
    } else {
        DoExpressionError(Code::ExpressionError, region, 1);
        return;
    }
    NoteRegion(region);
}

// 3: an operator after an operand.
void CExpressionStatementParser::HandleBinarOpState(CRegion* region)
{
    if (!AnyBracketOpen() && IsTerminalRegion(region)) {
        DoExpressionEnd(region);
        return;
    }
    if (IsBinaryOperatorCanBeAssign(region)) {
        AddBinaryOperator(region);
        SetState(BinarAssignOpState);
    } else if (IsBinaryOperator(region)) {
        AddBinaryOperator(region);
        SetState(UOperandState);
    } else if (IsToken(region, PhpToken::Comma)) {
        HandleComma(region);
        return;
    } else if (IsToken(region, PhpToken::DoubleArrow)) {
        HandleKeyArrow(region);
        return;
    } else if (IsToken(region, PhpToken::Closing)) {
        HandleClosing(region);
        return;
    } else if (IsToken(region, PhpToken::Assign)) {
        AddBinaryOperator(region);
        SetState(AssignExprState);
    } else if (IsMemberArrow(region)) {
        SetState(ChainArrowState);
    } else if (IsOpening(region, L'(') || IsOpening(region, L'[')) {
        SetState(ChainState);
        CExpressionStatementParser::HandleChainState(region);
    } else {
        HandleUnexpected(region);
        return;
    }
    NoteRegion(region);
}

void CExpressionStatementParser::HandleComma(CRegion* region)
{
    const bool inList = InArray() || InnermostIs(EBracket::Call) || InnermostIs(EBracket::List) ||
                        InnermostIs(EBracket::MatchBody);
    if (inList) {
        EndElement();
        m_data.keyArrowSeen = false;
        SetState(ArrayKeyState);
    } else if (!AnyBracketOpen() && m_data.commaAllowed) {
        EndElement();
        SetState(UOperandState);
    } else {
        DoExpressionError(Code::ExpressionError, region, 1);
        return;
    }
    NoteRegion(region);
}

void CExpressionStatementParser::HandleKeyArrow(CRegion* region)
{
    if (InArray()) {
        if (m_data.keyArrowSeen) {
            DoExpressionError(Code::ExpressionError, region, 1);
            return;
        }
        m_data.keyArrowSeen = true;
    }
    EndElement();
    SetState(UOperandState);
    NoteRegion(region);
}

void CExpressionStatementParser::HandleClosing(CRegion* region)
{
    switch (LastChar(region)) {
    case L')': HandleClosingRound(region); return;
    case L']': CloseSquare(region); break;
    default:
        if (m_data.braceDepth == 0) { // it ends the block around: what follows is another statement
            m_data.lineBreakSeen = true;
            return;
        }
        CloseBrace(region);
        break;
    }
    SetState(ChainState);
    NoteRegion(region);
}

void CExpressionStatementParser::HandleClosingRound(CRegion* region)
{
    CloseRound(region);
    if (m_data.roundDepth < 0) {
        DoExpressionEnd(region);
        return;
    }
    SetState(ChainState);
    NoteRegion(region);
}

// What follows an operand on a later line, or is a keyword, starts the next statement: only the `;` is
// missing.
void CExpressionStatementParser::HandleUnexpected(CRegion* region)
{
    const bool nextStatement = m_data.lineBreakSeen || IsToken(region, PhpToken::Keyword);
    if (!AnyBracketOpen() && nextStatement)
        DoExpressionError(Code::UnendedStatement, region, 0);
    else
        DoExpressionError(Code::ExpressionError, region, IsOpening(region, L'{') ? 0 : 1);
}

// 4: after an operator that a `=` may complete.
void CExpressionStatementParser::HandleBinarAssignOpState(CRegion* region)
{
    if (IsToken(region, PhpToken::Assign)) {
        SetState(AssignExprState);
        NoteRegion(region);
        return;
    }
    SetState(UOperandState);
    if (!IsIgnored(region))
        HandleUOperandState(region);
}

// 5: inside an expression, after a word that takes an argument with or without brackets.
void CExpressionStatementParser::HandleFuncCallStartState(CRegion* region)
{
    if (IsOpening(region, L'(')) {
        OpenRound(region, EBracket::Call);
        m_data.operandDue = true;
        SetState(FuncCallParamsState);
        NoteRegion(region);
        return;
    }
    SetState(FuncCallNoBrParamsState);
    HandleFuncCallNoBrParamsState(region);
}

// 6: after `echo` and its like at the start of a statement.
void CExpressionStatementParser::HandlePseudoFuncCallStartState(CRegion* region)
{
    SetState(FuncCallNoBrParamsState);
    HandleFuncCallNoBrParamsState(region);
}

// 7: after the `(` of such a word: a cast, or arguments.
void CExpressionStatementParser::HandleFuncCallParamsState(CRegion* region)
{
    if (IsTypeRegion(region)) {
        m_data.operandDue = false;
        SetState(TypeOperatorState);
        NoteRegion(region);
        return;
    }
    SetState(FuncState);
    HandleFuncState(region);
}

// 8: the argument without brackets, or none.
void CExpressionStatementParser::HandleFuncCallNoBrParamsState(CRegion* region)
{
    SetState(ChainState);
    if (m_data.argument == EArgument::InBrackets) {
        CExpressionStatementParser::HandleChainState(region);
        return;
    }
    const bool operatorNext =
        m_data.argument == EArgument::Optional && (IsToken(region, PhpToken::Dot) || IsWordOperator(region));
    const bool none = operatorNext || (!AnyBracketOpen() && IsTerminalRegion(region)) ||
                      IsToken(region, PhpToken::Closing) || IsToken(region, PhpToken::Comma);
    if (!none) {
        m_data.operandDue = true;
        HandleOperandDue(region);
    } else if (m_data.argument == EArgument::Required) {
        DoExpressionError(Code::ExpressionError, region, 1);
    } else {
        CExpressionStatementParser::HandleChainState(region);
    }
}

// 9: the `(` of a call.
void CExpressionStatementParser::HandleFuncState(CRegion* region)
{
    if (m_data.operandDue) {
        SetState(ChainState);
        HandleOperandDue(region);
    } else if (IsOpening(region, L'(')) {
        OpenRound(region, m_data.nextCall);
        m_data.nextCall = EBracket::Call;
        m_data.operandDue = true;
        SetState(ChainState);
        NoteRegion(region);
    } else if (IsExtra(region, PhpExtra::Function)) {
        StartEmbedded(region, 0);
    } else if (IsClassWord(region)) {
        StartEmbedded(region, 1);
    } else {
        DoExpressionError(Code::ExpressionError, region, 1);
    }
}

// 10: after a complete operand.
void CExpressionStatementParser::HandleChainState(CRegion* region)
{
    if (IsMemberArrow(region)) {
        SetState(ChainArrowState);
    } else if (IsOpening(region, L'[')) {
        OpenIndex(region);
        SetState(UOperandState);
    } else if (IsOpening(region, L'(')) {
        SetState(FuncState);
        HandleFuncState(region);
        return;
    } else if (IsOpening(region, L'{') && m_data.matchHead) {
        m_data.matchHead = false;
        OpenBrace(region, EBracket::MatchBody);
        m_data.operandDue = true;
    } else if (IsOpening(region, L'{') && m_data.indexable) {
        OpenBrace(region, EBracket::Brace);
        SetState(UOperandState);
    } else if (IsSymbol(region, L"\\")) {
        SetState(UOperandState);
    } else {
        m_data.matchHead = false;
        SetState(BinarOpState);
        if (!IsSuffixOperator(region)) {
            HandleBinarOpState(region);
            return;
        }
    }
    NoteRegion(region);
}

// 10, where a list has just opened: its first operand or its end. `...` spreads an operand or stands for all.
void CExpressionStatementParser::HandleOperandDue(CRegion* region)
{
    if (IsSymbol(region, L"..."))
        return;
    m_data.operandDue = false;
    if (IsToken(region, PhpToken::Closing) ||
        (IsToken(region, PhpToken::Comma) && InnermostIs(EBracket::List))) {
        SetState(BinarOpState);
        HandleBinarOpState(region);
    } else {
        SetState(UOperandState);
        HandleUOperandState(region);
    }
}

// 11: the member name.
void CExpressionStatementParser::HandleChainArrowState(CRegion* region)
{
    if (IsVar(region, PhpVar::Variable)) {
        SetState(ChainState);
    } else if (IsWord(region) || IsToken(region, PhpToken::Keyword)) {
        SetState(ChainState);
        NoteRegion(region);
        m_data.indexable = true;
        return;
    } else if (IsExtra(region, PhpExtra::CalledWord)) {
        SetState(FuncState);
    } else if (IsOpening(region, L'{') || IsVar(region, PhpVar::ExtraDollar) || IsSymbol(region, L"$")) {
        SetState(UOperandState);
        HandleUOperandState(region);
        return;
    } else {
        DoExpressionError(Code::ExpressionError, region, 1);
        return;
    }
    NoteRegion(region);
}

} // namespace Kesh::CodeAnalyzer
