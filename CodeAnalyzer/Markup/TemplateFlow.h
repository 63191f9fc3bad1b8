#pragma once

#include "Kesh/SyntaxParser/IMarkupTokens.h"
#include "Markup/TemplateTokens.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// What a statement does with its branches.
enum class EBranching : std::uint8_t {
    Choice, ///< at most one is taken; one of them for sure if the last one is unconditional
    Loop,   ///< the only one is taken any number of times
    Attempt ///< the first one is taken, perhaps not to its end; then perhaps another
};

/// A turn in the way of control through a template, at a place of its text.
struct SFlowMark
{
    enum EKind : std::uint8_t {
        ScopeBegin, ///< a function's body, which prints when it is called
        ScopeEnd,
        StatementBegin,
        BranchBegin,
        BranchEnd,
        StatementEnd,
        Exit ///< what follows in the branch is not reached
    };

    EKind kind;
    EBranching branching = EBranching::Choice;
    bool always = false;                 ///< a branch without a condition
    std::size_t offset;                  ///< in characters
    SyntaxParser::SMarkupSpan condition; ///< of a branch, without its parentheses; may be empty
};

/// The turns of a text, in its order; begins and ends are balanced, whatever the text is.
struct SFlow
{
    std::vector<SFlowMark> marks;
    bool sound = true; ///< false: the PHP has mistakes, and the turns need not be what is meant
};

/// Finds the turns by the PHP tokens of a text. Linear; recursion-free.
SFlow FindFlow(const std::vector<CTemplateToken>& tokens, const SyntaxParser::IMarkupPlaces& places);

} // namespace Kesh::CodeAnalyzer
