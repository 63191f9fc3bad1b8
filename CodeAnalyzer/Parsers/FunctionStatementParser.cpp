#include "Parsers/FunctionStatementParser.h"

#include "Kesh/CodeAnalyzer/Catalog.h"

namespace Kesh::CodeAnalyzer {

using SyntaxParser::CRegion;
using SyntaxParser::STextChange;

int CFunctionStatementParser::StatementStartRegion(CRegion* region)
{
    if (!IsExtra(region, PhpExtra::Function))
        return false;
    m_state = FunctionState;
    m_depth = 0;
    m_seen = false;
    return true;
}

void CFunctionStatementParser::BeforeParse(const STextChange& /*change*/)
{
    m_state = FunctionState;
    m_depth = 0;
    m_seen = false;
}

void CFunctionStatementParser::DispathRegion(CRegion* region)
{
    if (IsNonSignificantRegion(region))
        return;
    switch (m_state) {
    case FunctionState: HandleFunctionState(region); break;
    case NameState: HandleNameState(region); break;
    case ParamsState: HandleParamsState(region); break;
    case AfterParamsState: HandleAfterParamsState(region); break;
    case ReturnDeclState: HandleReturnDeclState(region); break;
    case UseState: HandleUseState(region); break;
    case UseParamsState: HandleUseParamsState(region); break;
    case AfterUseState: HandleAfterUseState(region); break;
    default: break;
    }
}

// 0: the name, `&` before it.
void CFunctionStatementParser::HandleFunctionState(CRegion* region)
{
    if (IsSymbol(region, L"&"))
        return;
    if (IsExtra(region, PhpExtra::DeclaredName) || IsToken(region, PhpToken::Keyword) || IsWord(region))
        m_state = NameState;
    else
        Error(Code::FunctionNameError, region);
}

// 1: the `(` of the parameters.
void CFunctionStatementParser::HandleNameState(CRegion* region)
{
    if (IsOpening(region, L'('))
        OpenList(ParamsState);
    else
        Error(Code::ParameterError, region);
}

// 2: the parameters, whatever they are.
void CFunctionStatementParser::HandleParamsState(CRegion* region)
{
    HandleList(region, AfterParamsState);
}

// 3: after the parameters.
void CFunctionStatementParser::HandleAfterParamsState(CRegion* region)
{
    if (IsOpening(region, L'{'))
        End(region, 1);
    else if (IsKeyword(region, L"use"))
        m_state = UseState;
    else if (IsToken(region, PhpToken::Semicolon))
        End(region, 0);
    else if (IsSymbol(region, L":"))
        m_state = ReturnDeclState;
    else
        Error(Code::MissingBody, region);
}

// 4: the return type.
void CFunctionStatementParser::HandleReturnDeclState(CRegion* region)
{
    if (IsSymbol(region, L"?"))
        return;
    if (IsWord(region) || IsToken(region, PhpToken::Keyword))
        m_state = AfterUseState;
    else
        Error(Code::MissingBody, region);
}

// 5: the `(` after "use".
void CFunctionStatementParser::HandleUseState(CRegion* region)
{
    if (IsOpening(region, L'('))
        OpenList(UseParamsState);
    else
        Error(Code::ParameterError, region);
}

// 6: the variables of "use".
void CFunctionStatementParser::HandleUseParamsState(CRegion* region)
{
    HandleList(region, AfterUseState);
}

// 7: after the return type or the "use" list.
void CFunctionStatementParser::HandleAfterUseState(CRegion* region)
{
    if (IsOpening(region, L'{'))
        End(region, 1);
    else if (IsToken(region, PhpToken::Semicolon))
        End(region, 0);
    else
        Error(Code::MissingBody, region);
}

void CFunctionStatementParser::OpenList(int state)
{
    m_state = state;
    m_depth = 1;
    m_seen = true;
}

void CFunctionStatementParser::HandleList(CRegion* region, int next)
{
    if (IsOpening(region, L'('))
        ++m_depth;
    else if (IsClosing(region, L')') && --m_depth == 0)
        m_state = next;
    else if (IsToken(region, PhpToken::Semicolon)) // the `;` may end the statement
        Error(Code::ParameterError, region, 0);
}

void CFunctionStatementParser::End(CRegion* region, int redispatch)
{
    m_state = FunctionState;
    m_parent->OnStructureEnd(region, redispatch);
}

void CFunctionStatementParser::Error(int code, CRegion* region, int skip)
{
    m_state = FunctionState;
    m_parent->OnStructureError(code, region, skip);
}

} // namespace Kesh::CodeAnalyzer
