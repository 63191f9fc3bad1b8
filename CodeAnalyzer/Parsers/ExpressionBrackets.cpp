#include "Parsers/ExpressionStatementParser.h"

#include <algorithm>

namespace Kesh::CodeAnalyzer {

using SyntaxParser::CRegion;

void CExpressionStatementParser::Open(CRegion* region, EBracket kind)
{
    if (!m_data.startRecorded)
        m_data.start = {region->start, region->end};
    m_data.brackets.push_back({kind, m_data.keyArrowSeen, m_data.start, m_data.operands.size()});
    m_data.keyArrowSeen = false;
    if (kind == EBracket::Index)
        PushOperand();
    if (!InnermostIs(EBracket::Brace) && !InnermostIs(EBracket::MatchBody))
        AddOperator(region);
    m_data.startRecorded = false;
}

void CExpressionStatementParser::OpenRound(CRegion* region, EBracket kind)
{
    Open(region, kind);
    ++m_data.roundDepth;
}

void CExpressionStatementParser::OpenArrayConstruct(CRegion* region)
{
    m_data.roundMarks.push_back(m_data.roundDepth);
    OpenRound(region, EBracket::ArrayCall);
}

void CExpressionStatementParser::OpenArrayLiteral(CRegion* region)
{
    ++m_data.squareArrays;
    m_data.squareMarks.push_back(m_data.squareDepth);
    Open(region, EBracket::ArrayLiteral);
    ++m_data.squareDepth;
}

void CExpressionStatementParser::OpenIndex(CRegion* region)
{
    Open(region, EBracket::Index);
    ++m_data.squareDepth;
}

void CExpressionStatementParser::OpenBrace(CRegion* region, EBracket kind)
{
    Open(region, kind);
    ++m_data.braceDepth;
}

void CExpressionStatementParser::CloseSquare(CRegion* region)
{
    if (!AnyBracketOpen())
        return;
    Close(region);
    --m_data.squareDepth;
    if (!m_data.squareMarks.empty() && m_data.squareMarks.back() == m_data.squareDepth) {
        m_data.squareMarks.pop_back();
        --m_data.squareArrays;
        m_data.keyArrowSeen = true;
    }
}

void CExpressionStatementParser::CloseRound(CRegion* region)
{
    if (!AnyBracketOpen()) // whoever set the state has opened none
        return;
    m_data.matchHead = InnermostIs(EBracket::MatchHead);
    Close(region);
    --m_data.roundDepth;
    if (!m_data.roundMarks.empty() && m_data.roundMarks.back() == m_data.roundDepth) {
        m_data.roundMarks.pop_back();
        --m_data.arrayConstructs;
        m_data.keyArrowSeen = true;
    }
}

void CExpressionStatementParser::Close(CRegion* region)
{
    const SOpenBracket open = m_data.brackets.back();
    auto& operands = m_data.operands;
    if (open.kind == EBracket::Group || open.kind == EBracket::Index)
        PushOperand();
    else
        EndElement();
    if (operands.size() <= open.operandsOutside)
        operands.push_back({open.start.start, region->end});
    if (open.kind != EBracket::Brace && open.kind != EBracket::MatchBody)
        AddOperator(region);
    operands.resize(std::min(open.operandsOutside, operands.size()));

    m_data.brackets.pop_back();
    m_data.keyArrowSeen = open.keyArrowOutside;
    m_data.start = open.start;
    m_data.startRecorded = true;
}

bool CExpressionStatementParser::InnermostIs(EBracket kind) const
{
    return !m_data.brackets.empty() && m_data.brackets.back().kind == kind;
}

} // namespace Kesh::CodeAnalyzer
