#pragma once

#include "Parsers/StatementParser.h"

namespace Kesh::CodeAnalyzer {

/// The head of a class, interface, trait or enumeration up to its `{`.
class CClassParser : public CStatementParser
{
public:
    using CStatementParser::CStatementParser;

    void DispathRegion(SyntaxParser::CRegion* region) override;
    int StatementStartRegion(SyntaxParser::CRegion* region) override;
    void BeforeParse(const SyntaxParser::STextChange& change) override;

protected:
    enum EState {
        ClassState = 0,
        ClassNameState = 1,
        ExtendsState = 2,
        ExtendsNameState = 3,
        ExtendsNameNamespaceState = 4,
        ImplementsState = 5,
        ImplementsNameState = 6,
        ImplementsNameNamespaceState = 7,
        TemplateNameState = 8
    };

    virtual void HandleClassState(SyntaxParser::CRegion* region);
    /// The head has ended at `{`.
    virtual void SendStructureEnd(SyntaxParser::CRegion* region, int redispatch);
    void Error(int code, SyntaxParser::CRegion* region);
    bool StartsList(SyntaxParser::CRegion* region);

    int m_state = ClassState;

protected:
    void HandleClassNameState(SyntaxParser::CRegion* region);
    void HandleExtendsState(SyntaxParser::CRegion* region);
    void HandleExtendsNameState(SyntaxParser::CRegion* region);
    void HandleExtendsNameNamespaceState(SyntaxParser::CRegion* region);
    void HandleImplementsState(SyntaxParser::CRegion* region);
    void HandleImplementsNameState(SyntaxParser::CRegion* region);
    void HandleImplementsNameNamespaceState(SyntaxParser::CRegion* region);
    void HandleTemplateNameState(SyntaxParser::CRegion* region);
};

} // namespace Kesh::CodeAnalyzer
