#pragma once

#include "Kesh/SyntaxParser/ITokenSource.h"

#include <string_view>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// A reserved word much like one that is none.
struct SNearWord
{
    SyntaxParser::EPhpTokenKind word;
    int distance; ///< letters lost, added, changed or swapped with the next one
};

/// The reserved words that a word in any case may have been meant to be: one letter away, two of a long word.
std::vector<SNearWord> NearWords(std::wstring_view text);

} // namespace Kesh::CodeAnalyzer
