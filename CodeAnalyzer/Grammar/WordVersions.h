#pragma once

#include "Kesh/SyntaxParser/ITokenSource.h"

#include <cstdint>
#include <string_view>

namespace Kesh::CodeAnalyzer {

/// The first version of PHP in which the word is reserved, as SPhpFeature has it; 0 is the oldest.
constexpr std::int32_t ReservedSince(SyntaxParser::EPhpTokenKind word)
{
    using K = SyntaxParser::EPhpTokenKind;
    switch (word) {
    case K::Callable:
    case K::Insteadof:
    case K::Trait: return 504;
    case K::Finally:
    case K::Yield: return 505;
    case K::Fn: return 704;
    case K::Match: return 800;
    case K::Readonly: return 801;
    default: return 0;
    }
}

/// Whether a part of the qualified name is a word that is reserved in that version, which none could be
/// before 8.0.
bool HasReservedPart(std::wstring_view name, std::int32_t version);

} // namespace Kesh::CodeAnalyzer
