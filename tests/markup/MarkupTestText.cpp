#include "markup/MarkupTestText.h"

#include "Base/CommonString.h"
#include "SyntaxParser/SPDocument.h"

#include <algorithm>

namespace Kesh::SyntaxParser {

using Base::CCommonString;

std::vector<SIsland> FindIslands(std::wstring_view text)
{
    std::vector<SIsland> islands;
    for (std::size_t i = text.find(L"<?"); i != std::wstring_view::npos; i = text.find(L"<?", i)) {
        const std::size_t close = text.find(L"?>", i);
        const std::size_t end = close == std::wstring_view::npos ? text.size() : close + 2;
        if (!text.substr(i).starts_with(L"<?xml"))
            islands.push_back({i, end});
        i = end;
    }
    return islands;
}

SMarkupTrees BuildTrees(std::string_view text, EMarkup markup)
{
    const std::wstring wide = CCommonString::FromUtf8(text);
    return BuildMarkupTrees(wide, markup, FindIslands(wide));
}

namespace {

std::string PrintNode(const SSemanticTree& tree, const SSemanticTreeNode& node)
{
    std::string text;
    switch (node.kind) {
    case SemanticTag: break;
    case SemanticAttribute: text = "@"; break;
    case SemanticCustomTag: text = "+"; break;
    case SemanticDynamicTag: text = "~"; break;
    case SemanticDynamicAttribute: text = "~@"; break;
    default: text = "kind" + std::to_string(node.kind) + ":";
    }
    text += CCommonString::ToUtf8(node.name);
    if (node.firstChild == NoSemanticNode)
        return text;
    text += "(";
    for (TSemanticIndex child = node.firstChild; child != NoSemanticNode;
         child = tree.nodes[child].nextSibling)
        text += (child == node.firstChild ? "" : " ") + PrintNode(tree, tree.nodes[child]);
    return text + ")";
}

} // namespace

std::string PrintHtml(const SSemanticTree& tree)
{
    std::string text;
    for (TSemanticIndex child = tree.nodes[0].firstChild; child != NoSemanticNode;
         child = tree.nodes[child].nextSibling)
        text += (text.empty() ? "" : " ") + PrintNode(tree, tree.nodes[child]);
    return text;
}

std::string PrintCss(const SSemanticTree& tree)
{
    std::string text;
    for (TSemanticIndex child = tree.nodes[0].firstChild; child != NoSemanticNode;
         child = tree.nodes[child].nextSibling) {
        const SSemanticTreeNode& node = tree.nodes[child];
        const char* kind = node.regionKind == GetCssPropertyNameKind()  ? "p:"
                           : node.regionKind == GetCssElementNameKind() ? "e:"
                           : node.regionKind == GetCssOtherKind()       ? "o:"
                                                                        : "?:";
        text += (text.empty() ? "" : " ") + (kind + CCommonString::ToUtf8(node.name));
    }
    return text;
}

std::string PrintSpan(const SScheme& span)
{
    const auto print = [](CIterator pos) { return std::to_string(pos.x) + "," + std::to_string(pos.y); };
    return print(span.start) + "-" + print(span.end);
}

} // namespace Kesh::SyntaxParser
