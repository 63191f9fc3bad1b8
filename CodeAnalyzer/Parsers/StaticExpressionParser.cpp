#include "Parsers/StaticExpressionParser.h"

namespace Kesh::CodeAnalyzer {

using SyntaxParser::CRegion;

bool CStaticExpressionParser::IsModifier(CRegion* region)
{
    return IsKeyword(region, L"static") || IsKeyword(region, L"public") || IsKeyword(region, L"protected") ||
           IsKeyword(region, L"private");
}

int CStaticExpressionParser::StatementStartRegion(CRegion* region)
{
    if (!IsModifier(region) && !IsVar(region, PhpVar::PropertyWord))
        return false;
    Start();
    return true;
}

// 0: more modifiers and the type, up to the variable.
void CStaticExpressionParser::HandleStaticState(CRegion* region)
{
    if (IsVar(region, PhpVar::Variable))
        SetName();
    else if (IsExtra(region, PhpExtra::Function) || IsClassWord(region) || IsKeyword(region, L"const"))
        End(region, 1); // the modifiers belonged to a method or a constant
    else if (!IsVar(region, PhpVar::PropertyWord) && !IsTypePart(region))
        Error(region);
}

// 1: the hooks of a property are a block.
void CStaticExpressionParser::HandleVarNameState(CRegion* region)
{
    if (IsOpening(region, L'{'))
        End(region, 1);
    else
        Error(region);
}

} // namespace Kesh::CodeAnalyzer
