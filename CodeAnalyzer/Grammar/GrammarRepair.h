#pragma once

#include "Grammar/PhpGrammarParser.h"

#include <cstdint>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// A change of the text around a wrong token that lets the parse go on.
struct SGrammarRepair
{
    std::vector<SyntaxParser::EPhpTokenKind> inserted; ///< before the wrong token
    std::uint32_t dropped = 0;                         ///< how many tokens from the wrong one on
    std::uint32_t accepted = 0;                        ///< how many of the tokens that follow then pass
    int cost = 0;                                      ///< the less, the likelier
};

/// What is known of the place where the parse stopped.
struct SGrammarStop
{
    /// The wrong token and those that follow, by kind; the last may be End.
    std::vector<SyntaxParser::EPhpTokenKind> ahead;
    SyntaxParser::EPhpTokenKind before = SyntaxParser::EPhpTokenKind::End; ///< the token before the wrong one
    bool leadsLine = false;    ///< the wrong token is the first of its line
    bool sameAsBefore = false; ///< it has the text of the token before
    /// What closes the brackets that are open, the innermost first; a few of them are enough.
    std::vector<SyntaxParser::EPhpTokenKind> closers;
};

/// The likeliest repair; one with `accepted` 0 when none lets enough tokens pass.
SGrammarRepair FindRepair(const CGrammarProbe& probe, const SGrammarStop& stop);

} // namespace Kesh::CodeAnalyzer
