#pragma once

#include "Parsers/StatementParser.h"

namespace Kesh::CodeAnalyzer {

/// Placeholder for a function-call statement: never starts and ignores every region. Calls are expressions.
class CFuncCallParser : public CStatementParser
{
public:
    using CStatementParser::CStatementParser;

    void DispathRegion(SyntaxParser::CRegion* /*region*/) override {}
    int StatementStartRegion(SyntaxParser::CRegion* /*region*/) override { return false; }
    void HandleArgState(SyntaxParser::CRegion* /*region*/) {}
};

} // namespace Kesh::CodeAnalyzer
