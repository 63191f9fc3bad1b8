#include "Parsers/SubExpressionParsers.h"

#include "Base/CommonString.h"

namespace Kesh::CodeAnalyzer {

using Base::CCommonString;
using SyntaxParser::CRegion;

void COperandParser::StartInside(CRegion* region)
{
    Reset(region);
    SetState(UOperandState);
    DispathRegion(region);
}

// Where an operand ends is for its states to say.
COperandParser::COperandParser(SyntaxParser::CDefRegions* defs,
                               boost::shared_ptr<SyntaxParser::IReader> reader, CParentParser* parent)
    : CExpressionStatementParser(defs, reader, parent)
{
    LeaveToStates();
}

void COperandParser::HandleChainState(CRegion* region)
{
    if (IsMemberArrow(region)) {
        SetState(ChainArrowState);
    } else if (IsOpening(region, L'[')) {
        OpenIndex(region);
        SetState(UOperandState);
    } else {
        SetState(BinarOpState);
        if (!IsSuffixOperator(region))
            HandleBinarOpState(region);
    }
}

void COperandParser::HandleBinarOpState(CRegion* region)
{
    if (IsSymbol(region, L"::"))
        SetState(ChainArrowState);
    else if (!AnyBracketOpen())
        DoExpressionEnd(region);
    else
        CExpressionStatementParser::HandleBinarOpState(region);
}

int CStaticOperandParser::StatementStartRegion(CRegion* region)
{
    if (!IsSymbol(region, L"<<<"))
        return COperandParser::StatementStartRegion(region);
    Reset(region);
    SetState(StreamState);
    return true;
}

int CCaseExpressionParser::IsTerminalRegion(CRegion* region)
{
    return IsToken(region, PhpToken::Semicolon) || IsSymbol(region, L":");
}

int CForExpressionParser::IsTerminalRegion(CRegion* region)
{
    if (IsToken(region, PhpToken::Comma))
        return !AnyBracketOpen();
    return CExpressionStatementParser::IsTerminalRegion(region);
}

int CForeachConditionParser::IsTerminalRegion(CRegion* region)
{
    return IsToken(region, PhpToken::Keyword) &&
           CCommonString::CompareNoCase(TrimmedText(region), L"as") == 0;
}

int CForeachValueParser::IsTerminalRegion(CRegion* region)
{
    return IsToken(region, PhpToken::DoubleArrow);
}

} // namespace Kesh::CodeAnalyzer
