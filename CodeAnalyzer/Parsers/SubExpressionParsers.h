#pragma once

#include "Parsers/ExpressionStatementParser.h"

namespace Kesh::CodeAnalyzer {

/// One operand: ends at the first region after it that does not continue it while no bracket is open.
class COperandParser : public CExpressionStatementParser
{
public:
    COperandParser(SyntaxParser::CDefRegions* defs, boost::shared_ptr<SyntaxParser::IReader> reader,
                   CParentParser* parent);

    void SetState(int state) { m_data.state = state; }
    /// Begins with a region that may only stand inside an expression, as that of a closure.
    void StartInside(SyntaxParser::CRegion* region);

    void HandleBinarOpState(SyntaxParser::CRegion* region) override;
    void HandleChainState(SyntaxParser::CRegion* region) override;
};

/// The initial value after `=` in `static`, `const` and property declarations; may be a here-document.
class CStaticOperandParser : public COperandParser
{
public:
    using COperandParser::COperandParser;

    int StatementStartRegion(SyntaxParser::CRegion* region) override;
};

/// The value after `case`: ends at `:` or `;`.
class CCaseExpressionParser : public CExpressionStatementParser
{
public:
    using CExpressionStatementParser::CExpressionStatementParser;

    int IsTerminalRegion(SyntaxParser::CRegion* region) override;
};

/// One expression of a `for (...)` header: ends also at a `,` outside brackets.
class CForExpressionParser : public CExpressionStatementParser
{
public:
    using CExpressionStatementParser::CExpressionStatementParser;

    int IsTerminalRegion(SyntaxParser::CRegion* region) override;
};

/// The expression that `foreach` iterates: ends at `as`.
class CForeachConditionParser : public CExpressionStatementParser
{
public:
    using CExpressionStatementParser::CExpressionStatementParser;

    int IsTerminalRegion(SyntaxParser::CRegion* region) override;
};

/// The key or the value of `foreach`: ends at `=>`.
class CForeachValueParser : public CExpressionStatementParser
{
public:
    using CExpressionStatementParser::CExpressionStatementParser;

    int IsTerminalRegion(SyntaxParser::CRegion* region) override;
};

} // namespace Kesh::CodeAnalyzer
