#pragma once

#include "Parsers/StatementParser.h"

namespace Kesh::CodeAnalyzer {

/// `throw ...;`, whose expression is not checked, and the head `catch (Type $e)`.
class CTryCatchParser : public CStatementParser
{
public:
    using CStatementParser::CStatementParser;

    void DispathRegion(SyntaxParser::CRegion* region) override;
    int StatementStartRegion(SyntaxParser::CRegion* region) override;
    void BeforeParse(const SyntaxParser::STextChange& change) override;

protected:
    enum EState { ThrowState = 0, CatchState = 1, CatchBrState = 2, CatchClassState = 3, CatchVarState = 4 };

    void HandleThrowState(SyntaxParser::CRegion* region);
    void HandleCatchState(SyntaxParser::CRegion* region);
    void HandleCatchBrState(SyntaxParser::CRegion* region);
    void HandleCatchClassState(SyntaxParser::CRegion* region);
    void HandleCatchVarState(SyntaxParser::CRegion* region);

    void End(SyntaxParser::CRegion* region);
    void Error(SyntaxParser::CRegion* region);

    int m_state = ThrowState;
};

} // namespace Kesh::CodeAnalyzer
