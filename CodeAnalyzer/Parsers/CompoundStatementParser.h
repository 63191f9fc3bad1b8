#pragma once

#include "Parsers/StatementParser.h"

namespace Kesh::CodeAnalyzer {

/// A `{ ... }` block standing as a statement. Hands every region inside it back to its parent, so that the
/// statements in the block are parsed by the other parsers.
class CCompoundStatementParser : public CStatementParser
{
public:
    using CStatementParser::CStatementParser;

    void DispathRegion(SyntaxParser::CRegion* region) override;
    int StatementStartRegion(SyntaxParser::CRegion* region) override;
    void BeforeParse(const SyntaxParser::STextChange& change) override;

protected:
    std::vector<SyntaxParser::CIterator> m_blocks; ///< kept empty
    int m_braces = 0;                              ///< blocks started in this pass
};

} // namespace Kesh::CodeAnalyzer
