#include "SyntaxParser/CssTokenizer.h"

namespace Kesh::SyntaxParser {

void CCssTokenizer::Run(SMarkupSpan /*part*/) {}

} // namespace Kesh::SyntaxParser
