#pragma once

#include "Parsers/StatementParser.h"

namespace Kesh::CodeAnalyzer {

/// `namespace`, the imports of `use`, and `use` of traits with its block.
class CNamespaceParser : public CStatementParser
{
public:
    using CStatementParser::CStatementParser;

    void DispathRegion(SyntaxParser::CRegion* region) override;
    int StatementStartRegion(SyntaxParser::CRegion* region) override;
    void BeforeParse(const SyntaxParser::STextChange& change) override;

protected:
    enum EState {
        NamespaceState = 0,
        NamespaceNameState = 1,
        TemplateNameState = 2,
        UseState = 3,
        UseAsState = 4,
        UseTraitState = 5
    };

    void HandleNamespaceState(SyntaxParser::CRegion* region);
    void HandleNamespaceNameState(SyntaxParser::CRegion* region);
    void HandleTemplateNameState(SyntaxParser::CRegion* region);
    void HandleUseState(SyntaxParser::CRegion* region);
    void HandleUseAsState(SyntaxParser::CRegion* region);
    void HandleUseTraitState(SyntaxParser::CRegion* region);

    bool CloseGroup(SyntaxParser::CRegion* region);
    void End(SyntaxParser::CRegion* region, int redispatch);
    void Error(int code, SyntaxParser::CRegion* region);

    int m_state = NamespaceState;
    int m_braces = 0;         ///< 1 inside the braces of a group of imports
    bool m_afterName = false; ///< a name is complete unless a backslash follows
};

} // namespace Kesh::CodeAnalyzer
