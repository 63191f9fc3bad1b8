#include "SyntaxParser/HtmlTokenizer.h"

namespace Kesh::SyntaxParser {

void CHtmlTokenizer::Run() {}

} // namespace Kesh::SyntaxParser
