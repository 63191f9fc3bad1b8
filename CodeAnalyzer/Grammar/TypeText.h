#pragma once

#include "Grammar/GrammarTokens.h"

#include <string>

namespace Kesh::CodeAnalyzer {

/// The type that begins at a token, without the blanks in it; `token` becomes the one behind it.
std::wstring TypeText(const CGrammarTokens& tokens, std::uint32_t& token);

} // namespace Kesh::CodeAnalyzer
