#pragma once

#include "Grammar/NearWords.h"
#include "Grammar/PhpGrammarParser.h"

#include <cstdint>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// A change of the text around a wrong token that lets the parse go on.
struct SGrammarRepair
{
    enum EWay : std::uint8_t {
        None,    ///< nothing small helps
        Insert,  ///< something is missing
        Drop,    ///< something is too much
        Replace, ///< something stands for something else
        Word,    ///< a reserved word is written wrongly
        Frame    ///< what the wrong token belongs to is put around it, whatever became of that
    } way = None;
    std::vector<SyntaxParser::EPhpTokenKind> inserted;
    std::uint32_t back = 0;     ///< how many tokens before the wrong one it is done
    std::uint32_t dropped = 0;  ///< how many tokens are dropped from there on
    std::uint32_t accepted = 0; ///< how many tokens then pass, counted from the wrong one
    int cost = 0;               ///< the less, the likelier
    bool isWhole = false;       ///< all that is looked at passes
};

/// What is known of the place where the parse stopped.
struct SGrammarStop
{
    using K = SyntaxParser::EPhpTokenKind;

    /// The tokens around, by kind: `back` of them before the wrong one, then that one and those that follow.
    std::vector<K> kinds;
    /// The reserved words that each of those up to the wrong one may have been meant to be.
    std::vector<std::vector<SNearWord>> words;
    /// Before each of those: what may follow there.
    std::vector<CGrammarProbe> probes;
    std::size_t back = 0;
    bool leadsLine = false;      ///< the wrong token is the first of its line
    bool isNoDeeper = false;     ///< and is indented no more than the line before
    bool isInLinesBlock = false; ///< the innermost bracket is a brace on the line before
    std::size_t modifiers = 0;   ///< how many modifiers stand before it, the first of which leads its line
    bool sameAsBefore = false;   ///< it has the text of the token before
    /// What closes the brackets that are open, the innermost first; a few of them are enough.
    std::vector<K> closers;
};

/// The likeliest repair: the one after which the most tokens pass, as far as it is no less likely for that.
SGrammarRepair FindRepair(const SGrammarStop& stop);

} // namespace Kesh::CodeAnalyzer
