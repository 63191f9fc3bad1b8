#include "Parsers/DeclarationParser.h"

#include "Kesh/CodeAnalyzer/Catalog.h"

#include <algorithm>

namespace Kesh::CodeAnalyzer {

using SyntaxParser::CRegion;
using SyntaxParser::STextChange;

CDeclarationParser::CDeclarationParser(SyntaxParser::CDefRegions* defs,
                                       boost::shared_ptr<SyntaxParser::IReader> reader, CParentParser* parent)
    : CContainerParser(defs, reader, parent), m_operandParser(defs, reader, this)
{
}

void CDeclarationParser::BeforeParse(const STextChange& change)
{
    Start();
    m_operandParser.BeforeParse(change);
}

void CDeclarationParser::Start()
{
    m_state = KeywordState;
    m_hasValue = false;
    m_arguments = m_braces = 0;
}

void CDeclarationParser::SetName()
{
    m_state = NameState;
    m_hasValue = false;
}

void CDeclarationParser::DispathRegion(CRegion* region)
{
    if (m_state == ExpressionState) {
        HandleExpressionState(region);
        return;
    }
    if (IsNonSignificantRegion(region))
        return;
    switch (m_state) {
    case KeywordState: HandleKeywordState(region); break;
    case NameState: HandleNameState(region); break;
    case AssignState: HandleAssignState(region); break;
    default: break;
    }
}

// 1: after a name, or after an operand of its value.
void CDeclarationParser::HandleNameState(CRegion* region)
{
    const bool complete = (m_hasValue || !NeedsValue()) && m_arguments == 0;
    if (complete && IsStatementEnd(region))
        End(region, 0);
    else if (complete && IsToken(region, PhpToken::Comma))
        m_state = KeywordState;
    else if (!m_hasValue && IsToken(region, PhpToken::Assign))
        m_state = AssignState;
    else if (m_hasValue && m_arguments == 0 && ContinuesValue(region))
        m_state = AssignState;
    else if (m_arguments > 0 || (m_hasValue && OpensArguments(region)))
        HandleArguments(region);
    else
        HandleAfterName(region);
}

// 2: an operand of the value. What is left of an operator, as the `:` of `?:`, is passed by.
void CDeclarationParser::HandleAssignState(CRegion* region)
{
    if (IsExtra(region, PhpExtra::Function)) {
        m_state = ExpressionState;
        m_operandParser.StartInside(region);
    } else if (m_operandParser.StatementStartRegion(region)) {
        m_state = ExpressionState;
    } else if (!IsSymbol(region, L":")) {
        Error(region);
    }
}

// The arguments of a call in a value, or an index, are passed by, but a `;` among them is one too early
// unless it stands in a closure.
void CDeclarationParser::HandleArguments(CRegion* region)
{
    if (OpensArguments(region))
        ++m_arguments;
    else if (IsClosing(region, L')') || IsClosing(region, L']'))
        --m_arguments;
    else if (IsOpening(region, L'{'))
        ++m_braces;
    else if (IsClosing(region, L'}'))
        m_braces = std::max(0, m_braces - 1);
    else if (IsStatementEnd(region) && m_braces == 0)
        Error(region);
}

// 3: inside an operand.
void CDeclarationParser::HandleExpressionState(CRegion* region)
{
    m_operandParser.DispathRegion(region);
}

// The region after the operand says how the value goes on.
void CDeclarationParser::OnStructureEnd(CRegion* region, int /*redispatch*/)
{
    m_state = NameState;
    m_hasValue = true;
    HandleNameState(region);
}

bool CDeclarationParser::ContinuesValue(CRegion* region)
{
    return IsToken(region, PhpToken::Dot) || IsToken(region, PhpToken::DoubleArrow) ||
           IsToken(region, PhpToken::Arrow) || IsToken(region, PhpToken::Text) || IsWordOperator(region);
}

bool CDeclarationParser::OpensArguments(CRegion* region)
{
    return IsOpening(region, L'(') || IsOpening(region, L'[');
}

bool CDeclarationParser::IsTypePart(CRegion* region)
{
    return IsWord(region) || IsToken(region, PhpToken::Keyword) || IsSymbol(region, L"?") ||
           IsSymbol(region, L"|") || IsSymbol(region, L"&") || IsSymbol(region, L"\\") ||
           IsOpening(region, L'(') || IsClosing(region, L')');
}

void CDeclarationParser::End(CRegion* region, int redispatch)
{
    m_state = KeywordState;
    m_parent->OnStructureEnd(region, redispatch);
}

void CDeclarationParser::Error(CRegion* region)
{
    m_state = KeywordState;
    m_parent->OnStructureError(Code::ExpressionError, region, 1);
}

} // namespace Kesh::CodeAnalyzer
