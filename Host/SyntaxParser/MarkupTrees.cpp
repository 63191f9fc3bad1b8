#include "SyntaxParser/MarkupTrees.h"

#include "SyntaxParser/CssTreeBuilder.h"
#include "SyntaxParser/HtmlTreeBuilder.h"
#include "SyntaxParser/MarkupText.h"

namespace Kesh::SyntaxParser {

SMarkupTrees BuildMarkupTrees(std::wstring_view text, EMarkup markup, const std::vector<SIsland>& islands,
                              const std::atomic<bool>* cancelled)
{
    SMarkupTrees trees;
    CTreeWriter html(trees.html);
    CTreeWriter css(trees.css);
    CMarkupText source(text, islands, cancelled);
    if (markup == EMarkup::Html)
        CHtmlTreeBuilder(source, html, css).Build();
    else
        CCssTreeBuilder(source, css).Build({0, text.size()}, ECssText::Sheet);
    return trees;
}

} // namespace Kesh::SyntaxParser
