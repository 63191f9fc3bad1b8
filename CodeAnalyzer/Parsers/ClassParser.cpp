#include "Parsers/ClassParser.h"

#include "Kesh/CodeAnalyzer/Catalog.h"

namespace Kesh::CodeAnalyzer {

using SyntaxParser::CRegion;
using SyntaxParser::STextChange;

int CClassParser::StatementStartRegion(CRegion* region)
{
    if (!IsClassWord(region) && region->definition != Php().InterfaceDefs[PhpInterface::Interface] &&
        !IsKeyword(region, L"trait"))
        return false;
    m_state = ClassState;
    return true;
}

void CClassParser::BeforeParse(const STextChange& /*change*/)
{
    m_state = ClassState;
}

void CClassParser::DispathRegion(CRegion* region)
{
    if (IsNonSignificantRegion(region))
        return;
    switch (m_state) {
    case ClassState: HandleClassState(region); break;
    case ClassNameState: HandleClassNameState(region); break;
    case ExtendsState: HandleExtendsState(region); break;
    case ExtendsNameState: HandleExtendsNameState(region); break;
    case ExtendsNameNamespaceState: HandleExtendsNameNamespaceState(region); break;
    case ImplementsState: HandleImplementsState(region); break;
    case ImplementsNameState: HandleImplementsNameState(region); break;
    case ImplementsNameNamespaceState: HandleImplementsNameNamespaceState(region); break;
    case TemplateNameState: HandleTemplateNameState(region); break;
    default: break;
    }
}

// 0: the name. In a file template it is a placeholder, as in `class %NAME% {`.
void CClassParser::HandleClassState(CRegion* region)
{
    if (IsWord(region))
        m_state = ClassNameState;
    else if (IsSymbol(region, L"%"))
        m_state = TemplateNameState;
    else
        Error(Code::ClassError, region);
}

// 1: after the name.
void CClassParser::HandleClassNameState(CRegion* region)
{
    if (IsOpening(region, L'{'))
        SendStructureEnd(region, 1);
    else if (!StartsList(region))
        Error(Code::ClassError, region);
}

// 2: a parent's name.
void CClassParser::HandleExtendsState(CRegion* region)
{
    if (IsWord(region))
        m_state = ExtendsNameState;
    else if (IsSymbol(region, L"\\"))
        m_state = ExtendsNameNamespaceState;
    else
        Error(Code::ClassError, region);
}

// 3: after a parent's name; interfaces extend several.
void CClassParser::HandleExtendsNameState(CRegion* region)
{
    if (IsOpening(region, L'{'))
        SendStructureEnd(region, 1);
    else if (IsToken(region, PhpToken::Comma))
        m_state = ExtendsState;
    else if (IsSymbol(region, L"\\"))
        m_state = ExtendsNameNamespaceState;
    else if (IsKeyword(region, L"implements"))
        m_state = ImplementsState;
    else
        Error(Code::ClassError, region);
}

// 4: the next part of a parent's name.
void CClassParser::HandleExtendsNameNamespaceState(CRegion* region)
{
    if (IsWord(region))
        m_state = ExtendsNameState;
    else
        Error(Code::ClassError, region);
}

// 5: an interface's name.
void CClassParser::HandleImplementsState(CRegion* region)
{
    if (IsWord(region))
        m_state = ImplementsNameState;
    else if (IsSymbol(region, L"\\"))
        m_state = ImplementsNameNamespaceState;
    else
        Error(Code::ClassError, region);
}

// 6: after an interface's name.
void CClassParser::HandleImplementsNameState(CRegion* region)
{
    if (IsOpening(region, L'{'))
        SendStructureEnd(region, 1);
    else if (IsToken(region, PhpToken::Comma))
        m_state = ImplementsState;
    else if (IsSymbol(region, L"\\"))
        m_state = ImplementsNameNamespaceState;
    else
        Error(Code::ClassError, region);
}

// 7: the next part of an interface's name.
void CClassParser::HandleImplementsNameNamespaceState(CRegion* region)
{
    if (IsWord(region))
        m_state = ImplementsNameState;
    else
        Error(Code::ClassError, region);
}

// 8: inside the placeholder.
void CClassParser::HandleTemplateNameState(CRegion* region)
{
    if (IsSymbol(region, L"%"))
        m_state = ClassNameState;
}

bool CClassParser::StartsList(CRegion* region)
{
    if (IsKeyword(region, L"extends"))
        m_state = ExtendsState;
    else if (IsKeyword(region, L"implements"))
        m_state = ImplementsState;
    else
        return false;
    return true;
}

void CClassParser::SendStructureEnd(CRegion* region, int redispatch)
{
    m_state = ClassState;
    m_parent->OnStructureEnd(region, redispatch);
}

void CClassParser::Error(int code, CRegion* region)
{
    m_state = ClassState;
    m_parent->OnStructureError(code, region, 1);
}

} // namespace Kesh::CodeAnalyzer
