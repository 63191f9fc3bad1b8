#pragma once

#include "SyntaxParser/HtmlCursor.h"

#include <string_view>

namespace Kesh::SyntaxParser {

/// Goes to the end tag of the element `tag`, in lower case, whose content is text; or to the end.
void SkipHtmlRawText(CHtmlCursor& cursor, std::wstring_view tag);

} // namespace Kesh::SyntaxParser
