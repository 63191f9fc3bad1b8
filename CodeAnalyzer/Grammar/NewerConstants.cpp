#include "Grammar/NewerConstants.h"

#include <string_view>

namespace Kesh::CodeAnalyzer {

using K = SyntaxParser::EPhpTokenKind;

namespace {

bool IsName(K kind)
{
    return kind == K::Identifier || kind == K::QualifiedName || kind == K::FullyQualifiedName ||
           kind == K::RelativeName;
}

std::optional<EFeature> FeatureOfBracket(const CGrammarTokens& tokens, std::uint32_t token)
{
    const K before = token > 0 ? tokens[token - 1].kind : K::End;
    if (!IsName(before) && before != K::Variable && before != K::CloseRound && before != K::CloseSquare &&
        before != K::CloseBrace)
        return EFeature::ConstantExpression;
    const bool isCallable =
        IsName(before) && token + 1 < tokens.Count() && tokens[token + 1].kind == K::Ellipsis;
    return isCallable ? std::optional(EFeature::ConstantCallable) : std::nullopt;
}

} // namespace

std::optional<EFeature> NewerConstant(const CGrammarTokens& tokens, std::uint32_t token)
{
    if (token >= tokens.Count())
        return {};
    const K kind = tokens[token].kind;
    const K next = token + 1 < tokens.Count() ? tokens[token + 1].kind : K::End;
    switch (kind) {
    case K::Cast: return EFeature::ConstantCast;
    case K::Static: return next == K::Function ? std::optional(EFeature::ConstantClosure) : std::nullopt;
    case K::New: return IsName(next) ? std::optional(EFeature::ConstantNew) : std::nullopt;
    case K::Arrow:
    case K::NullsafeArrow: return EFeature::ConstantProperty;
    case K::OpenRound: return FeatureOfBracket(tokens, token);
    case K::OpenSquare:
    case K::Question:
    case K::Colon: return EFeature::ConstantExpression;
    default:
        return ClassOf(kind) == SyntaxParser::EPhpTokenClass::Operator || kind == K::And || kind == K::Or ||
                       kind == K::Xor
                   ? std::optional(EFeature::ConstantExpression)
                   : std::nullopt;
    }
}

} // namespace Kesh::CodeAnalyzer
