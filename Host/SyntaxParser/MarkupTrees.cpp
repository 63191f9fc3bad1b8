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
    // Most files of PHP hold nothing else.
    if (islands.size() == 1 && islands[0].begin == 0 && islands[0].end >= text.size())
        return trees;
    CMarkupText source(text, islands, giveUp);
    if (markup == EMarkup::Html)
        CHtmlTreeBuilder(source, html, css, own).Build();
    else
        CCssTreeBuilder(source, css, own).Build({0, text.size()}, ECssText::Sheet);
    return trees;
}

} // namespace Kesh::SyntaxParser
