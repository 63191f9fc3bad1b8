#include "SyntaxParser/MarkupTrees.h"

#include "SyntaxParser/CssTreeBuilder.h"
#include "SyntaxParser/HtmlTreeBuilder.h"
#include "SyntaxParser/MarkupText.h"

#include <algorithm>

namespace Kesh::SyntaxParser {

namespace {

/// Whether something outside of the islands may be a tag.
bool MayHaveTags(std::wstring_view text, const std::vector<SIsland>& islands)
{
    std::size_t begin = 0;
    for (const SIsland& island : islands) {
        if (text.substr(begin, island.begin - begin).find(L'<') != std::wstring_view::npos)
            return true;
        begin = std::min(island.end, text.size());
    }
    return text.find(L'<', begin) != std::wstring_view::npos;
}

} // namespace

SMarkupTrees BuildMarkupTrees(std::wstring_view text, EMarkup markup, const std::vector<SIsland>& islands,
                              const SGiveUp* giveUp, const COwnNames* own)
{
    SMarkupTrees trees;
    CTreeWriter html(trees.html);
    CTreeWriter css(trees.css);
    // Most files of PHP hold nothing else, and need no copy.
    if (markup == EMarkup::Html && !MayHaveTags(text, islands))
        return trees;
    CMarkupText source(text, islands, giveUp);
    if (markup == EMarkup::Html)
        CHtmlTreeBuilder(source, html, css, own).Build();
    else
        CCssTreeBuilder(source, css, own).Build({0, text.size()}, ECssText::Sheet);
    return trees;
}

} // namespace Kesh::SyntaxParser
