#pragma once

#include "SyntaxParser/SingleByte.h"
#include "SyntaxParser/Utf16.h"

#include <optional>
#include <string>
#include <string_view>

namespace Kesh::SyntaxParser {

/// Decodes a file's bytes: UTF-16 when they begin with its byte order mark, else UTF-8 (a leading byte order
/// mark is dropped, each invalid byte becomes U+FFFD, NUL characters stay), or an encoding with one byte for
/// a character when more of them are invalid than not. The line ends CR LF and CR become "\n". Never fails.
std::wstring DecodeSource(std::string_view bytes);

/// How a file wrote its text, so that it can be written back alike.
struct SSourceFormat
{
    EEncoding encoding = EEncoding::Utf8;
    bool byteOrderMark = false;
    enum class ELineEnd { Lf, CrLf, Cr } lineEnd = ELineEnd::Lf;
    /// Whether there are others too; `lineEnd` then is the most frequent one.
    bool mixedLineEnds = false;
    /// Whether all bytes were valid; a file that was not must not be written back blindly.
    bool valid = true;
};
std::wstring DecodeSource(std::string_view bytes, SSourceFormat& format);
/// The same for bytes whose encoding is known better.
std::wstring DecodeSourceAs(std::string_view bytes, EEncoding encoding, SSourceFormat& format);
/// The same into `buffer`, which only ever grows; answers the number of characters, behind which stands a
/// NUL.
std::size_t DecodeInto(std::wstring& buffer, std::string_view bytes, SSourceFormat& format);
/// Whether a byte order mark of UTF-8 stands in front, which PHP prints as any other text.
bool BeginsWithMark(std::string_view bytes);
/// Whether these are the bytes of no text at all: a NUL stands near their beginning.
bool LooksBinary(std::string_view bytes);
/// Whether there is nothing in them to check: they look binary, do not begin as PHP does but for a NUL, which
/// to it is a character like any other, and have no `<?php` near their beginning.
bool HoldsNoSource(std::string_view bytes);

} // namespace Kesh::SyntaxParser
