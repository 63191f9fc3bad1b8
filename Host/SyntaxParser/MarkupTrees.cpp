#include "SyntaxParser/MarkupTrees.h"

#include "SyntaxParser/CssTreeBuilder.h"
#include "SyntaxParser/HtmlTreeBuilder.h"
#include "SyntaxParser/MarkupText.h"

namespace Kesh::SyntaxParser {

SMarkupTrees BuildMarkupTrees(std::wstring_view text, EMarkup markup, const std::vector<SIsland>& islands,
                              const SGiveUp* giveUp, const COwnNames* own)
{
    SMarkupTrees trees;
    CTreeWriter html(trees.html);
    CTreeWriter css(trees.css);
    // Most files of PHP hold nothing else, and need no copy.
    const auto mayHaveTags = [](std::wstring_view part) { return part.find(L'<') != part.npos; };
    if (markup == EMarkup::Html && !AnyOutside(text, islands, mayHaveTags))
        return trees;
    CMarkupText source(text, islands, giveUp);
    if (markup == EMarkup::Html)
        CHtmlTreeBuilder(source, html, css, own).Build();
    else
        CCssTreeBuilder(source, css, own).Build({0, text.size()}, ECssText::Sheet);
    return trees;
}

} // namespace Kesh::SyntaxParser
