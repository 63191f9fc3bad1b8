#pragma once

#include "Grammar/GrammarTokens.h"
#include "Grammar/RuleReport.h"

#include <cstdint>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// A brace that may be the mistaken one, told by how the lines are indented.
struct SBraceGuess
{
    enum EWay : std::uint8_t {
        CloseMissing, ///< a `}` is missing before the token
        OpenMissing,  ///< a `{` is
        CloseOdd,     ///< the token is a `}` too many
        OpenOdd       ///< the token is a `{` too many
    } way;
    std::uint32_t token;
    std::uint32_t opened; ///< the brace that is left open, or that is closed too early; NoToken: none is
};

/// Whether what begins a block may end with it, before the block's brace.
bool EndsHeader(SyntaxParser::EPhpTokenKind kind);

/// Pairs of braces before `end` whose lines are not indented alike, in the order in which they close, and
/// blocks that are still open although their line's indentation has come again. At most `most` of them.
/// Linear.
std::vector<SBraceGuess> GuessBraces(const CGrammarTokens& tokens, std::uint32_t end, std::size_t most);

/// The column of the first token on the token's line.
std::uint32_t IndentOf(const CGrammarTokens& tokens, std::uint32_t token);

/// The brackets that are open before `end`, the outermost first, as tokens.
std::vector<std::uint32_t> OpenBrackets(const CGrammarTokens& tokens, std::uint32_t end);

} // namespace Kesh::CodeAnalyzer
