#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Kesh::SyntaxParser {

/// How the bytes of a file stand for characters.
enum class EEncoding { Utf8, Utf16Little, Utf16Big, Latin1, Windows1252 };

constexpr bool IsSingleByte(EEncoding encoding)
{
    return encoding == EEncoding::Latin1 || encoding == EEncoding::Windows1252;
}

/// The likelier of the encodings with one byte for a character. Bytes that both read alike are Latin-1, the
/// smaller one, so that nothing is written that only the other knows.
EEncoding GuessSingleByte(std::string_view bytes);
/// The text in UTF-8. Every byte is some character, so that each text can be written back as it was.
std::string Utf8FromSingleByte(std::string_view bytes, EEncoding encoding);
/// The byte of a character; nothing when the encoding has none for it.
std::optional<char> ToSingleByte(wchar_t c, EEncoding encoding);

} // namespace Kesh::SyntaxParser
