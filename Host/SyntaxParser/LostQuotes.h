#pragma once

#include <cstddef>
#include <string_view>

namespace Kesh::SyntaxParser {

/// Where a quoted attribute value seems to end when the quote at its end, which `next` follows, rather opens
/// another one; npos when all is well. `isAtEnd`: there is no quote at all.
std::size_t FindLostQuote(std::wstring_view value, wchar_t next, bool isAtEnd);

} // namespace Kesh::SyntaxParser
