#pragma once

#include "SyntaxParser/MarkupTrees.h"

#include <string>
#include <string_view>
#include <vector>

namespace Kesh::SyntaxParser {

/// The PHP in a test's text: every "<?" but "<?xml", up to the next "?>".
std::vector<SIsland> FindIslands(std::wstring_view text);

/// The trees of a text in UTF-8.
SMarkupTrees BuildTrees(std::string_view text, EMarkup markup);

/// A tree in one line. Tags by name, attributes as "@name", custom tags as "+name", names that PHP helps to
/// make as "~name" and "~@name"; children follow in brackets.
std::string PrintHtml(const SSemanticTree& tree);
/// The names of a CSS tree in order: properties as "p:name", elements as "e:name", others as "o:name".
std::string PrintCss(const SSemanticTree& tree);

std::string PrintSpan(const SScheme& span);

} // namespace Kesh::SyntaxParser
