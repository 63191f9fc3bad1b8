#include "SyntaxParser/SourceText.h"

#include "SyntaxParser/Utf8Sequence.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace Kesh::SyntaxParser {

namespace {

/// How many bytes tell what a file is.
constexpr std::size_t Looked = 8000;

constexpr std::ptrdiff_t Block = 16;

/// Copies characters that stand for themselves, as many as there are in whole blocks; answers how many.
std::size_t WidenPlain(const unsigned char* begin, const unsigned char* end, wchar_t* out)
{
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
        // By copies, since the compiler cannot know that the bytes are not in the text: it goes by vectors
        // then.
        unsigned char narrow[Block];
        wchar_t wide[Block];
        std::memcpy(narrow, p, sizeof narrow);
        for (std::ptrdiff_t i = 0; i < Block; ++i)
            wide[i] = static_cast<wchar_t>(narrow[i]);
        std::memcpy(out, wide, sizeof wide);
    }
    return static_cast<std::size_t>(p - begin);
}

/// Counts what line ends there are; a text without a '\r' needs no look.
void NoteLineEnds(std::string_view bytes, std::size_t pairs, std::size_t returns, SSourceFormat& format)
{
    using ELineEnd = SSourceFormat::ELineEnd;
    if (pairs + returns == 0)
        return;
    const auto feeds = static_cast<std::size_t>(std::count(bytes.begin(), bytes.end(), '\n')) - pairs;
    format.lineEnd = pairs >= returns && pairs >= feeds ? ELineEnd::CrLf
                     : returns > feeds                  ? ELineEnd::Cr
                                                        : ELineEnd::Lf;
    format.mixedLineEnds = (pairs > 0) + (returns > 0) + (feeds > 0) > 1;
}

/// What kinds of bytes beyond ASCII a text has.
struct SUtf8Counts
{
    std::size_t valid = 0; ///< characters
    std::size_t invalid = 0;
};

std::size_t DecodeUtf8Into(std::wstring& buffer, std::string_view bytes, SSourceFormat& format,
                           SUtf8Counts& counts)
{
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
    const unsigned char* end = p + bytes.size();
    format = SSourceFormat();
    if (BeginsWithMark(bytes)) {
        format.byteOrderMark = true;
        p += 3;
    }
    std::size_t pairs = 0, returns = 0;
    if (const auto most = static_cast<std::size_t>(end - p); buffer.size() < most)
        buffer.resize(most);
    wchar_t* out = buffer.data();
    while (p < end) {
        const std::size_t plain = WidenPlain(p, end, out);
        p += plain;
        out += plain;
        // Something in the next block is not plain; where such characters are, there are often more.
        for (const unsigned char* const next = p + std::min(end - p, Block); p < next;) {
            if (*p < 0x80 && *p != '\r') {
                *out++ = static_cast<wchar_t>(*p++);
            } else if (*p >= 0x80) {
                const unsigned char* begin = p;
                *out = DecodeUtf8Sequence(p, end);
                const bool written =
                    end - begin >= 3 && begin[0] == 0xEF && begin[1] == 0xBF && begin[2] == 0xBD;
                ++(*out == ReplacementCharacter && !written ? counts.invalid : counts.valid);
                ++out;
            } else {
                const bool pair = p + 1 < end && p[1] == '\n';
                ++(pair ? pairs : returns);
                p += pair ? 2 : 1;
                *out++ = L'\n';
            }
        }
    }
    *out = L'\0';
    format.valid = counts.invalid == 0;
    NoteLineEnds(bytes, pairs, returns, format);
    return static_cast<std::size_t>(out - buffer.data());
}

std::wstring DecodeUtf8(std::string_view bytes, SSourceFormat& format)
{
    std::wstring text;
    SUtf8Counts counts;
    text.resize(DecodeUtf8Into(text, bytes, format, counts));
    return text;
}

std::wstring DecodeUtf16(std::string_view bytes, EByteOrder order, SSourceFormat& format)
{
    const bool marked = Utf16OrderOf(bytes) == order;
    std::wstring text = DecodeUtf8(
        marked ? Utf8FromUtf16(bytes, order) : Utf8FromUtf16("  " + std::string(bytes), order), format);
    format.byteOrderMark = marked;
    format.encoding = order == EByteOrder::Little ? EEncoding::Utf16Little : EEncoding::Utf16Big;
    return text;
}

} // namespace

std::wstring DecodeSource(std::string_view bytes)
{
    SSourceFormat format;
    return DecodeSource(bytes, format);
}

bool LooksBinary(std::string_view bytes)
{
    return !Utf16OrderOf(bytes) && bytes.substr(0, Looked).find('\0') != std::string_view::npos;
}

bool BeginsWithMark(std::string_view bytes)
{
    return bytes.starts_with("\xEF\xBB\xBF");
}

bool HoldsNoSource(std::string_view bytes)
{
    if (!LooksBinary(bytes))
        return false;
    bytes = bytes.substr(0, Looked);
    const std::size_t first = bytes.find_first_not_of('\0', BeginsWithMark(bytes) ? 3 : 0);
    constexpr std::string_view tag = "<?php";
    return first == std::string_view::npos ||
           (!bytes.substr(first).starts_with("<?") &&
            std::search(bytes.begin(), bytes.end(), tag.begin(), tag.end(), [](char a, char b) {
                return a == b || (a >= 'A' && a <= 'Z' && (a | 0x20) == b);
            }) == bytes.end());
}

std::wstring DecodeSource(std::string_view bytes, SSourceFormat& format)
{
    std::wstring text;
    text.resize(DecodeInto(text, bytes, format));
    return text;
}

std::wstring DecodeSourceAs(std::string_view bytes, EEncoding encoding, SSourceFormat& format)
{
    std::wstring text;
    switch (encoding) {
    case EEncoding::Utf16Little: return DecodeUtf16(bytes, EByteOrder::Little, format);
    case EEncoding::Utf16Big: return DecodeUtf16(bytes, EByteOrder::Big, format);
    case EEncoding::Latin1:
    case EEncoding::Windows1252:
        text = DecodeUtf8(Utf8FromSingleByte(bytes, encoding), format);
        format.encoding = encoding;
        return text;
    default: return DecodeUtf8(bytes, format);
    }
}

std::size_t DecodeInto(std::wstring& buffer, std::string_view bytes, SSourceFormat& format)
{
    // Seldom; a text of its own does no harm.
    if (const std::optional<EByteOrder> order = Utf16OrderOf(bytes)) {
        buffer = DecodeUtf16(bytes, *order, format);
        return buffer.size();
    }
    SUtf8Counts counts;
    const std::size_t size = DecodeUtf8Into(buffer, bytes, format, counts);
    if (counts.invalid <= counts.valid || format.byteOrderMark)
        return size;
    buffer = DecodeSourceAs(bytes, GuessSingleByte(bytes), format);
    return buffer.size();
}

} // namespace Kesh::SyntaxParser
