#pragma once

#include "Kesh/SyntaxParser/ITokenSource.h"

#include <string_view>
#include <vector>

namespace Kesh::SyntaxParser {

/// The tokens of `code`, which begins at `place`, inside of PHP. It is followed by a NUL character.
std::vector<SPhpToken> CutTokens(std::wstring_view code, CIterator place, bool shortTags);

} // namespace Kesh::SyntaxParser
