#include "SyntaxParser/SourceText.h"

#include <cstdint>
#include <cstring>

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

/// Copies characters that stand for themselves, as many as there are in whole blocks; answers how many.
std::size_t WidenPlain(const unsigned char* begin, const unsigned char* end, wchar_t* out)
{
    constexpr std::ptrdiff_t Block = 16;
    constexpr std::uint64_t Ones = 0x0101010101010101;
    const unsigned char* p = begin;
    for (; end - p >= Block; p += Block, out += Block) {
        std::uint64_t halves[2];
        std::memcpy(halves, p, Block);
        // A high bit comes out for each byte that is not ASCII or is a '\r', and perhaps for its neighbour.
        const std::uint64_t special =
            ((halves[0] ^ Ones * '\r') - Ones) | ((halves[1] ^ Ones * '\r') - Ones) | halves[0] | halves[1];
        if (special & Ones * 0x80)
            break;
        for (std::ptrdiff_t i = 0; i < Block; ++i)
            out[i] = static_cast<wchar_t>(p[i]);
    }
    return static_cast<std::size_t>(p - begin);
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
    std::wstring text;
    text.resize(DecodeInto(text, bytes, format));
    return text;
}

std::size_t DecodeInto(std::wstring& buffer, std::string_view bytes, SSourceFormat& format)
{
    if (Utf16OrderOf(bytes)) { // seldom; a text of its own does no harm
        buffer = DecodeSource(bytes, format);
        return buffer.size();
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

    if (const auto most = static_cast<std::size_t>(end - p); buffer.size() < most)
        buffer.resize(most);
    wchar_t* out = buffer.data();
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
    *out = L'\0';
    return static_cast<std::size_t>(out - buffer.data());
}

} // namespace Kesh::SyntaxParser
