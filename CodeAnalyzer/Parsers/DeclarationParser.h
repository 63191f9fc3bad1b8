#pragma once

#include "Parsers/ContainerParser.h"
#include "Parsers/SubExpressionParsers.h"

namespace Kesh::CodeAnalyzer {

/// What `static`, property and constant declarations share: a list of names with initial values. A value is
/// read operand by operand, since the operand parser stops at each operator.
class CDeclarationParser : public CContainerParser
{
public:
    CDeclarationParser(SyntaxParser::CDefRegions* defs, boost::shared_ptr<SyntaxParser::IReader> reader,
                       CParentParser* parent);

    void DispathRegion(SyntaxParser::CRegion* region) override;
    void BeforeParse(const SyntaxParser::STextChange& change) override;

    void OnStructureEnd(SyntaxParser::CRegion* region, int redispatch) override;

protected:
    enum EState { KeywordState = 0, NameState = 1, AssignState = 2, ExpressionState = 3 };

    /// 0: after the keyword or a `,`: what stands before a name, and the name.
    virtual void HandleKeywordState(SyntaxParser::CRegion* region) = 0;
    /// 1: after a name that has no value yet, where it is not `=`, `,` or the end.
    virtual void HandleAfterName(SyntaxParser::CRegion* region) = 0;

    /// Whether every name must have a value.
    virtual bool NeedsValue() const { return false; }

    /// Whether an operand of the present name's value has been read.
    bool HasValue() const { return m_hasValue; }
    void Start();
    void SetName();
    void End(SyntaxParser::CRegion* region, int redispatch);
    void Error(SyntaxParser::CRegion* region);
    /// Whether the region may be a part of a type: a name, `?`, `|`, `&`, `\` or a round bracket.
    bool IsTypePart(SyntaxParser::CRegion* region);

protected:
    void HandleNameState(SyntaxParser::CRegion* region);
    void HandleAssignState(SyntaxParser::CRegion* region);
    void HandleExpressionState(SyntaxParser::CRegion* region);
    void HandleArguments(SyntaxParser::CRegion* region);
    bool ContinuesValue(SyntaxParser::CRegion* region);
    bool OpensArguments(SyntaxParser::CRegion* region);

    int m_state = KeywordState;
    bool m_hasValue = false; ///< an operand of the present name's value has been read
    int m_arguments = 0;     ///< open brackets of a call or an index that the operand parser stopped at
    int m_braces = 0;        ///< open braces of closures in them
    CStaticOperandParser m_operandParser;
};

} // namespace Kesh::CodeAnalyzer
