#pragma once

#include "Parsers/AnonymousClassParser.h"
#include "Parsers/AnonymousFunctionParser.h"
#include "Parsers/ExpressionData.h"
#include "Parsers/PlainExpression.h"
#include "Parsers/StatementParser.h"

#include <optional>

namespace Kesh::CodeAnalyzer {

/// One PHP expression statement: an assignment, a call, `echo` and its like, `return`, `break`, array
/// literals, strings, numbers, casts and member chains. Base of the parsers for expressions inside other
/// statements, which differ in where an expression ends.
class CExpressionStatementParser : public CStatementParser, public CParentParser
{
public:
    CExpressionStatementParser(SyntaxParser::CDefRegions* defs,
                               boost::shared_ptr<SyntaxParser::IReader> reader, CParentParser* parent);

    void DispathRegion(SyntaxParser::CRegion* region) override;
    int StatementStartRegion(SyntaxParser::CRegion* region) override;
    void BeforeParse(const SyntaxParser::STextChange& change) override;
    void AfterParse() override;
    void RestoreForContinue() override;
    void OnError() override;

    void OnStructureEnd(SyntaxParser::CRegion* region, int redispatch) override;
    void OnParsingContinue(SyntaxParser::CRegion* region, int offer) override;
    void OnStructureError(int code, SyntaxParser::CRegion* region, int skipToEnd) override;
    void AddErrors(const std::vector<SCAError>& errors) override;

    /// Whether the expression ends at this region; asked while no bracket is open.
    virtual int IsTerminalRegion(SyntaxParser::CRegion* region);
    virtual void HandleBinarOpState(SyntaxParser::CRegion* region);
    virtual void HandleChainState(SyntaxParser::CRegion* region);

    // The region tests.
    int IsBinaryOperator(SyntaxParser::CRegion* region);
    int IsBinaryOperatorCanBeAssign(SyntaxParser::CRegion* region);
    int IsPrefixOperator(SyntaxParser::CRegion* region);
    int IsSuffixOperator(SyntaxParser::CRegion* region);
    int IsFuncStyleKeyword(SyntaxParser::CRegion* region);
    int IsNoNeedParamsFuncKeyword(SyntaxParser::CRegion* region);
    int IsTypeRegion(SyntaxParser::CRegion* region);

    // The operators.
    static int GetOperatorPriority(std::wstring_view op);
    void AddOperator(SyntaxParser::CRegion* region);
    void AddOperator(std::wstring_view op);

    /// The operations recorded for the last expression, in the order in which they were reduced.
    const std::vector<SSubExpr>& GetSubExpressions();
    /// Before a pass whose beginning this parser does not hear of: what it holds on to of the last one's
    /// text.
    void ForgetTexts() { m_plain.Clear(); }

protected:
    /// From now on every expression is for the states alone, however plain it is.
    void LeaveToStates() { m_followsPlain = false; }
    void DoExpressionEnd(SyntaxParser::CRegion* region);
    void DoExpressionError(int code, SyntaxParser::CRegion* region, int skip);

    /// Opens `[` after an operand; the index follows.
    void OpenIndex(SyntaxParser::CRegion* region);
    bool AnyBracketOpen() const
    {
        return m_data.roundDepth > 0 || m_data.squareDepth > 0 || m_data.braceDepth > 0;
    }
    bool IsMemberArrow(SyntaxParser::CRegion* region) const
    {
        return IsToken(region, PhpToken::Arrow) || IsSymbol(region, L"::");
    }
    void AddBinaryOperator(SyntaxParser::CRegion* region);
    void Reset(SyntaxParser::CRegion* region);
    void SetState(int state);

    SExpressionData m_data;

    void HandleAssignExprState(SyntaxParser::CRegion* region);
    void HandleAfterWordStartState(SyntaxParser::CRegion* region);
    void HandleUOperandState(SyntaxParser::CRegion* region);
    void HandleBinarAssignOpState(SyntaxParser::CRegion* region);
    void HandleFuncCallStartState(SyntaxParser::CRegion* region);
    void HandlePseudoFuncCallStartState(SyntaxParser::CRegion* region);
    void HandleFuncCallParamsState(SyntaxParser::CRegion* region);
    void HandleFuncCallNoBrParamsState(SyntaxParser::CRegion* region);
    void HandleFuncState(SyntaxParser::CRegion* region);
    void HandleChainArrowState(SyntaxParser::CRegion* region);
    void HandleNumberState(SyntaxParser::CRegion* region);
    void HandleFloatCommaNumberState(SyntaxParser::CRegion* region);
    void HandleExpNumberState(SyntaxParser::CRegion* region);
    void HandleNumberDotState(SyntaxParser::CRegion* region);
    void HandleDottedNumberState(SyntaxParser::CRegion* region);
    void HandleStringState(SyntaxParser::CRegion* region);
    void HandleBacktickState(SyntaxParser::CRegion* region);
    void HandleStringEndState(SyntaxParser::CRegion* region);
    void HandleDotState(SyntaxParser::CRegion* region);
    void HandleArrayState(SyntaxParser::CRegion* region);
    void HandleArrayKeyState(SyntaxParser::CRegion* region);
    void HandleOpenRoundBrState(SyntaxParser::CRegion* region);
    void HandleTypeOperatorState(SyntaxParser::CRegion* region);
    void HandleArrayTypeOperatorState(SyntaxParser::CRegion* region);
    void HandleReturnState(SyntaxParser::CRegion* region);
    void HandleBreakState(SyntaxParser::CRegion* region);
    void HandleBreakArgState(SyntaxParser::CRegion* region);
    void HandleBreakAfterArgState(SyntaxParser::CRegion* region);
    void HandleStreamState(SyntaxParser::CRegion* region);
    void HandleDollarState(SyntaxParser::CRegion* region);
    void HandleVarDollarState(SyntaxParser::CRegion* region);
    void HandleMayBeFuncCallState(SyntaxParser::CRegion* region);

    void HandleOperandDue(SyntaxParser::CRegion* region);
    void HandleComma(SyntaxParser::CRegion* region);
    void HandleKeyArrow(SyntaxParser::CRegion* region);
    void HandleClosing(SyntaxParser::CRegion* region);
    void HandleClosingRound(SyntaxParser::CRegion* region);
    void HandleUnexpected(SyntaxParser::CRegion* region);
    /// Notes what it skips, so that a missing `;` can be told from a stray operand.
    bool IsIgnored(SyntaxParser::CRegion* region);
    [[gnu::noinline]] void DispatchToPlain(SyntaxParser::CRegion* region); // blanks need not come so far
    int StartInStates(SyntaxParser::CRegion* region);
    std::optional<EExpressionState> BeginOperand(SyntaxParser::CRegion* region,
                                                 EExpressionState argumentState);
    std::optional<EExpressionState> BeginStatement(SyntaxParser::CRegion* region);
    void DispatchToState(SyntaxParser::CRegion* region);
    void HandleRegion(SyntaxParser::CRegion* region);
    void ParseKept();
    void RecordOperations();
    void NoteGap(CPlainExpression::SGap gap);
    void FinishExpression();
    void NoteRegion(SyntaxParser::CRegion* region);
    void NoteArgument(SyntaxParser::CRegion* region);
    void NoteFunction(SyntaxParser::CRegion* region);

    void Open(SyntaxParser::CRegion* region, EBracket kind);
    void OpenRound(SyntaxParser::CRegion* region, EBracket kind);
    void OpenArrayConstruct(SyntaxParser::CRegion* region);
    void OpenArrayLiteral(SyntaxParser::CRegion* region);
    void OpenBrace(SyntaxParser::CRegion* region, EBracket kind);
    void CloseSquare(SyntaxParser::CRegion* region);
    void CloseRound(SyntaxParser::CRegion* region);
    void CloseBrace(SyntaxParser::CRegion* region);
    void Close(SyntaxParser::CRegion* region);
    void CloseInnermost(SyntaxParser::CRegion* region);
    bool EndArray(std::vector<int>& marks, int depth);
    void ForgetBrackets();
    bool TakesOperand() const;
    bool InnermostIs(EBracket kind) const;
    bool InArray() const { return m_data.arrayConstructs > 0 || m_data.squareArrays > 0; }
    void StartEmbedded(SyntaxParser::CRegion* region, int kind);

    void PushOperand();
    void ReduceOnce();
    void EndElement();

    void SaveDataToStack();
    void LoadDataFromStack();

    CPlainExpression m_plain;
    bool m_followsPlain = true;
    std::vector<SExpressionData> m_dataStack;
    CAnonymousFunctionParser m_functionParser;
    CAnonymousClassParser m_classParser;
};

} // namespace Kesh::CodeAnalyzer
