#include "SyntaxParser/SingleByte.h"

#include <algorithm>
#include <array>

namespace Kesh::SyntaxParser {

namespace {

constexpr unsigned FirstSpecial = 0x80;
/// The characters of the bytes 80 to 9F, the only ones by which the two encodings differ; five have none of
/// their own and stay control characters.
constexpr std::array<wchar_t, 32> Windows1252{0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                              0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                              0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                              0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

bool IsSpecial(unsigned c)
{
    return c - FirstSpecial < Windows1252.size();
}

} // namespace

EEncoding GuessSingleByte(std::string_view bytes)
{
    bool special = false;
    for (const char byte : bytes) {
        const unsigned c = static_cast<unsigned char>(byte);
        if (!IsSpecial(c))
            continue;
        if (Windows1252[c - FirstSpecial] == static_cast<wchar_t>(c))
            return EEncoding::Latin1;
        special = true;
    }
    return special ? EEncoding::Windows1252 : EEncoding::Latin1;
}

std::string Utf8FromSingleByte(std::string_view bytes, EEncoding encoding)
{
    std::string utf8;
    utf8.reserve(bytes.size() + bytes.size() / 8);
    for (const char byte : bytes) {
        unsigned c = static_cast<unsigned char>(byte);
        if (encoding == EEncoding::Windows1252 && IsSpecial(c))
            c = static_cast<unsigned>(Windows1252[c - FirstSpecial]);
        if (c < 0x80) {
            utf8 += static_cast<char>(c);
            continue;
        }
        if (c < 0x800) {
            utf8 += static_cast<char>(0xC0 | c >> 6);
        } else {
            utf8 += static_cast<char>(0xE0 | c >> 12);
            utf8 += static_cast<char>(0x80 | (c >> 6 & 0x3F));
        }
        utf8 += static_cast<char>(0x80 | (c & 0x3F));
    }
    return utf8;
}

std::optional<char> ToSingleByte(wchar_t c, EEncoding encoding)
{
    const auto code = static_cast<unsigned>(c);
    if (code < FirstSpecial || (code < 0x100 && (encoding == EEncoding::Latin1 || !IsSpecial(code))))
        return static_cast<char>(code);
    if (encoding == EEncoding::Latin1)
        return {};
    const auto* const found = std::find(Windows1252.begin(), Windows1252.end(), c);
    if (found == Windows1252.end())
        return {};
    return static_cast<char>(FirstSpecial + static_cast<unsigned>(found - Windows1252.begin()));
}

} // namespace Kesh::SyntaxParser
