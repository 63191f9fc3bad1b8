#include "SyntaxParser/SourceText.h"

#include <cstdint>

namespace Kesh::SyntaxParser {

namespace {

constexpr wchar_t Replacement = 0xFFFD;

/// Decodes one sequence that does not begin with ASCII at `p`; advances `p` past it, or past one bad byte.
wchar_t DecodeSequence(const unsigned char*& p, const unsigned char* end)
{
    const unsigned lead = *p++;
    unsigned length = 0;
    std::uint32_t value = 0;
    std::uint32_t least = 0;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 1, value = lead & 0x1F, least = 0x80;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 2, value = lead & 0x0F, least = 0x800;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 3, value = lead & 0x07, least = 0x10000;
    } else {
        return Replacement;
    }
    const unsigned char* next = p;
    for (unsigned i = 0; i < length; ++i) {
        if (next == end || (*next & 0xC0) != 0x80)
            return Replacement;
        value = value << 6 | (*next++ & 0x3F);
    }
    const bool surrogate = value >= 0xD800 && value <= 0xDFFF;
    if (value < least || value > 0x10FFFF || surrogate)
        return Replacement;
    p = next;
    return static_cast<wchar_t>(value);
}

/// Copies a block of characters that stand for themselves; answers how many there were, 0 or a whole block.
std::size_t WidenPlain(const unsigned char* p, const unsigned char* end, wchar_t* out)
{
    constexpr std::size_t Block = 16;
    if (static_cast<std::size_t>(end - p) < Block)
        return 0;
    unsigned special = 0;
    for (std::size_t i = 0; i < Block; ++i)
        special |= static_cast<unsigned>(p[i] >= 0x80) | static_cast<unsigned>(p[i] == '\r');
    if (special)
        return 0;
    for (std::size_t i = 0; i < Block; ++i)
        out[i] = static_cast<wchar_t>(p[i]);
    return Block;
}

} // namespace

std::wstring DecodeSource(std::string_view bytes)
{
    SSourceFormat format;
    return DecodeSource(bytes, format);
}

bool LooksBinary(std::string_view bytes)
{
    constexpr std::size_t Looked = 8000;
    return !Utf16OrderOf(bytes) && bytes.substr(0, Looked).find('\0') != std::string_view::npos;
}

std::wstring DecodeSource(std::string_view bytes, SSourceFormat& format)
{
    if (const std::optional<EByteOrder> order = Utf16OrderOf(bytes)) {
        std::wstring text = DecodeSource(Utf8FromUtf16(bytes, *order), format);
        format.byteOrderMark = true;
        format.utf16 = order;
        return text;
    }
    using ELineEnd = SSourceFormat::ELineEnd;
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
    const unsigned char* end = p + bytes.size();
    format = SSourceFormat();
    if (bytes.substr(0, 3) == "\xEF\xBB\xBF") {
        format.byteOrderMark = true;
        p += 3;
    }

    if (const std::size_t at = bytes.find_first_of("\r\n"); at != std::string_view::npos) {
        const bool pair = bytes.substr(at, 2) == "\r\n";
        format.lineEnd = bytes[at] == '\n' ? ELineEnd::Lf : pair ? ELineEnd::CrLf : ELineEnd::Cr;
    }

    std::wstring text(static_cast<std::size_t>(end - p), L'\0');
    wchar_t* out = text.data();
    while (p < end) {
        if (const std::size_t plain = WidenPlain(p, end, out)) {
            p += plain;
            out += plain;
        } else if (*p >= 0x80) {
            const unsigned char* begin = p;
            *out = DecodeSequence(p, end);
            const bool written = end - begin >= 3 && begin[0] == 0xEF && begin[1] == 0xBF && begin[2] == 0xBD;
            if (*out == Replacement && !written)
                format.valid = false;
            ++out;
        } else if (*p == '\r') {
            p += p + 1 < end && p[1] == '\n' ? 2 : 1;
            *out++ = L'\n';
        } else {
            *out++ = static_cast<wchar_t>(*p++);
        }
    }
    text.resize(static_cast<std::size_t>(out - text.data()));
    return text;
}

} // namespace Kesh::SyntaxParser
