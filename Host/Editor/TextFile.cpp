#include "Editor/TextFile.h"

#include "Application/FilePath.h"

namespace Kesh::Editor {

std::string EncodeSource(std::wstring_view text, const SyntaxParser::SSourceFormat& format)
{
    using ELineEnd = SyntaxParser::SSourceFormat::ELineEnd;
    // The text holds no escaped bytes: decoding replaces what is not UTF-8.
    const std::string bytes = Host::PathToBytes(text);
    const char* lineEnd = format.lineEnd == ELineEnd::CrLf ? "\r\n"
                          : format.lineEnd == ELineEnd::Cr ? "\r"
                                                           : "\n";
    std::string file = format.byteOrderMark && !format.utf16 ? "\xEF\xBB\xBF" : "";
    file.reserve(file.size() + bytes.size());
    for (const char c : bytes) {
        if (c == '\n')
            file += lineEnd;
        else
            file += c;
    }
    return format.utf16 ? SyntaxParser::Utf16FromUtf8(file, *format.utf16) : file;
}

} // namespace Kesh::Editor
