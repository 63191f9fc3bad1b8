#pragma once

#include "Kesh/SyntaxParser/Position.h"
#include "SyntaxParser/SourceText.h"

#include <optional>
#include <string>
#include <string_view>

namespace Kesh::Editor {

/// The bytes of `text`, whose lines end with "\n", in a file's own format: encoding, byte order mark and line
/// ends. Throws Base::CWorkError when a character does not exist in the encoding.
std::string EncodeSource(std::wstring_view text, const SyntaxParser::SSourceFormat& format);
/// The first character of `text` that the encoding does not have.
std::optional<SyntaxParser::CIterator> FindUnwritable(std::wstring_view text,
                                                      SyntaxParser::EEncoding encoding);

} // namespace Kesh::Editor
