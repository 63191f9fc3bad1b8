#include "Parsers/GlobalExpressionParser.h"

#include "Kesh/CodeAnalyzer/Catalog.h"

namespace Kesh::CodeAnalyzer {

using SyntaxParser::CRegion;
using SyntaxParser::STextChange;

int CGlobalExpressionParser::StatementStartRegion(CRegion* region)
{
    if (!IsKeyword(region, L"global"))
        return false;
    m_state = GlobalState;
    return true;
}

void CGlobalExpressionParser::BeforeParse(const STextChange& /*change*/)
{
    m_state = GlobalState;
    m_braces = 0;
}

void CGlobalExpressionParser::DispathRegion(CRegion* region)
{
    if (IsNonSignificantRegion(region))
        return;
    switch (m_state) {
    case GlobalState: HandleGlobalState(region); break;
    case VarNameState: HandleVarNameState(region); break;
    case FigureBodyState: HandleFigureBodyState(region); break;
    default: break;
    }
}

// 0: a variable.
void CGlobalExpressionParser::HandleGlobalState(CRegion* region)
{
    if (IsVar(region, PhpVar::ExtraDollar) || IsSymbol(region, L"$"))
        return;
    if (IsVar(region, PhpVar::Variable)) {
        m_state = VarNameState;
    } else if (IsOpening(region, L'{')) {
        m_braces = 1;
        m_state = FigureBodyState;
    } else {
        Error(region);
    }
}

// 1: after a variable.
void CGlobalExpressionParser::HandleVarNameState(CRegion* region)
{
    if (IsToken(region, PhpToken::Comma)) {
        m_state = GlobalState;
    } else if (IsSemicolon(region)) {
        m_state = GlobalState;
        m_parent->OnStructureEnd(region, 0);
    } else {
        Error(region);
    }
}

// 2: inside the braces of a computed name.
void CGlobalExpressionParser::HandleFigureBodyState(CRegion* region)
{
    if (IsOpening(region, L'{'))
        ++m_braces;
    else if (IsClosing(region, L'}') && --m_braces == 0)
        m_state = VarNameState;
}

void CGlobalExpressionParser::Error(CRegion* region)
{
    m_state = GlobalState;
    m_parent->OnStructureError(Code::ExpressionError, region, 1);
}

} // namespace Kesh::CodeAnalyzer
