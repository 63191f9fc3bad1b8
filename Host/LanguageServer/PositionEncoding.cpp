#include "LanguageServer/PositionEncoding.h"

#include <algorithm>

namespace Kesh::LanguageServer {

namespace {

std::int64_t Width(wchar_t w, EPositionEncoding encoding)
{
    const auto c = static_cast<char32_t>(w);
    if (encoding == EPositionEncoding::Utf16)
        return c >= 0x10000 ? 2 : 1;
    return c < 0x80 ? 1 : c < 0x800 ? 2 : c < 0x10000 ? 3 : 4;
}

} // namespace

std::int64_t UnitsOf(std::wstring_view line, std::int64_t column, EPositionEncoding encoding)
{
    column = std::clamp<std::int64_t>(column, 0, static_cast<std::int64_t>(line.size()));
    if (encoding == EPositionEncoding::Utf32)
        return column;
    std::int64_t units = 0;
    for (const wchar_t c : line.substr(0, static_cast<std::size_t>(column)))
        units += Width(c, encoding);
    return units;
}

std::int64_t ColumnOf(std::wstring_view line, std::int64_t units, EPositionEncoding encoding)
{
    const auto length = static_cast<std::int64_t>(line.size());
    if (encoding == EPositionEncoding::Utf32)
        return std::clamp<std::int64_t>(units, 0, length);
    if (units < 0)
        return 0;
    std::int64_t column = 0;
    for (; column < length; ++column) {
        units -= Width(line[static_cast<std::size_t>(column)], encoding);
        if (units < 0)
            break;
    }
    return column;
}

} // namespace Kesh::LanguageServer
