#pragma once

#include "Kesh/SyntaxParser/IMarkupTokens.h"

namespace Kesh::CodeAnalyzer {

/// Whether a text, or what its PHP prints, is XML rather than HTML: it says so before its first element, or
/// that is the root of a feed, a drawing or the like.
bool IsXml(const SyntaxParser::IMarkupPlaces& places);

} // namespace Kesh::CodeAnalyzer
