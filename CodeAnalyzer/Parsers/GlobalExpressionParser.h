#pragma once

#include "Parsers/StatementParser.h"

namespace Kesh::CodeAnalyzer {

/// `global $a, $b;`
class CGlobalExpressionParser : public CStatementParser
{
public:
    using CStatementParser::CStatementParser;

    void DispathRegion(SyntaxParser::CRegion* region) override;
    int StatementStartRegion(SyntaxParser::CRegion* region) override;
    void BeforeParse(const SyntaxParser::STextChange& change) override;

protected:
    enum EState { GlobalState = 0, VarNameState = 1, FigureBodyState = 2 };

    void HandleGlobalState(SyntaxParser::CRegion* region);
    void HandleVarNameState(SyntaxParser::CRegion* region);
    void HandleFigureBodyState(SyntaxParser::CRegion* region);
    void Error(SyntaxParser::CRegion* region);

    int m_state = GlobalState;
    int m_braces = 0; ///< open `{` of a computed name
};

} // namespace Kesh::CodeAnalyzer
