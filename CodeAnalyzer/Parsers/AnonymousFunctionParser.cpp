#include "Parsers/AnonymousFunctionParser.h"

#include "Kesh/CodeAnalyzer/Catalog.h"

namespace Kesh::CodeAnalyzer {

using SyntaxParser::CRegion;

void CAnonymousFunctionParser::DispathRegion(CRegion* region)
{
    switch (m_state) {
    case AfterBodyState: HandleAfterFunctionBodyState(region); break;
    case InBodyState: HandleInBodyState(region); break;
    default: CFunctionStatementParser::DispathRegion(region); break;
    }
}

// 0: no name, the parameters at once.
void CAnonymousFunctionParser::HandleFunctionState(CRegion* region)
{
    if (IsSymbol(region, L"&"))
        return;
    if (IsOpening(region, L'('))
        OpenList(ParamsState);
    else
        Error(Code::ParameterError, region);
}

// 3: after the parameters.
void CAnonymousFunctionParser::HandleAfterParamsState(CRegion* region)
{
    if (IsOpening(region, L'{'))
        StartBody(region);
    else if (IsKeyword(region, L"use"))
        m_state = UseState;
    else if (IsSymbol(region, L":"))
        m_state = ReturnDeclState;
    else
        Error(Code::MissingBody, region);
}

// 7: after the "use" list or the return type.
void CAnonymousFunctionParser::HandleAfterUseState(CRegion* region)
{
    if (IsOpening(region, L'{'))
        StartBody(region);
    else if (IsSymbol(region, L":"))
        m_state = ReturnDeclState;
    else
        Error(Code::MissingBody, region);
}

void CAnonymousFunctionParser::StartBody(CRegion* region)
{
    m_state = InBodyState;
    m_body.Start();
    m_parent->OnParsingContinue(region, 1);
}

// 101: the driver did not take the body over; it is passed by unchecked.
void CAnonymousFunctionParser::HandleInBodyState(CRegion* region)
{
    if (IsOpening(region, L'{'))
        m_body.Open();
    else if (IsClosing(region, L'}') && m_body.Close())
        End(region, 0);
}

void CAnonymousFunctionParser::RestoreForContinue()
{
    m_state = AfterBodyState;
}

// 100: the closing brace has ended the body; the expression goes on with this region.
void CAnonymousFunctionParser::HandleAfterFunctionBodyState(CRegion* region)
{
    End(region, 1);
}

} // namespace Kesh::CodeAnalyzer
