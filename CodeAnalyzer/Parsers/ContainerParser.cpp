#include "Parsers/ContainerParser.h"

#include "Kesh/CodeAnalyzer/Catalog.h"

namespace Kesh::CodeAnalyzer {

using SyntaxParser::CRegion;
using SyntaxParser::SScheme;

void CContainerParser::AfterParse()
{
    if (!m_warnings.empty())
        m_parent->AddErrors(m_warnings);
}

void CContainerParser::OnStructureError(int code, CRegion* region, int skipToEnd)
{
    m_parent->OnStructureError(code, region, skipToEnd);
}

void CContainerParser::AddErrors(const std::vector<SCAError>& errors)
{
    m_parent->AddErrors(errors);
}

void CContainerParser::AddWarning(const SScheme& span, int code)
{
    m_warnings.push_back({span, code, SeverityWarning});
}

void CContainerParser::WarnOddSemicolon(CRegion* region)
{
    AddWarning({region->start, region->end}, Code::OddSemicolon);
}

} // namespace Kesh::CodeAnalyzer
