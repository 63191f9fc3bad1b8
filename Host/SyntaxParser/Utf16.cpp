#include "SyntaxParser/Utf16.h"

#include <QString>
#include <cstdint>

namespace Kesh::SyntaxParser {

namespace {

std::uint32_t UnitAt(std::string_view bytes, std::size_t at, EByteOrder order)
{
    const auto first = static_cast<unsigned char>(bytes[at]);
    const auto second = static_cast<unsigned char>(bytes[at + 1]);
    return order == EByteOrder::Little ? first | second << 8 : first << 8 | second;
}

void Append(std::string& utf8, std::uint32_t c)
{
    const auto tail = [&](int shift) { utf8 += static_cast<char>(0x80 | (c >> shift & 0x3F)); };
    if (c < 0x80) {
        utf8 += static_cast<char>(c);
    } else if (c < 0x800) {
        utf8 += static_cast<char>(0xC0 | c >> 6);
        tail(0);
    } else if (c < 0x10000) {
        utf8 += static_cast<char>(0xE0 | c >> 12);
        tail(6);
        tail(0);
    } else {
        utf8 += static_cast<char>(0xF0 | c >> 18);
        tail(12);
        tail(6);
        tail(0);
    }
}

} // namespace

std::optional<EByteOrder> Utf16OrderOf(std::string_view bytes)
{
    if (bytes.starts_with("\xFF\xFE"))
        return EByteOrder::Little;
    if (bytes.starts_with("\xFE\xFF"))
        return EByteOrder::Big;
    return {};
}

std::string Utf8FromUtf16(std::string_view bytes, EByteOrder order)
{
    constexpr char Bad = '\xFF';
    std::string utf8;
    std::size_t at = 2;
    for (; at + 1 < bytes.size(); at += 2) {
        const std::uint32_t unit = UnitAt(bytes, at, order);
        if (unit < 0xD800 || unit > 0xDFFF) {
            Append(utf8, unit);
            continue;
        }
        const std::uint32_t next = at + 3 < bytes.size() ? UnitAt(bytes, at + 2, order) : 0;
        if (unit > 0xDBFF || next < 0xDC00 || next > 0xDFFF) {
            utf8 += Bad;
            continue;
        }
        Append(utf8, 0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00));
        at += 2;
    }
    if (at < bytes.size())
        utf8 += Bad;
    return utf8;
}

std::string Utf16FromUtf8(std::string_view utf8, EByteOrder order)
{
    const QString units = QString::fromUtf8(utf8.data(), static_cast<int>(utf8.size()));
    std::string bytes = order == EByteOrder::Little ? "\xFF\xFE" : "\xFE\xFF";
    for (const QChar unit : units) {
        const char low = static_cast<char>(unit.unicode() & 0xFF);
        const char high = static_cast<char>(unit.unicode() >> 8);
        bytes += order == EByteOrder::Little ? low : high;
        bytes += order == EByteOrder::Little ? high : low;
    }
    return bytes;
}

} // namespace Kesh::SyntaxParser
