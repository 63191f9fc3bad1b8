#include "Editor/TextFile.h"

#include "Base/Exception.h"
#include "Files/FilePath.h"

#include <algorithm>

namespace Kesh::Editor {

using SyntaxParser::EByteOrder;
using SyntaxParser::EEncoding;

namespace {

std::string WithLineEnds(std::string bytes, SyntaxParser::SSourceFormat::ELineEnd kind)
{
    using ELineEnd = SyntaxParser::SSourceFormat::ELineEnd;
    if (kind == ELineEnd::Cr)
        std::replace(bytes.begin(), bytes.end(), '\n', '\r');
    if (kind != ELineEnd::CrLf)
        return bytes;
    std::string file;
    file.reserve(bytes.size() + static_cast<std::size_t>(std::count(bytes.begin(), bytes.end(), '\n')));
    for (const char c : bytes) {
        if (c == '\n')
            file += '\r';
        file += c;
    }
    return file;
}

std::string InSingleBytes(std::wstring_view text, EEncoding encoding)
{
    std::string bytes;
    bytes.reserve(text.size());
    for (const wchar_t c : text) {
        const std::optional<char> byte = SyntaxParser::ToSingleByte(c, encoding);
        if (!byte)
            throw Base::CWorkError(L"the encoding has no character '" + std::wstring(1, c) + L"'", __LINE__,
                                   "Host/Editor/TextFile");
        bytes += *byte;
    }
    return bytes;
}

} // namespace

std::string EncodeSource(std::wstring_view text, const SyntaxParser::SSourceFormat& format)
{
    if (SyntaxParser::IsSingleByte(format.encoding))
        return WithLineEnds(InSingleBytes(text, format.encoding), format.lineEnd);
    // The text holds no escaped bytes: decoding replaces what is not UTF-8.
    std::string utf8 = WithLineEnds(Host::PathToBytes(text), format.lineEnd);
    if (format.encoding == EEncoding::Utf8)
        return format.byteOrderMark ? "\xEF\xBB\xBF" + utf8 : utf8;
    constexpr std::size_t MarkSize = 2;
    const bool little = format.encoding == EEncoding::Utf16Little;
    std::string file = SyntaxParser::Utf16FromUtf8(utf8, little ? EByteOrder::Little : EByteOrder::Big);
    return format.byteOrderMark ? file : file.substr(MarkSize);
}

std::optional<SyntaxParser::CIterator> FindUnwritable(std::wstring_view text, EEncoding encoding)
{
    if (!SyntaxParser::IsSingleByte(encoding))
        return {};
    SyntaxParser::CIterator at{0, 0};
    for (const wchar_t c : text) {
        if (!SyntaxParser::ToSingleByte(c, encoding))
            return at;
        if (c == L'\n')
            at = {0, at.y + 1};
        else
            ++at.x;
    }
    return {};
}

} // namespace Kesh::Editor
