#pragma once

#include "Grammar/GrammarTokens.h"
#include "Grammar/GrammarValue.h"

#include <cstdint>
#include <optional>

namespace Kesh::CodeAnalyzer {

/// What PHP has worked out of an expression before the program runs.
enum class EKnown : std::uint8_t {
    Nothing,
    Something, ///< its value, which nobody here has worked out
    True,      ///< what counts as true, and below as false
    False,
    Null
};

EKnown KnownOf(const CGrammarTokens& tokens, const SGrammarValue& value);

/// The whole number that a token of it writes, at most 2^63 - 1; nothing where it writes another.
std::optional<std::uint64_t> IntegerOf(std::wstring_view text);

} // namespace Kesh::CodeAnalyzer
