#pragma once

#include <cstdint>

namespace Kesh::SyntaxParser {

constexpr wchar_t ReplacementCharacter = 0xFFFD;

/// Decodes one sequence that does not begin with ASCII at `p`; advances `p` past it, or past one bad byte.
inline wchar_t DecodeUtf8Sequence(const unsigned char*& p, const unsigned char* end)
{
    const unsigned lead = *p++;
    if (lead >= 0xC2 && lead <= 0xDF && p < end && (*p & 0xC0) == 0x80) // as most are
        return static_cast<wchar_t>((lead & 0x1F) << 6 | (*p++ & 0x3F));
    unsigned length = 0;
    std::uint32_t value = 0;
    std::uint32_t least = 0;
    if (lead >= 0xE0 && lead <= 0xEF) {
        length = 2, value = lead & 0x0F, least = 0x800;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 3, value = lead & 0x07, least = 0x10000;
    } else {
        return ReplacementCharacter;
    }
    const unsigned char* next = p;
    for (unsigned i = 0; i < length; ++i) {
        if (next == end || (*next & 0xC0) != 0x80)
            return ReplacementCharacter;
        value = value << 6 | (*next++ & 0x3F);
    }
    const bool surrogate = value >= 0xD800 && value <= 0xDFFF;
    if (value < least || value > 0x10FFFF || surrogate)
        return ReplacementCharacter;
    p = next;
    return static_cast<wchar_t>(value);
}

} // namespace Kesh::SyntaxParser
