#pragma once

#include "Parsers/DeclarationParser.h"

namespace Kesh::CodeAnalyzer {

/// `const X = ...;`, with or without a type.
class CConstExpressionParser : public CDeclarationParser
{
public:
    using CDeclarationParser::CDeclarationParser;

    int StatementStartRegion(SyntaxParser::CRegion* region) override;

protected:
    void HandleKeywordState(SyntaxParser::CRegion* region) override { HandleConstState(region); }
    void HandleAfterName(SyntaxParser::CRegion* region) override { HandleConstNameState(region); }
    bool NeedsValue() const override { return true; }

protected:
    void HandleConstState(SyntaxParser::CRegion* region);
    void HandleConstNameState(SyntaxParser::CRegion* region);
};

} // namespace Kesh::CodeAnalyzer
