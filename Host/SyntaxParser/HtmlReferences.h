#pragma once

#include "SyntaxParser/HtmlCursor.h"

#include <span>
#include <string_view>

namespace Kesh::SyntaxParser {

/// Reads a character reference, which begins at the cursor, as far as the standard does.
void ReadHtmlReference(CHtmlCursor& cursor, bool inAttribute);

/// Names of character references, without "&" and ";"; sorted. Any thread.
std::span<const std::string_view> GetHtmlReferenceNames();

} // namespace Kesh::SyntaxParser
