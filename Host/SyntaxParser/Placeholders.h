#pragma once

#include "SyntaxParser/MarkupText.h"

namespace Kesh::SyntaxParser {

/// Fills what template engines replace in HTML, as islands of PHP are filled: "{{ a }}", "{% b %}",
/// "{# c #}", "<% d %>", "<# d #>"; in texts of Smarty also "{$e}", "{f}", "{/f}" and "{* g *}". Linear in
/// time. Returns whether there was any.
bool FillPlaceholders(CMarkupText& text, bool isSmarty);

} // namespace Kesh::SyntaxParser
