#pragma once

#include "Grammar/GrammarTokens.h"

#include <cstdint>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// The tokens before the given one that open a string, or code in a string, and are not closed there; the
/// innermost last.
std::vector<std::uint32_t> OpenStrings(const CGrammarTokens& tokens, std::uint32_t end);

/// The token that opens a string of several lines which ends directly before the given token and most likely
/// began where another should have ended; NoToken where there is none.
std::uint32_t FindLateString(const CGrammarTokens& tokens, std::uint32_t stop);

} // namespace Kesh::CodeAnalyzer
