#pragma once

#include "Options.h"

#include <cstdio>
#include <string>
#include <string_view>

namespace Kesh::CommandLine {

/// UTF-8 for people: control characters become escapes such as \n and \x1B, bytes that are not UTF-8 \xFF.
std::string Printable(std::wstring_view text);
/// Whether colours are wanted on this stream.
bool WantsColor(EColor color, std::FILE* stream);
/// "1 file", "2 files".
std::string Counted(std::size_t count, const char* noun);

} // namespace Kesh::CommandLine
