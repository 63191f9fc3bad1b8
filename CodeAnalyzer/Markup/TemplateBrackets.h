#pragma once

#include "Kesh/SyntaxParser/ITokenSource.h"

namespace Kesh::CodeAnalyzer {

// What a token of a template's PHP begins or ends.

constexpr bool EndsStatement(SyntaxParser::EPhpTokenKind kind)
{
    using enum SyntaxParser::EPhpTokenKind;
    return kind == Semicolon || kind == CloseTag;
}

constexpr bool Opens(SyntaxParser::EPhpTokenKind kind)
{
    using enum SyntaxParser::EPhpTokenKind;
    return kind == OpenRound || kind == OpenSquare || kind == AttributeStart;
}

constexpr bool Closes(SyntaxParser::EPhpTokenKind kind)
{
    using enum SyntaxParser::EPhpTokenKind;
    return kind == CloseRound || kind == CloseSquare;
}

constexpr bool OpensBrace(SyntaxParser::EPhpTokenKind kind)
{
    using enum SyntaxParser::EPhpTokenKind;
    return kind == OpenBrace || kind == CodeBrace || kind == DollarBrace;
}

constexpr bool EndsAlternative(SyntaxParser::EPhpTokenKind kind)
{
    using enum SyntaxParser::EPhpTokenKind;
    return kind == Endif || kind == Endfor || kind == Endforeach || kind == Endwhile || kind == Endswitch ||
           kind == Enddeclare;
}

} // namespace Kesh::CodeAnalyzer
