#pragma once

#include "Files/Printable.h"
#include "Options.h"

#include <cstdio>
#include <string>
#include <string_view>

namespace Kesh::CommandLine {

using Host::Printable;
using Host::PrintableBytes;

/// Whether colours are wanted on this stream.
bool WantsColor(EColor color, std::FILE* stream);
/// "1 file", "2 files".
std::string Counted(std::size_t count, const char* noun);

} // namespace Kesh::CommandLine
