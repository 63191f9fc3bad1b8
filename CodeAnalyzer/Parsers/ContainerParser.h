#pragma once

#include "Parsers/StatementParser.h"

namespace Kesh::CodeAnalyzer {

/// A statement parser that contains expression parsers and collects warnings of its own during a pass.
class CContainerParser : public CStatementParser, public CParentParser
{
public:
    using CStatementParser::CStatementParser;

    /// Delivers the warnings.
    void AfterParse() override;

    void OnStructureError(int code, SyntaxParser::CRegion* region, int skipToEnd) override;
    void AddErrors(const std::vector<SCAError>& errors) override;

protected:
    void AddWarning(const SyntaxParser::SScheme& span, int code);
    /// A `;` that leaves the statement with an empty body.
    void WarnOddSemicolon(SyntaxParser::CRegion* region);

    std::vector<SCAError> m_warnings;
};

} // namespace Kesh::CodeAnalyzer
