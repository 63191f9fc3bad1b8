#pragma once

#include "Parsers/ContainerParser.h"
#include "Parsers/ExpressionStatementParser.h"

namespace Kesh::CodeAnalyzer {

/// `while` and `do ... while`.
class CWhileParser : public CContainerParser
{
public:
    CWhileParser(SyntaxParser::CDefRegions* defs, boost::shared_ptr<SyntaxParser::IReader> reader,
                 CParentParser* parent);

    void DispathRegion(SyntaxParser::CRegion* region) override;
    int StatementStartRegion(SyntaxParser::CRegion* region) override;
    void BeforeParse(const SyntaxParser::STextChange& change) override;
    void RestoreForContinue() override;

    void OnStructureEnd(SyntaxParser::CRegion* region, int redispatch) override;

protected:
    enum EState {
        WhileState = 0,
        ConditionStartState = 1,
        ConditionState = 2,
        AfterConditionState = 3,
        AfterBodyState = 4,
        DoState = 5,
        AfterDoBodyState = 6
    };

    void HandleWhileState(SyntaxParser::CRegion* region);
    void HandleConditionStartState(SyntaxParser::CRegion* region);
    void HandleAfterConditionState(SyntaxParser::CRegion* region);
    void HandleAfterBodyState(SyntaxParser::CRegion* region);
    void HandleDoState(SyntaxParser::CRegion* region);
    void HandleAfterDoBodyState(SyntaxParser::CRegion* region);

    void HandBody(SyntaxParser::CRegion* region);
    void End(SyntaxParser::CRegion* region, int redispatch);
    void Error(int code, SyntaxParser::CRegion* region);

    int m_state = WhileState;
    CExpressionStatementParser m_conditionParser;
    int m_isDo = 0;
    std::vector<int> m_doStack; ///< the kind of each loop whose body is being parsed, innermost last
};

} // namespace Kesh::CodeAnalyzer
