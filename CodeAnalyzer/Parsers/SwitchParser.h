#pragma once

#include "Parsers/ContainerParser.h"
#include "Parsers/SubExpressionParsers.h"

namespace Kesh::CodeAnalyzer {

/// The head of `switch`, and the labels `case ... :`.
class CSwitchParser : public CContainerParser
{
public:
    CSwitchParser(SyntaxParser::CDefRegions* defs, boost::shared_ptr<SyntaxParser::IReader> reader,
                  CParentParser* parent);

    void DispathRegion(SyntaxParser::CRegion* region) override;
    int StatementStartRegion(SyntaxParser::CRegion* region) override;
    void BeforeParse(const SyntaxParser::STextChange& change) override;

    void OnStructureEnd(SyntaxParser::CRegion* region, int redispatch) override;

protected:
    enum EState {
        SwitchState = 0,
        ConditionState = 1,
        ExpressionState = 2,
        AfterConditionState = 3,
        CaseState = 4,
        CaseExpressionState = 5,
        BreakState = 6
    };

    void HandleSwitchState(SyntaxParser::CRegion* region);
    void HandleConditionState(SyntaxParser::CRegion* region);
    void HandleExpressionState(SyntaxParser::CRegion* region);
    void HandleAfterConditionState(SyntaxParser::CRegion* region);
    void HandleCaseState(SyntaxParser::CRegion* region);
    void HandleCaseExpressionState(SyntaxParser::CRegion* region);
    void HandleBreakState(SyntaxParser::CRegion* /*region*/) {}

    bool IsWordOrKeyword(SyntaxParser::CRegion* region, std::wstring_view word) const;
    void End(SyntaxParser::CRegion* region, int redispatch);
    void Error(SyntaxParser::CRegion* region);

    int m_state = SwitchState;
    CExpressionStatementParser m_conditionParser;
    CCaseExpressionParser m_caseParser;
    int m_inCase = 0; ///< 1 while the value of a `case` is being read
};

} // namespace Kesh::CodeAnalyzer
