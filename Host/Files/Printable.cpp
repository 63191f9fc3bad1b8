#include "Files/Printable.h"

#include "Files/FilePath.h"

#include <algorithm>
#include <cwchar>
#include <iterator>

namespace Kesh::Host {

namespace {

bool IsControl(char32_t c)
{
    return c < 0x20 || c == 0x7F || (c >= 0x80 && c < 0xA0);
}

/// What stands for a byte that is not UTF-8.
bool IsBadByte(char32_t c)
{
    return c >= 0xDC80 && c <= 0xDCFF;
}

/// They would turn round what stands beside them.
bool TurnsText(char32_t c)
{
    return (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
}

bool IsPlain(wchar_t w)
{
    const auto c = static_cast<char32_t>(w);
    return !IsControl(c) && !IsBadByte(c) && !TurnsText(c);
}

} // namespace

std::string Printable(std::wstring_view text)
{
    if (std::all_of(text.begin(), text.end(), &IsPlain))
        return Host::PathToBytes(text);
    std::wstring shown;
    for (const wchar_t w : text) {
        const auto c = static_cast<char32_t>(w);
        if (c == U'\n') {
            shown += L"\\n";
        } else if (c == U'\r') {
            shown += L"\\r";
        } else if (c == U'\t') {
            shown += L"\\t";
        } else if (IsControl(c) || IsBadByte(c)) {
            wchar_t escape[8];
            std::swprintf(escape, std::size(escape), L"\\x%02X", static_cast<unsigned>(c & 0xFF));
            shown += escape;
        } else if (TurnsText(c)) {
            wchar_t escape[12];
            std::swprintf(escape, std::size(escape), L"\\u{%X}", static_cast<unsigned>(c));
            shown += escape;
        } else {
            shown += w;
        }
    }
    return Host::PathToBytes(shown);
}

std::string PrintableBytes(std::string_view text)
{
    return Printable(PathFromBytes(text));
}

} // namespace Kesh::Host
