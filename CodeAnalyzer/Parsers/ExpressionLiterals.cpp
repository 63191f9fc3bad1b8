#include "Kesh/CodeAnalyzer/Catalog.h"
#include "Parsers/ExpressionStatementParser.h"

namespace Kesh::CodeAnalyzer {

using SyntaxParser::CRegion;

// 12: after a number.
void CExpressionStatementParser::HandleNumberState(CRegion* region)
{
    if (IsToken(region, PhpToken::Dot)) {
        AddBinaryOperator(region);
        SetState(NumberDotState);
        NoteRegion(region);
    } else if (IsRegion(region, Php().TokenDefs[PhpToken::Word], L"e", 1)) {
        SetState(FloatCommaNumberState);
        NoteRegion(region);
    } else if (IsOpening(region, L'(') || IsOpening(region, L'[')) { // a number is neither called nor indexed
        DoExpressionError(Code::ExpressionError, region, 1);
    } else {
        SetState(BinarOpState);
        HandleBinarOpState(region);
    }
}

// 13: the exponent, with or without a sign.
void CExpressionStatementParser::HandleFloatCommaNumberState(CRegion* region)
{
    if (IsSymbol(region, L"+") || IsSymbol(region, L"-"))
        return;
    if (!IsToken(region, PhpToken::Number)) {
        DoExpressionError(Code::ExpressionError, region, 1);
        return;
    }
    SetState(ExpNumberState);
    NoteRegion(region);
}

// 14: after the exponent.
void CExpressionStatementParser::HandleExpNumberState(CRegion* region)
{
    SetState(BinarOpState);
    HandleBinarOpState(region);
}

// 15: a `.` after a number.
void CExpressionStatementParser::HandleNumberDotState(CRegion* region)
{
    if (IsToken(region, PhpToken::Number)) {
        SetState(DottedNumberState);
        NoteRegion(region);
        return;
    }
    SetState(UOperandState);
    HandleUOperandState(region);
}

// 16: digits after it.
void CExpressionStatementParser::HandleDottedNumberState(CRegion* region)
{
    if (IsRegion(region, Php().TokenDefs[PhpToken::Word], L"e", 1)) {
        SetState(FloatCommaNumberState);
        return;
    }
    SetState(BinarOpState);
    HandleBinarOpState(region);
}

// 17: inside a string.
void CExpressionStatementParser::HandleStringState(CRegion* region)
{
    if (!IsToken(region, PhpToken::StringEnd))
        return;
    SetState(BinarOpState);
    NoteRegion(region);
}

// 18: inside a backquoted command.
void CExpressionStatementParser::HandleBacktickState(CRegion* region)
{
    if (!IsToken(region, PhpToken::Text) || LastChar(region) != L'`')
        return;
    SetState(BinarOpState);
    NoteRegion(region);
}

// 19: at the end of a string; no state leads here.
void CExpressionStatementParser::HandleStringEndState(CRegion* region)
{
    if (IsToken(region, PhpToken::Dot))
        SetState(BinarOpState);
}

// 20: a `.` where an operand was due.
void CExpressionStatementParser::HandleDotState(CRegion* region)
{
    if (IsToken(region, PhpToken::StringStart)) {
        SetState(StringState);
        NoteRegion(region);
        return;
    }
    SetState(BinarOpState);
    if (IsToken(region, PhpToken::Number))
        NoteRegion(region);
    else
        HandleBinarOpState(region);
}

} // namespace Kesh::CodeAnalyzer
