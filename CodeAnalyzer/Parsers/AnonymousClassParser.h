#pragma once

#include "Parsers/AnonymousBody.h"
#include "Parsers/ClassParser.h"

namespace Kesh::CodeAnalyzer {

/// `new class (...) extends ... {` inside an expression. Its body goes to the driver as nested statements.
class CAnonymousClassParser : public CClassParser
{
public:
    using CClassParser::CClassParser;

    void DispathRegion(SyntaxParser::CRegion* region) override;
    int StatementStartRegion(SyntaxParser::CRegion* region) override;
    void RestoreForContinue() override;

protected:
    void HandleClassState(SyntaxParser::CRegion* region) override;
    void SendStructureEnd(SyntaxParser::CRegion* region, int redispatch) override;

protected:
    enum EBodyState { InBodyState = 100, ParamsState = 101, AfterBodyState = 102 };

    void HandleAnonymosClassParamsState(SyntaxParser::CRegion* region);
    void HandleAfterParamsState(SyntaxParser::CRegion* region);
    void HandleInBodyState(SyntaxParser::CRegion* region);
    void HandleAfterFunctionBodyState(SyntaxParser::CRegion* region);

    int m_depth = 0;  ///< open `(` of the constructor arguments
    int m_braces = 0; ///< open `{` of closures among them
    bool m_argumentsRead = false;
    CSkippedBody m_body;
};

} // namespace Kesh::CodeAnalyzer
