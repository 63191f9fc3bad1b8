#include "Parsers/NamespaceParser.h"

#include "Kesh/CodeAnalyzer/Catalog.h"

namespace Kesh::CodeAnalyzer {

using SyntaxParser::CRegion;
using SyntaxParser::STextChange;

int CNamespaceParser::StatementStartRegion(CRegion* region)
{
    if (IsKeyword(region, L"namespace"))
        m_state = NamespaceState;
    else if (IsKeyword(region, L"use"))
        m_state = UseState;
    else
        return false;
    m_braces = 0;
    m_afterName = false;
    return true;
}

void CNamespaceParser::BeforeParse(const STextChange& /*change*/)
{
    m_state = NamespaceState;
    m_braces = 0;
    m_afterName = false;
}

void CNamespaceParser::DispathRegion(CRegion* region)
{
    if (IsNonSignificantRegion(region))
        return;
    switch (m_state) {
    case NamespaceState: HandleNamespaceState(region); break;
    case NamespaceNameState: HandleNamespaceNameState(region); break;
    case TemplateNameState: HandleTemplateNameState(region); break;
    case UseState: HandleUseState(region); break;
    case UseAsState: HandleUseAsState(region); break;
    case UseTraitState: HandleUseTraitState(region); break;
    default: break;
    }
}

// 0: a name or its next part, or the block of the global namespace.
void CNamespaceParser::HandleNamespaceState(CRegion* region)
{
    if (IsWord(region) || IsToken(region, PhpToken::Keyword))
        m_state = NamespaceNameState;
    else if (IsOpening(region, L'{'))
        End(region, 1);
    else if (IsSymbol(region, L"%")) // a placeholder in a file template, as in `namespace %NAME%;`
        m_state = TemplateNameState;
    else if (!IsSymbol(region, L"\\"))
        Error(Code::NamespaceError, region);
}

// 1: after a part of the name.
void CNamespaceParser::HandleNamespaceNameState(CRegion* region)
{
    if (IsStatementEnd(region))
        End(region, 0);
    else if (IsOpening(region, L'{'))
        End(region, 1);
    else if (IsSymbol(region, L"\\"))
        m_state = NamespaceState;
    else
        Error(Code::NamespaceError, region);
}

// 2: inside the placeholder.
void CNamespaceParser::HandleTemplateNameState(CRegion* region)
{
    if (IsSymbol(region, L"%"))
        m_state = NamespaceNameState;
}

// 3: a list of names, some of them in the braces of a group; a block after a name adapts traits.
void CNamespaceParser::HandleUseState(CRegion* region)
{
    if (!m_afterName) {
        if (IsWord(region))
            m_afterName = true;
        else if (IsOpening(region, L'{') && m_braces == 0)
            m_braces = 1;
        else if (!CloseGroup(region) && !IsSymbol(region, L"\\") && !IsKeyword(region, L"const") &&
                 !IsExtra(region, PhpExtra::Function))
            Error(Code::NamespaceError, region);
    } else if (IsStatementEnd(region) && m_braces == 0) {
        End(region, 0);
    } else if (IsToken(region, PhpToken::Comma) || IsSymbol(region, L"\\")) {
        m_afterName = false;
    } else if (IsKeyword(region, L"as")) {
        m_state = UseAsState;
        m_afterName = false;
    } else if (IsOpening(region, L'{') && m_braces == 0) {
        m_state = UseTraitState;
    } else if (!CloseGroup(region)) {
        Error(Code::NamespaceError, region);
    }
}

// 4: the alias.
void CNamespaceParser::HandleUseAsState(CRegion* region)
{
    if (!m_afterName && IsWord(region)) {
        m_afterName = true;
    } else if (m_afterName && IsToken(region, PhpToken::Comma)) {
        m_state = UseState;
        m_afterName = false;
    } else if (m_afterName && IsStatementEnd(region) && m_braces == 0) {
        End(region, 0);
    } else if (!m_afterName || !CloseGroup(region)) {
        Error(Code::NamespaceError, region);
    }
}

// 5: inside the block that adapts traits.
void CNamespaceParser::HandleUseTraitState(CRegion* region)
{
    if (IsClosing(region, L'}'))
        End(region, 0);
    else if (!IsWord(region) && !IsToken(region, PhpToken::Keyword) && !IsToken(region, PhpToken::Comma) &&
             !IsToken(region, PhpToken::Semicolon) && !IsSymbol(region, L"::") && !IsSymbol(region, L"\\"))
        Error(Code::UseError, region);
}

// The group is a complete name.
bool CNamespaceParser::CloseGroup(CRegion* region)
{
    if (m_braces == 0 || !IsClosing(region, L'}'))
        return false;
    m_braces = 0;
    m_state = UseState;
    m_afterName = true;
    return true;
}

void CNamespaceParser::End(CRegion* region, int redispatch)
{
    m_state = NamespaceState;
    m_parent->OnStructureEnd(region, redispatch);
}

void CNamespaceParser::Error(int code, CRegion* region)
{
    m_state = NamespaceState;
    m_parent->OnStructureError(code, region, 1);
}

} // namespace Kesh::CodeAnalyzer
