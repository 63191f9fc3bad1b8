#include "Parsers/TryCatchParser.h"

#include "Kesh/CodeAnalyzer/Catalog.h"

namespace Kesh::CodeAnalyzer {

using SyntaxParser::CRegion;
using SyntaxParser::STextChange;

int CTryCatchParser::StatementStartRegion(CRegion* region)
{
    if (IsKeyword(region, L"throw"))
        m_state = ThrowState;
    else if (IsKeyword(region, L"catch"))
        m_state = CatchState;
    else
        return false;
    return true;
}

void CTryCatchParser::BeforeParse(const STextChange& /*change*/)
{
    m_state = ThrowState;
}

void CTryCatchParser::DispathRegion(CRegion* region)
{
    if (IsNonSignificantRegion(region))
        return;
    switch (m_state) {
    case ThrowState: HandleThrowState(region); break;
    case CatchState: HandleCatchState(region); break;
    case CatchBrState: HandleCatchBrState(region); break;
    case CatchClassState: HandleCatchClassState(region); break;
    case CatchVarState: HandleCatchVarState(region); break;
    default: break;
    }
}

// 0: the thrown expression, whatever it is.
void CTryCatchParser::HandleThrowState(CRegion* region)
{
    if (IsToken(region, PhpToken::Semicolon))
        End(region);
}

// 1: the `(`.
void CTryCatchParser::HandleCatchState(CRegion* region)
{
    if (IsOpening(region, L'('))
        m_state = CatchBrState;
    else
        Error(region);
}

// 2: the class, or the next part of its name.
void CTryCatchParser::HandleCatchBrState(CRegion* region)
{
    if (IsToken(region, PhpToken::Word))
        m_state = CatchClassState;
    else if (!IsSymbol(region, L"\\"))
        Error(region);
}

// 3: the variable. Several types, and none, are errors.
void CTryCatchParser::HandleCatchClassState(CRegion* region)
{
    if (IsVar(region, PhpVar::ExtraDollar) || IsVar(region, PhpVar::Variable))
        m_state = CatchVarState;
    else if (IsSymbol(region, L"\\"))
        m_state = CatchBrState;
    else
        Error(region);
}

// 4: the `)`; the block is a statement of its own.
void CTryCatchParser::HandleCatchVarState(CRegion* region)
{
    if (IsClosing(region, L')'))
        End(region);
    else
        Error(region);
}

void CTryCatchParser::End(CRegion* region)
{
    m_state = ThrowState;
    m_parent->OnStructureEnd(region, 0);
}

void CTryCatchParser::Error(CRegion* region)
{
    m_state = ThrowState;
    m_parent->OnStructureError(Code::CatchError, region, 1);
}

} // namespace Kesh::CodeAnalyzer
