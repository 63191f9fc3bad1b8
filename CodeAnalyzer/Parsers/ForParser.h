#pragma once

#include "Parsers/ContainerParser.h"
#include "Parsers/SubExpressionParsers.h"

namespace Kesh::CodeAnalyzer {

/// `for`.
class CForParser : public CContainerParser
{
public:
    CForParser(SyntaxParser::CDefRegions* defs, boost::shared_ptr<SyntaxParser::IReader> reader,
               CParentParser* parent);

    void DispathRegion(SyntaxParser::CRegion* region) override;
    int StatementStartRegion(SyntaxParser::CRegion* region) override;
    void BeforeParse(const SyntaxParser::STextChange& change) override;
    void RestoreForContinue() override;

    void OnStructureEnd(SyntaxParser::CRegion* region, int redispatch) override;

protected:
    enum EState {
        ForState = 0,
        FirstPartState = 1,
        SecondPartState = 2,
        ThirdPartState = 3,
        ExpressionState = 4,
        AfterCondiotionState = 5,
        AfterBodyState = 6
    };

    void HandleForState(SyntaxParser::CRegion* region);
    void HandleFirstPartState(SyntaxParser::CRegion* region);
    void HandleSecondPartState(SyntaxParser::CRegion* region);
    void HandleThirdPartState(SyntaxParser::CRegion* region);
    void HandleAfterCondiotionState(SyntaxParser::CRegion* region);
    void HandleAfterBodyState(SyntaxParser::CRegion* region);

    void HandlePart(SyntaxParser::CRegion* region, bool empty, int next);
    void End(SyntaxParser::CRegion* region, int redispatch);
    void Error(SyntaxParser::CRegion* region);

    int m_state = ForState;
    int m_part = 0; ///< the part of the header being read, 1 to 3
    CForExpressionParser m_expressionParser;
};

} // namespace Kesh::CodeAnalyzer
