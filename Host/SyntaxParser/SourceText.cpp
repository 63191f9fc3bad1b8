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

} // namespace

std::wstring DecodeSource(std::string_view bytes)
{
    SSourceFormat format;
    return DecodeSource(bytes, format);
}

std::wstring DecodeSource(std::string_view bytes, SSourceFormat& format)
{
    using ELineEnd = SSourceFormat::ELineEnd;
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
    const unsigned char* end = p + bytes.size();
    format = SSourceFormat();
    if (bytes.substr(0, 3) == "\xEF\xBB\xBF") {
        format.byteOrderMark = true;
        p += 3;
    }

    std::wstring text(static_cast<std::size_t>(end - p), L'\0');
    wchar_t* out = text.data();
    bool lineEndKnown = false;
    const auto noteLineEnd = [&](ELineEnd lineEnd) {
        if (!lineEndKnown)
            format.lineEnd = lineEnd;
        lineEndKnown = true;
    };
    while (p < end) {
        const unsigned char c = *p;
        if (c >= 0x80) {
            const unsigned char* begin = p;
            *out = DecodeSequence(p, end);
            if (*out == Replacement &&
                !(end - begin >= 3 && begin[0] == 0xEF && begin[1] == 0xBF && begin[2] == 0xBD))
                format.valid = false;
            ++out;
        } else if (c == '\r') {
            const bool pair = p + 1 < end && p[1] == '\n';
            noteLineEnd(pair ? ELineEnd::CrLf : ELineEnd::Cr);
            p += pair ? 2 : 1;
            *out++ = L'\n';
        } else {
            if (c == '\n')
                noteLineEnd(ELineEnd::Lf);
            *out++ = static_cast<wchar_t>(c);
            ++p;
        }
    }
    text.resize(static_cast<std::size_t>(out - text.data()));
    return text;
}

} // namespace Kesh::SyntaxParser
