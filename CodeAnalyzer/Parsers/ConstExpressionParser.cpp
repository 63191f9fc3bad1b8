#include "Parsers/ConstExpressionParser.h"

namespace Kesh::CodeAnalyzer {

using SyntaxParser::CRegion;

int CConstExpressionParser::StatementStartRegion(CRegion* region)
{
    if (!IsKeyword(region, L"const"))
        return false;
    Start();
    return true;
}

// 0: the name, or the beginning of a type.
void CConstExpressionParser::HandleConstState(CRegion* region)
{
    if (IsWord(region) || IsToken(region, PhpToken::Keyword))
        SetName();
    else if (!IsTypePart(region))
        Error(region);
}

// 1: what was read was a part of the type if more of it, or the name, follows.
void CConstExpressionParser::HandleConstNameState(CRegion* region)
{
    if (HasValue() || !IsTypePart(region))
        Error(region);
}

} // namespace Kesh::CodeAnalyzer
