#pragma once

#include "Parsers/DeclarationParser.h"

namespace Kesh::CodeAnalyzer {

/// `static $x = ...;` and the properties of a class. What else a modifier may begin is given back.
class CStaticExpressionParser : public CDeclarationParser
{
public:
    using CDeclarationParser::CDeclarationParser;

    int StatementStartRegion(SyntaxParser::CRegion* region) override;

protected:
    void HandleKeywordState(SyntaxParser::CRegion* region) override { HandleStaticState(region); }
    void HandleAfterName(SyntaxParser::CRegion* region) override { HandleVarNameState(region); }

protected:
    void HandleStaticState(SyntaxParser::CRegion* region);
    void HandleVarNameState(SyntaxParser::CRegion* region);
    bool IsModifier(SyntaxParser::CRegion* region);
};

} // namespace Kesh::CodeAnalyzer
