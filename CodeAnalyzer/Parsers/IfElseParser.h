#pragma once

#include "Parsers/ContainerParser.h"
#include "Parsers/ExpressionStatementParser.h"

#include <list>
#include <set>

namespace Kesh::CodeAnalyzer {

/// `if`, `elseif`, `else if`, `else` and `endif`, with braces, single statements or `:`. Warns of a `;` in
/// place of a body and of equal conditions in one chain.
class CIfElseParser : public CContainerParser
{
public:
    CIfElseParser(SyntaxParser::CDefRegions* defs, boost::shared_ptr<SyntaxParser::IReader> reader,
                  CParentParser* parent);

    void DispathRegion(SyntaxParser::CRegion* region) override;
    int StatementStartRegion(SyntaxParser::CRegion* region) override;
    void BeforeParse(const SyntaxParser::STextChange& change) override;
    void AfterParse() override;
    void RestoreForContinue() override;
    void OnError() override;

    void OnStructureEnd(SyntaxParser::CRegion* region, int redispatch) override;
    void OnStructureError(int code, SyntaxParser::CRegion* region, int skipToEnd) override;
    void OnParsingContinue(SyntaxParser::CRegion* region, int offer) override;

protected:
    enum EState {
        IfState = 0,
        ConditionStartState = 1,
        ConditionState = 2,
        AfterCondState = 3,
        ElseState = 4,
        ContinueState = 5
    };

    /// What stands between the brackets of a condition.
    struct SCondition
    {
        SyntaxParser::SScheme span;
        std::wstring_view text; ///< null data(): to be read from the reader
    };
    /// The conditions of one `if` and its branches, in source order.
    using TChain = std::vector<SCondition>;
    struct SOpenChain
    {
        TChain* chain;
        int alternative; ///< 1 once a `:` has followed a condition
    };
    /// What to go on with when the driver resumes this parser.
    struct SResume
    {
        int state;
        SyntaxParser::CIterator condStart;
        const wchar_t* condText;
    };

    void HandleIfState(SyntaxParser::CRegion* region);
    void HandleConditionStartState(SyntaxParser::CRegion* region);
    void HandleAfterCondState(SyntaxParser::CRegion* region);
    void HandleElseState(SyntaxParser::CRegion* region);
    void HandleContinueState(SyntaxParser::CRegion* region);

    void PopChain();
    void PopResume();
    void Error(int code, SyntaxParser::CRegion* region);
    void WarnEqualConditions(const TChain& chain, std::set<SyntaxParser::CIterator>& reported);

    CExpressionStatementParser m_conditionParser;
    std::list<TChain> m_chains;           ///< of the whole pass
    std::vector<SOpenChain> m_openChains; ///< whose statement is not finished, innermost last
    SyntaxParser::CIterator m_condStart;  ///< the end of the `(` of the condition being read
    const wchar_t* m_condText = nullptr;  ///< the text there, if the source holds it in one piece
    int m_state = IfState;
    std::vector<SResume> m_resume; ///< the last suspension; followed exactly, all of them, innermost last
    SyntaxParser::CIterator m_lastHanded; ///< start of the region last handed on after `else`
};

} // namespace Kesh::CodeAnalyzer
