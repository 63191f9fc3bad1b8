#pragma once

#include "Parsers/AnonymousBody.h"
#include "Parsers/FunctionStatementParser.h"

namespace Kesh::CodeAnalyzer {

/// A closure inside an expression. Its body goes to the driver as nested statements.
class CAnonymousFunctionParser : public CFunctionStatementParser
{
public:
    using CFunctionStatementParser::CFunctionStatementParser;

    void DispathRegion(SyntaxParser::CRegion* region) override;
    void RestoreForContinue() override;

protected:
    void HandleFunctionState(SyntaxParser::CRegion* region) override;
    void HandleAfterParamsState(SyntaxParser::CRegion* region) override;
    void HandleAfterUseState(SyntaxParser::CRegion* region) override;

protected:
    enum EBodyState { AfterBodyState = 100, InBodyState = 101 };

    void HandleAfterFunctionBodyState(SyntaxParser::CRegion* region);
    void HandleInBodyState(SyntaxParser::CRegion* region);
    void StartBody(SyntaxParser::CRegion* region);

    CSkippedBody m_body;
};

} // namespace Kesh::CodeAnalyzer
