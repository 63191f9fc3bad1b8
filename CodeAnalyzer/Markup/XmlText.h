#pragma once

#include "Kesh/SyntaxParser/IMarkupTokens.h"

namespace Kesh::CodeAnalyzer {

/// Whether a text, or what its PHP prints, is XML rather than HTML. Linear.
bool IsXml(const SyntaxParser::IMarkupPlaces& places);

} // namespace Kesh::CodeAnalyzer
