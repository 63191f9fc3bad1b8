#pragma once

#include <cstdint>
#include <string_view>

namespace Kesh::LanguageServer {

/// In what a client counts the columns of a line. The host counts characters.
enum class EPositionEncoding { Utf8, Utf16, Utf32 };

/// The client's column for a character of a line; both from 0.
std::int64_t UnitsOf(std::wstring_view line, std::int64_t column, EPositionEncoding encoding);
/// The character at a client's column; the line's end when the column lies behind it, the character's start
/// when it lies inside one.
std::int64_t ColumnOf(std::wstring_view line, std::int64_t units, EPositionEncoding encoding);

} // namespace Kesh::LanguageServer
