#include "Parsers/WhileParser.h"

#include "Kesh/CodeAnalyzer/Catalog.h"

namespace Kesh::CodeAnalyzer {

using SyntaxParser::CRegion;
using SyntaxParser::STextChange;

CWhileParser::CWhileParser(SyntaxParser::CDefRegions* defs, boost::shared_ptr<SyntaxParser::IReader> reader,
                           CParentParser* parent)
    : CContainerParser(defs, reader, parent), m_conditionParser(defs, reader, this)
{
}

void CWhileParser::BeforeParse(const STextChange& change)
{
    m_state = WhileState;
    m_conditionParser.BeforeParse(change);
    m_warnings.clear();
    m_isDo = 0;
    m_doStack.clear();
}

int CWhileParser::StatementStartRegion(CRegion* region)
{
    if (IsKeyword(region, L"while")) {
        m_isDo = 0;
        m_state = WhileState;
        return true;
    }
    if (IsKeyword(region, L"do")) {
        m_isDo = 1;
        m_state = DoState;
        return true;
    }
    return false;
}

void CWhileParser::DispathRegion(CRegion* region)
{
    if (m_state == ConditionState) {
        m_conditionParser.DispathRegion(region);
        return;
    }
    if (IsNonSignificantRegion(region))
        return;
    switch (m_state) {
    case WhileState: HandleWhileState(region); break;
    case ConditionStartState: HandleConditionStartState(region); break;
    case AfterConditionState: HandleAfterConditionState(region); break;
    case AfterBodyState: HandleAfterBodyState(region); break;
    case DoState: HandleDoState(region); break;
    case AfterDoBodyState: HandleAfterDoBodyState(region); break;
    default: break;
    }
}

// 0: the `(` of the condition.
void CWhileParser::HandleWhileState(CRegion* region)
{
    if (IsOpening(region, L'('))
        m_state = ConditionStartState;
    else
        Error(Code::WhileError, region);
}

// 1: the first region of the condition.
void CWhileParser::HandleConditionStartState(CRegion* region)
{
    if (m_conditionParser.StatementStartRegion(region))
        m_state = ConditionState;
    else
        Error(Code::WhileError, region);
}

// 2: the condition has ended.
void CWhileParser::OnStructureEnd(CRegion* region, int /*redispatch*/)
{
    if (IsClosing(region, L')'))
        m_state = AfterConditionState;
    else
        Error(Code::WhileError, region);
}

// 3: after the condition.
void CWhileParser::HandleAfterConditionState(CRegion* region)
{
    if (m_isDo) {
        if (IsSemicolon(region))
            End(region, 0);
        else
            Error(Code::UnendedStatement, region);
    } else if (IsToken(region, PhpToken::Semicolon)) {
        WarnOddSemicolon(region);
        End(region, 0);
    } else if (IsKeyword(region, L"endwhile")) {
        End(region, 0);
    } else {
        HandBody(region);
    }
}

// 4: after the body of `while`.
void CWhileParser::HandleAfterBodyState(CRegion* region)
{
    End(region, 1);
}

// 5: the body of `do`. One that is a mere `;` no parser takes.
void CWhileParser::HandleDoState(CRegion* region)
{
    if (m_exact && IsToken(region, PhpToken::Semicolon))
        m_state = AfterDoBodyState;
    else
        HandBody(region);
}

// 6: the `while` after the body of `do`.
void CWhileParser::HandleAfterDoBodyState(CRegion* region)
{
    if (IsKeyword(region, L"while"))
        m_state = WhileState;
    else
        Error(Code::WhileError, region);
}

void CWhileParser::HandBody(CRegion* region)
{
    m_doStack.push_back(m_isDo);
    m_parent->OnParsingContinue(region, 1);
}

void CWhileParser::RestoreForContinue()
{
    m_isDo = 0;
    if (!m_doStack.empty()) {
        m_isDo = m_doStack.back();
        m_doStack.pop_back();
    }
    m_state = m_isDo ? AfterDoBodyState : AfterBodyState;
}

void CWhileParser::End(CRegion* region, int redispatch)
{
    m_state = WhileState;
    m_parent->OnStructureEnd(region, redispatch);
}

void CWhileParser::Error(int code, CRegion* region)
{
    m_state = WhileState;
    m_parent->OnStructureError(code, region, 1);
}

} // namespace Kesh::CodeAnalyzer
