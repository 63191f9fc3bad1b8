#include "Parsers/ExpressionStatementParser.h"

#include <algorithm>

namespace Kesh::CodeAnalyzer {

using SyntaxParser::CRegion;

namespace {

/// The character that closes it.
wchar_t Shape(EBracket kind)
{
    switch (kind) {
    case EBracket::ArrayLiteral:
    case EBracket::Index: return L']';
    case EBracket::Brace:
    case EBracket::MatchBody: return L'}';
    default: return L')';
    }
}

} // namespace

void CExpressionStatementParser::Open(CRegion* region, EBracket kind)
{
    if (!m_data.startRecorded)
        m_data.start = {region->start, region->end};
    m_data.brackets.push_back({kind, m_data.start, m_data.operands.size()});
    if (kind == EBracket::Index)
        PushOperand();
    if (Shape(kind) != L'}')
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
    m_data.keyArrowSeen = false;
    OpenRound(region, EBracket::ArrayCall);
}

void CExpressionStatementParser::OpenArrayLiteral(CRegion* region)
{
    ++m_data.squareArrays;
    m_data.squareMarks.push_back(m_data.squareDepth);
    m_data.keyArrowSeen = false;
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

// Whether an array has begun at this depth: it ends, and is an element, key and value, of the one around it.
bool CExpressionStatementParser::EndArray(std::vector<int>& marks, int depth)
{
    if (marks.empty() || marks.back() != depth)
        return false;
    marks.pop_back();
    m_data.keyArrowSeen = true;
    return true;
}

void CExpressionStatementParser::CloseSquare(CRegion* region)
{
    --m_data.squareDepth;
    m_data.squareArrays -= EndArray(m_data.squareMarks, m_data.squareDepth);
    Close(region);
}

void CExpressionStatementParser::CloseRound(CRegion* region)
{
    --m_data.roundDepth;
    m_data.arrayConstructs -= EndArray(m_data.roundMarks, m_data.roundDepth);
    if (m_data.roundDepth < 0) // it belongs to the statement around the expression
        return;
    m_data.matchHead = InnermostIs(EBracket::MatchHead);
    Close(region);
}

void CExpressionStatementParser::CloseBrace(CRegion* region)
{
    --m_data.braceDepth;
    Close(region);
}

// The brackets are counted each shape by itself: those opened within this one and not closed stay open, but
// what they are for is not known any more.
void CExpressionStatementParser::Close(CRegion* region)
{
    auto& brackets = m_data.brackets;
    const wchar_t shape = LastChar(region);
    const auto open = std::find_if(brackets.rbegin(), brackets.rend(), [shape](const SOpenBracket& bracket) {
        return Shape(bracket.kind) == shape;
    });
    if (open == brackets.rbegin() && open != brackets.rend()) {
        CloseInnermost(region);
        return;
    }
    if (shape != L'}')
        AddOperator(region);
    brackets.erase(open == brackets.rend() ? brackets.begin() : std::next(open).base(), brackets.end());
}

void CExpressionStatementParser::CloseInnermost(CRegion* region)
{
    const SOpenBracket open = m_data.brackets.back();
    auto& operands = m_data.operands;
    if (open.kind == EBracket::Group || open.kind == EBracket::Index)
        PushOperand();
    else
        EndElement();
    if (operands.size() <= open.operandsOutside)
        operands.push_back({open.start.start, region->end});
    if (Shape(open.kind) != L'}')
        AddOperator(region);
    operands.resize(std::min(open.operandsOutside, operands.size()));

    m_data.brackets.pop_back();
    m_data.start = open.start;
    m_data.startRecorded = true;
}

void CExpressionStatementParser::ForgetBrackets()
{
    m_data.roundDepth = m_data.squareDepth = m_data.braceDepth = 0;
    m_data.arrayConstructs = m_data.squareArrays = 0;
    m_data.roundMarks.clear();
    m_data.squareMarks.clear();
    m_data.brackets.clear();
}

bool CExpressionStatementParser::InnermostIs(EBracket kind) const
{
    return !m_data.brackets.empty() && m_data.brackets.back().kind == kind;
}

} // namespace Kesh::CodeAnalyzer
