#pragma once

#include "Kesh/SyntaxParser/SemanticTree.h"
#include "SyntaxParser/GiveUp.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

namespace Kesh::SyntaxParser {

/// What a text is at its outermost level.
enum class EMarkup { Html, Css };

/// A stretch of PHP in a text, tags included; offsets in characters, end exclusive.
struct SIsland
{
    std::size_t begin = 0;
    std::size_t end = 0;
};

/// Whether what is looked for is in a stretch outside of the islands, which lie in order.
template <class TPredicate>
bool AnyOutside(std::wstring_view text, const std::vector<SIsland>& islands, TPredicate isIn)
{
    std::size_t begin = 0;
    for (const SIsland& island : islands) {
        if (isIn(text.substr(begin, island.begin - begin)))
            return true;
        begin = std::min(island.end, text.size());
    }
    return isIn(text.substr(begin));
}

/// The names of a text's markup: tags and attributes in `html`; style properties and selector element names
/// of style sheets, <style> elements and style attributes in `css`.
struct SMarkupTrees
{
    SSemanticTree html;
    SSemanticTree css;
};

class COwnNames;

/// Builds both trees in one pass; survives any text in linear time. Lines end at "\n" alone. `islands` lie in
/// order and do not overlap. The trees are not complete once the flag, which may be null, has been set.
/// Names of `own`, which may be null, are not checked, nor the attributes of such tags. Reentrant.
SMarkupTrees BuildMarkupTrees(std::wstring_view text, EMarkup markup, const std::vector<SIsland>& islands,
                              const SGiveUp* giveUp = nullptr, const COwnNames* own = nullptr);

} // namespace Kesh::SyntaxParser
