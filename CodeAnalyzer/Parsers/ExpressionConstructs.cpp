#include "Base/CommonString.h"
#include "Kesh/CodeAnalyzer/Catalog.h"
#include "Parsers/ExpressionStatementParser.h"

namespace Kesh::CodeAnalyzer {

using Base::CCommonString;
using SyntaxParser::CRegion;

// 21: the `(` after "array".
void CExpressionStatementParser::HandleArrayState(CRegion* region)
{
    if (!IsOpening(region, L'(')) {
        DoExpressionError(Code::ExpressionError, region, 1);
        return;
    }
    OpenArrayConstruct(region);
    SetState(ArrayKeyState);
    NoteRegion(region);
}

// 22: an element of an array or a list, or the end after a trailing `,`.
void CExpressionStatementParser::HandleArrayKeyState(CRegion* region)
{
    if (IsSymbol(region, L"..."))
        return;
    const bool endsArm = IsToken(region, PhpToken::Dot) && InnermostIs(EBracket::MatchBody);
    if (IsToken(region, PhpToken::Closing) || endsArm) {
        SetState(BinarOpState);
        HandleBinarOpState(region);
    } else if (IsToken(region, PhpToken::Comma)) { // only what may be taken apart has empty places
        if (!InnermostIs(EBracket::ArrayLiteral) && !InnermostIs(EBracket::List))
            DoExpressionError(Code::ExpressionError, region, 1);
    } else if (IsToken(region, PhpToken::DoubleArrow) || IsStatementEnd(region)) {
        DoExpressionError(Code::ExpressionError, region, 1);
    } else {
        SetState(UOperandState);
        HandleUOperandState(region);
    }
}

// 23: after `(`: a cast type or an expression.
void CExpressionStatementParser::HandleOpenRoundBrState(CRegion* region)
{
    if (!IsTypeRegion(region)) {
        SetState(UOperandState);
        HandleUOperandState(region);
        return;
    }
    const std::wstring_view text = TrimmedText(region);
    SetState(CCommonString::LowersTo(text, L"array") ? ArrayTypeOperatorState : TypeOperatorState);
    m_data.start = {region->start, region->end};
    m_data.startRecorded = true;
    NoteRegion(region);
}

// 24: the `)` of a cast; anything else shows that the type name was a name.
void CExpressionStatementParser::HandleTypeOperatorState(CRegion* region)
{
    if (IsClosing(region, L')')) {
        CloseRound(region);
        SetState(UOperandState);
        NoteRegion(region);
        return;
    }
    SetState(BinarOpState);
    HandleBinarOpState(region);
}

// 25: the `)` of an array cast, or the `(` of an array in brackets.
void CExpressionStatementParser::HandleArrayTypeOperatorState(CRegion* region)
{
    if (IsClosing(region, L')')) {
        CloseRound(region);
        SetState(UOperandState);
    } else if (IsOpening(region, L'(')) {
        ++m_data.arrayConstructs;
        OpenArrayConstruct(region);
        SetState(ArrayKeyState);
    } else {
        DoExpressionError(Code::ExpressionError, region, 1);
        return;
    }
    NoteRegion(region);
}

// 26: after "return".
void CExpressionStatementParser::HandleReturnState(CRegion* region)
{
    if (IsTerminalRegion(region)) {
        DoExpressionEnd(region);
        return;
    }
    SetState(UOperandState);
    HandleUOperandState(region);
}

// 27: after "break".
void CExpressionStatementParser::HandleBreakState(CRegion* region)
{
    if (IsTerminalRegion(region))
        DoExpressionEnd(region);
    else if (IsOpening(region, L'('))
        SetState(BreakArgState);
    else if (IsToken(region, PhpToken::Number) || IsVar(region, PhpVar::Variable)) // old PHP took a variable
        SetState(BreakAfterArgState);
    else
        DoExpressionError(Code::UnendedStatement, region,
                          m_data.lineBreakSeen || IsToken(region, PhpToken::Keyword) ? 0 : 1);
}

// 28: the level in brackets.
void CExpressionStatementParser::HandleBreakArgState(CRegion* region)
{
    if (IsToken(region, PhpToken::Number) || IsVar(region, PhpVar::Variable))
        SetState(BreakAfterArgState);
    else
        DoExpressionError(Code::ExpressionError, region, 1);
}

// 29: after the level.
void CExpressionStatementParser::HandleBreakAfterArgState(CRegion* region)
{
    if (IsTerminalRegion(region))
        DoExpressionEnd(region);
}

// 30: inside a here-document, which is one region.
void CExpressionStatementParser::HandleStreamState(CRegion* region)
{
    if (!IsToken(region, PhpToken::Heredoc)) {
        DoExpressionError(Code::UnendedStatement, region, 1);
        return;
    }
    SetState(BinarOpState);
    NoteRegion(region);
}

// 31: after a lone "$".
void CExpressionStatementParser::HandleDollarState(CRegion* region)
{
    if (IsSymbol(region, L"$"))
        return;
    if (IsOpening(region, L'{')) {
        SetState(UOperandState);
        HandleUOperandState(region);
    } else if (IsVar(region, PhpVar::ExtraDollar) || IsVar(region, PhpVar::Variable)) {
        SetState(VarDollarState);
        NoteRegion(region);
    } else {
        m_data.state = AssignExprState;
        m_parent->OnStructureError(Code::ExpressionError, region, 1);
    }
}

// 32: the variable after an extra "$".
void CExpressionStatementParser::HandleVarDollarState(CRegion* region)
{
    if (IsVar(region, PhpVar::ExtraDollar))
        return;
    SetState(ChainState);
    if (IsVar(region, PhpVar::Variable))
        NoteRegion(region);
    else
        HandleChainState(region);
}

// 35: after a word.
void CExpressionStatementParser::HandleMayBeFuncCallState(CRegion* region)
{
    if (IsOpening(region, L'(')) {
        SetState(FuncState);
        HandleFuncState(region);
    } else if (IsSymbol(region, L"\\")) {
        SetState(UOperandState);
        NoteRegion(region);
    } else if (IsMemberArrow(region) || IsOpening(region, L'[')) {
        SetState(ChainState);
        HandleChainState(region);
    } else {
        SetState(BinarOpState);
        HandleBinarOpState(region);
    }
}

} // namespace Kesh::CodeAnalyzer
