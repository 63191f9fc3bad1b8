#pragma once

#include "SyntaxParser/Utf16.h"

#include <optional>
#include <string>
#include <string_view>

namespace Kesh::SyntaxParser {

/// Decodes a file's bytes: UTF-16 when they begin with its byte order mark, else UTF-8 (a leading byte order
/// mark is dropped, each invalid byte becomes U+FFFD, NUL characters stay), with the line ends CR LF and CR
/// made "\n". Never fails.
std::wstring DecodeSource(std::string_view bytes);

/// How a file wrote its text, so that it can be written back alike.
struct SSourceFormat
{
    bool byteOrderMark = false;
    std::optional<EByteOrder> utf16; ///< unset: UTF-8
    enum class ELineEnd { Lf, CrLf, Cr } lineEnd = ELineEnd::Lf;
    /// Whether all bytes were valid UTF-8; a file that was not must not be written back blindly.
    bool valid = true;
};
std::wstring DecodeSource(std::string_view bytes, SSourceFormat& format);
/// The same into `buffer`, which only ever grows; answers the number of characters, behind which stands a
/// NUL.
std::size_t DecodeInto(std::wstring& buffer, std::string_view bytes, SSourceFormat& format);
/// Whether these are the bytes of no text at all: a NUL stands near their beginning.
bool LooksBinary(std::string_view bytes);

} // namespace Kesh::SyntaxParser
