#pragma once

#include "SyntaxParser/SourceText.h"

#include <string>
#include <string_view>

namespace Kesh::Editor {

/// The bytes of `text`, whose lines end with "\n", in a file's own format: byte order mark and line ends.
std::string EncodeSource(std::wstring_view text, const SyntaxParser::SSourceFormat& format);

} // namespace Kesh::Editor
