#pragma once

#include "Grammar/GrammarTokens.h"

#include <cstdint>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// A brace that may be the mistaken one, told by how the lines are indented.
struct SBraceGuess
{
    /// A `}` is missing before this token when `missing` is set; else this token is a `}` too many.
    std::uint32_t token;
    bool missing;
    std::uint32_t opened; ///< the brace that is left open, or that is closed too early
};

/// Pairs of braces before `end` whose lines are not indented alike, in the order in which they close, and
/// blocks that are still open although their line's indentation has come again. At most `most` of them.
/// Linear.
std::vector<SBraceGuess> GuessBraces(const CGrammarTokens& tokens, std::uint32_t end, std::size_t most);

/// The column of the first token on the token's line.
std::uint32_t IndentOf(const CGrammarTokens& tokens, std::uint32_t token);

/// The brackets that are open before `end`, the outermost first, as tokens.
std::vector<std::uint32_t> OpenBrackets(const CGrammarTokens& tokens, std::uint32_t end);

} // namespace Kesh::CodeAnalyzer
