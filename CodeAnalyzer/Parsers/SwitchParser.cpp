#include "Parsers/SwitchParser.h"

#include "Kesh/CodeAnalyzer/Catalog.h"

namespace Kesh::CodeAnalyzer {

using SyntaxParser::CRegion;
using SyntaxParser::STextChange;
using namespace std::string_view_literals;

CSwitchParser::CSwitchParser(SyntaxParser::CDefRegions* defs, boost::shared_ptr<SyntaxParser::IReader> reader,
                             CParentParser* parent)
    : CContainerParser(defs, reader, parent),
      m_conditionParser(defs, reader, this),
      m_caseParser(defs, reader, this)
{
}

void CSwitchParser::BeforeParse(const STextChange& change)
{
    m_state = SwitchState;
    m_conditionParser.BeforeParse(change);
    m_caseParser.BeforeParse(change);
    m_inCase = 0;
}

int CSwitchParser::StatementStartRegion(CRegion* region)
{
    if (IsWordOrKeyword(region, L"switch"sv)) {
        if (m_exact) // an error in a label has left it set
            m_inCase = 0;
        m_state = SwitchState;
        return true;
    }
    if (IsWordOrKeyword(region, L"case"sv)) {
        m_inCase = 1;
        m_state = CaseState;
        return true;
    }
    return false;
}

void CSwitchParser::DispathRegion(CRegion* region)
{
    switch (m_state) {
    case SwitchState: HandleSwitchState(region); break;
    case ConditionState: HandleConditionState(region); break;
    case ExpressionState: HandleExpressionState(region); break;
    case AfterConditionState: HandleAfterConditionState(region); break;
    case CaseState: HandleCaseState(region); break;
    case CaseExpressionState: HandleCaseExpressionState(region); break;
    case BreakState: HandleBreakState(region); break;
    default: break;
    }
}

// 0: the `(` after "switch".
void CSwitchParser::HandleSwitchState(CRegion* region)
{
    if (IsOpening(region, L'('))
        m_state = ConditionState;
    else if (!IsNonSignificantRegion(region))
        Error(region);
}

// 1: the first region of the value.
void CSwitchParser::HandleConditionState(CRegion* region)
{
    if (IsNonSignificantRegion(region))
        return;
    if (m_conditionParser.StatementStartRegion(region))
        m_state = ExpressionState;
    else
        Error(region);
}

// 2: inside the value.
void CSwitchParser::HandleExpressionState(CRegion* region)
{
    m_conditionParser.DispathRegion(region);
}

// 3: after the `)`; the block is a statement of its own.
void CSwitchParser::HandleAfterConditionState(CRegion* region)
{
    if (IsOpening(region, L'{'))
        End(region, 1);
    else if (IsSymbol(region, L":"))
        End(region, 0);
    else if (!IsNonSignificantRegion(region))
        Error(region);
}

// 4: the first region of a case's value.
void CSwitchParser::HandleCaseState(CRegion* region)
{
    if (IsNonSignificantRegion(region))
        return;
    if (m_caseParser.StatementStartRegion(region))
        m_state = CaseExpressionState;
    else
        Error(region);
}

// 5: inside a case's value.
void CSwitchParser::HandleCaseExpressionState(CRegion* region)
{
    m_caseParser.DispathRegion(region);
}

// 2 and 5: the value has ended.
void CSwitchParser::OnStructureEnd(CRegion* region, int /*redispatch*/)
{
    if (m_inCase) {
        m_inCase = 0;
        if (IsToken(region, PhpToken::Semicolon) ||
            (IsToken(region, PhpToken::Text) && LastChar(region) == L':'))
            End(region, 0);
        else
            Error(region);
    } else if (IsClosing(region, L')')) {
        m_state = AfterConditionState;
    } else {
        Error(region);
    }
}

bool CSwitchParser::IsWordOrKeyword(CRegion* region, std::wstring_view word) const
{
    return IsRegion(region, Php().TokenDefs[PhpToken::Keyword], word, 1) ||
           IsRegion(region, Php().TokenDefs[PhpToken::Word], word, 1);
}

void CSwitchParser::End(CRegion* region, int redispatch)
{
    m_state = SwitchState;
    m_parent->OnStructureEnd(region, redispatch);
}

void CSwitchParser::Error(CRegion* region)
{
    m_state = SwitchState;
    m_parent->OnStructureError(Code::SwitchError, region, 1);
}

} // namespace Kesh::CodeAnalyzer
