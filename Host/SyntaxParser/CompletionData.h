#pragma once

#include "Kesh/SyntaxParser/IParserComponent.h"

namespace Kesh::SyntaxParser {

/// The names of HTML, SVG, MathML and CSS that are built in: tags and attributes in lower case. One immutable
/// object for the whole process, made when it is first asked for. Any thread.
const ICompletionData* GetBuiltInCompletionData();

} // namespace Kesh::SyntaxParser
