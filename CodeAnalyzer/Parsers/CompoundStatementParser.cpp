#include "Parsers/CompoundStatementParser.h"

namespace Kesh::CodeAnalyzer {

using SyntaxParser::CRegion;

int CCompoundStatementParser::StatementStartRegion(CRegion* region)
{
    if (!IsOpening(region, L'{'))
        return false;
    ++m_braces;
    return true;
}

void CCompoundStatementParser::DispathRegion(CRegion* region)
{
    if (IsClosing(region, L'}'))
        m_parent->OnStructureEnd(region, 0);
    else if (!IsNonSignificantRegion(region) && region->definition != Php().TagDefs[PhpTag::Closing])
        m_parent->OnParsingContinue(region, 1);
}

void CCompoundStatementParser::BeforeParse(const SyntaxParser::STextChange& /*change*/)
{
    m_braces = 0;
    m_blocks.clear();
}

} // namespace Kesh::CodeAnalyzer
