#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Kesh::SyntaxParser {

enum class EByteOrder { Little, Big };

/// The order of the bytes of a text that begins with the byte order mark of UTF-16; nothing for any other.
std::optional<EByteOrder> Utf16OrderOf(std::string_view bytes);
/// The text behind the mark in UTF-8. Half a pair, or half a character at the end, becomes a byte that is not
/// UTF-8.
std::string Utf8FromUtf16(std::string_view bytes, EByteOrder order);
/// The other way, with the mark. `utf8` is valid.
std::string Utf16FromUtf8(std::string_view utf8, EByteOrder order);

} // namespace Kesh::SyntaxParser
