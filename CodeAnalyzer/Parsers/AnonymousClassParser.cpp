#include "Parsers/AnonymousClassParser.h"

#include "Kesh/CodeAnalyzer/Catalog.h"

namespace Kesh::CodeAnalyzer {

using SyntaxParser::CRegion;

int CAnonymousClassParser::StatementStartRegion(CRegion* region)
{
    m_depth = 0;
    m_braces = 0;
    m_argumentsRead = false;
    return CClassParser::StatementStartRegion(region);
}

void CAnonymousClassParser::DispathRegion(CRegion* region)
{
    switch (m_state) {
    case InBodyState: HandleInBodyState(region); break;
    case ParamsState: HandleAnonymosClassParamsState(region); break;
    case AfterBodyState: HandleAfterFunctionBodyState(region); break;
    default: CClassParser::DispathRegion(region); break;
    }
}

// 0: after "class".
void CAnonymousClassParser::HandleClassState(CRegion* region)
{
    if (IsOpening(region, L'(') && !m_argumentsRead) {
        m_state = ParamsState;
        m_depth = 1;
    } else {
        HandleAfterParamsState(region);
    }
}

// 101: the constructor's arguments, whatever they are.
void CAnonymousClassParser::HandleAnonymosClassParamsState(CRegion* region)
{
    if (IsOpening(region, L'(')) {
        ++m_depth;
    } else if (IsClosing(region, L')') && --m_depth == 0) {
        m_argumentsRead = true;
        m_state = ClassState;
    } else if (IsOpening(region, L'{')) {
        ++m_braces;
    } else if (IsClosing(region, L'}')) {
        if (--m_braces < 0)
            Error(Code::ExpressionError, region);
    } else if (IsToken(region, PhpToken::Semicolon) && m_braces == 0) {
        Error(Code::ExpressionError, region);
    }
}

// 0 again, after the arguments or without any.
void CAnonymousClassParser::HandleAfterParamsState(CRegion* region)
{
    if (IsOpening(region, L'{'))
        SendStructureEnd(region, 1);
    else if (!StartsList(region))
        Error(Code::ClassError, region);
}

void CAnonymousClassParser::SendStructureEnd(CRegion* region, int /*redispatch*/)
{
    m_state = InBodyState;
    m_body.Start();
    m_parent->OnParsingContinue(region, 1);
}

// 100: the driver did not take the body over; it is passed by unchecked.
void CAnonymousClassParser::HandleInBodyState(CRegion* region)
{
    if (IsOpening(region, L'{'))
        m_body.Open();
    else if (IsClosing(region, L'}') && m_body.Close())
        CClassParser::SendStructureEnd(region, 0);
}

void CAnonymousClassParser::RestoreForContinue()
{
    m_state = AfterBodyState;
}

// 102: the body has ended; an operator, a closing bracket or an end must follow, not the next statement.
void CAnonymousClassParser::HandleAfterFunctionBodyState(CRegion* region)
{
    const bool startsStatement = IsVar(region, PhpVar::Variable) || IsVar(region, PhpVar::ExtraDollar) ||
                                 IsWord(region) || IsToken(region, PhpToken::Number) ||
                                 IsToken(region, PhpToken::StringStart) || IsOpening(region, L'{');
    if (startsStatement)
        Error(Code::UnendedStatement, region);
    else
        CClassParser::SendStructureEnd(region, 1);
}

} // namespace Kesh::CodeAnalyzer
