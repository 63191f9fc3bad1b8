#pragma once

#include "SyntaxParser/HtmlCursor.h"

namespace Kesh::SyntaxParser {

/// Each reads on from its "<!" or "<" and says what it has read; the span begins there.
SHtmlToken ReadHtmlComment(CHtmlCursor& cursor); ///< from "<!--"
SHtmlToken ReadHtmlDoctype(CHtmlCursor& cursor); ///< from "<!doctype"
SHtmlToken ReadHtmlCData(CHtmlCursor& cursor);   ///< from "<![CDATA["
/// What begins as a declaration, an instruction or an end tag, and is none: up to the next ">".
SHtmlToken ReadBogusComment(CHtmlCursor& cursor);

} // namespace Kesh::SyntaxParser
