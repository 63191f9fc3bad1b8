#pragma once

#include <string>
#include <string_view>

namespace Kesh::SyntaxParser {

/// What stands at the start of a block's statements.
enum class ECssBlock : char {
    Sheet,     ///< rules only
    Style,     ///< properties, and nested rules
    Keyframes, ///< keyframe selectors
    Foreign    ///< names of a language that we do not know, or that authors make up
};

/// The block of a style rule, or of a keyframe, inside `outer`.
ECssBlock BlockOfRule(ECssBlock outer);
/// The block of an at-rule inside `outer`; `name` in lower case, without the "@".
ECssBlock BlockOfAtRule(std::wstring_view name, ECssBlock outer);

/// Whether a functional pseudo-class takes selectors that are matched against the document's elements.
bool TakesSelectors(std::wstring_view pseudo);

/// A name with its escapes replaced by what they stand for.
std::wstring UnescapeCss(std::wstring_view written);

} // namespace Kesh::SyntaxParser
