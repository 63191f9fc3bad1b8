#pragma once

#include "Parsers/StatementParser.h"

namespace Kesh::CodeAnalyzer {

/// The head of a function or method declaration: name, parameters and return type, up to its `{` or `;`.
class CFunctionStatementParser : public CStatementParser
{
public:
    using CStatementParser::CStatementParser;

    void DispathRegion(SyntaxParser::CRegion* region) override;
    int StatementStartRegion(SyntaxParser::CRegion* region) override;
    void BeforeParse(const SyntaxParser::STextChange& change) override;

protected:
    enum EState {
        FunctionState = 0,
        NameState = 1,
        ParamsState = 2,
        AfterParamsState = 3,
        ReturnDeclState = 4,
        UseState = 5,
        UseParamsState = 6,
        AfterUseState = 7
    };

    virtual void HandleFunctionState(SyntaxParser::CRegion* region);
    virtual void HandleAfterParamsState(SyntaxParser::CRegion* region);
    virtual void HandleAfterUseState(SyntaxParser::CRegion* region);
    void HandleNameState(SyntaxParser::CRegion* region);
    void HandleParamsState(SyntaxParser::CRegion* region);
    void HandleReturnDeclState(SyntaxParser::CRegion* region);
    void HandleUseState(SyntaxParser::CRegion* region);
    void HandleUseParamsState(SyntaxParser::CRegion* region);

    void OpenList(int state);
    void End(SyntaxParser::CRegion* region, int redispatch);
    void Error(int code, SyntaxParser::CRegion* region, int skip = 1);

    int m_state = FunctionState;
    int m_depth = 0;     ///< open brackets of the list being read
    bool m_seen = false; ///< a parameter list has begun

protected:
    void HandleList(SyntaxParser::CRegion* region, int next);
};

} // namespace Kesh::CodeAnalyzer
