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
    if (!IsModifier(region) && region->definition != Php().VarDefs[1])
        return false;
    Start();
    return true;
}

// 0: more modifiers and the type, up to the variable.
void CStaticExpressionParser::HandleStaticState(CRegion* region)
{
    const auto& php = Php();
    if (region->definition == php.VarDefs[3])
        SetName();
    else if (region->definition == php.ExtraDefs[1] || region->definition == php.ClassDefs[1] ||
             IsKeyword(region, L"const"))
        End(region, 1); // the modifiers belonged to a method or a constant
    else if (region->definition != php.VarDefs[1] && !IsTypePart(region))
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
