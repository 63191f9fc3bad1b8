#pragma once

#include "Markup/TemplateFlow.h"

namespace Kesh::CodeAnalyzer {

/// Adds the turns of templates for scripts, `<# if (a) { #> ... <# } else { #> ... <# } #>`, to those of the
/// PHP around them. Where the two do not nest, the flow is unsound. Linear.
void AddScriptBlocks(SFlow& flow, const SyntaxParser::IMarkupPlaces& places);

} // namespace Kesh::CodeAnalyzer
