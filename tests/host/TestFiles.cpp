#include "Base/Exception.h"
#include "Editor/TextFile.h"
#include "Files/FileIO.h"
#include "Files/FilePath.h"
#include "TempFolder.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Kesh;
using namespace std::string_literals;

namespace {

TEST(FilePath, EveryNameSurvivesTheWayThereAndBack)
{
    struct SCase
    {
        std::string bytes;
        std::wstring path;
    };
    const SCase cases[] = {
        {"", L""},
        {"a/b.php", L"a/b.php"},
        {"gr\xC3\xBC\xC3\x9F.php", L"gr\u00FC\u00DF.php"},
        {"eight ch\xC3\xBCrs, then more of them", L"eight ch\u00FCrs, then more of them"},
        {"\xF0\x9F\x98\x80", L"\U0001F600"},
        {"bad\xFF\xC3.php", L"bad\xDCFF\xDCC3.php"},
        {"\xC0\xAF", L"\xDCC0\xDCAF"},                     // overlong
        {"\xED\xB3\xBF", L"\xDCED\xDCB3\xDCBF"},           // a surrogate written as UTF-8
        {"\xF4\x90\x80\x80", L"\xDCF4\xDC90\xDC80\xDC80"}, // beyond the last character
    };
    for (const SCase& c : cases) {
        EXPECT_EQ(Host::PathFromBytes(c.bytes), c.path);
        EXPECT_EQ(Host::PathToBytes(c.path), c.bytes);
        EXPECT_EQ(Host::PathFromQt(Host::PathToQt(c.path)), c.path);
    }
}

TEST(FilePath, AbsolutePathsAreLexicallyNormal)
{
    const std::wstring here = Host::PathFromBytes(std::filesystem::current_path().string());
    const std::pair<std::wstring, std::wstring> cases[] = {
        {L"/a/./b//c/", L"/a/b/c"}, {L"/a/../b", L"/b"}, {L"/", L"/"}, {L"x", here + L"/x"}, {L".", here}};
    for (const auto& [path, expected] : cases)
        EXPECT_EQ(Host::AbsolutePath(path), expected);
}

TEST(FileIO, WhatIsNoReadableFileIsRefusedWithAReason)
{
    const CTempFolder folder;
    ASSERT_EQ(::mkfifo(Host::PathToBytes(folder.Path(L"pipe")).c_str(), 0600), 0);
    const std::wstring huge = folder.Write(L"huge", "");
    ASSERT_EQ(::truncate(Host::PathToBytes(huge).c_str(), static_cast<off_t>(Host::MaxFileBytes) + 1), 0);
    const std::pair<std::wstring, std::wstring> cases[] = {
        {folder.Path(L"missing"), L"No such file or directory"},
        {folder.Path(), L"is a folder"},
        {folder.Path(L"pipe"), L"not a regular file"}, // and opening it does not hang
        {L"/dev/zero", L"not a regular file"},
        {huge, L"larger than 64 MiB"}};
    for (const auto& [path, reason] : cases) {
        try {
            Host::ReadFileBytes(path);
            ADD_FAILURE() << "read " << Host::PathToBytes(path);
        } catch (const Base::CWorkError& fault) {
            EXPECT_EQ(fault.GetMessage(), reason);
        }
    }
}

TEST(TextFile, EveryFormatIsFoundAndWrittenBackAlike)
{
    using SyntaxParser::EEncoding;
    using ELineEnd = SyntaxParser::SSourceFormat::ELineEnd;
    struct SCase
    {
        std::string bytes;
        std::wstring text;
        EEncoding encoding = EEncoding::Utf8;
        ELineEnd lineEnd = ELineEnd::Lf;
        bool mixed = false;
        bool valid = true;
    };
    const SCase cases[] = {
        {"", L""},
        {"\xC3\xA9\n\n\0."s, std::wstring(L"\u00E9\n\n\0.", 5)},
        {"\xEF\xBB\xBF\xC3\xA9\r\n\r\n"s, L"\u00E9\n\n", EEncoding::Utf8, ELineEnd::CrLf},
        {"\xC3\xA9\r\r.", L"\u00E9\n\n.", EEncoding::Utf8, ELineEnd::Cr},
        {"a\nb\r\nc\r\nd", L"a\nb\nc\nd", EEncoding::Utf8, ELineEnd::CrLf, true},
        {"a\r\nb\nc\nd\r", L"a\nb\nc\nd\n", EEncoding::Utf8, ELineEnd::Lf, true},
        {"\xFF\xFE\xE9\0\r\0\n\0"s, L"\u00E9\n", EEncoding::Utf16Little, ELineEnd::CrLf},
        {"\xFE\xFF\xD8\x3D\xDE\0\0\n"s, L"\U0001F600\n", EEncoding::Utf16Big},
        {"caf\xE9 \xFF\r\n", L"caf\u00E9 \u00FF\n", EEncoding::Latin1, ELineEnd::CrLf},
        {"\x80\x9F\xE9", L"\u20AC\u0178\u00E9", EEncoding::Windows1252},
        {"\x80\x81\xE9", L"\u0080\u0081\u00E9", EEncoding::Latin1}, // the other has no 81
        {"\xC3\xA9\xC3\xA9\xE9", L"\u00E9\u00E9\uFFFD", EEncoding::Utf8, ELineEnd::Lf, false, false},
        {"\xEF\xBB\xBF\xE9", L"\uFFFD", EEncoding::Utf8, ELineEnd::Lf, false, false},
        {"\xC3\xA9\xE9\xE8", L"\u00C3\u00A9\u00E9\u00E8", EEncoding::Latin1},
    };
    for (const SCase& c : cases) {
        SyntaxParser::SSourceFormat format;
        EXPECT_EQ(SyntaxParser::DecodeSource(c.bytes, format), c.text);
        EXPECT_EQ(format.encoding, c.encoding) << c.bytes;
        EXPECT_EQ(format.lineEnd, c.lineEnd) << c.bytes;
        EXPECT_EQ(format.mixedLineEnds, c.mixed) << c.bytes;
        EXPECT_EQ(format.valid, c.valid) << c.bytes;
        if (!c.mixed && c.valid) {
            EXPECT_EQ(Editor::EncodeSource(c.text, format), c.bytes);
        }
    }
}

TEST(TextFile, EveryByteOfASingleByteEncodingComesBack)
{
    std::string bytes;
    for (int c = 0; c < 256; ++c)
        if (c != '\r')
            bytes += static_cast<char>(c);
    for (const auto encoding : {SyntaxParser::EEncoding::Latin1, SyntaxParser::EEncoding::Windows1252}) {
        SyntaxParser::SSourceFormat format;
        const std::wstring text = SyntaxParser::DecodeSourceAs(bytes, encoding, format);
        EXPECT_EQ(text.size(), bytes.size());
        EXPECT_EQ(Editor::EncodeSource(text, format), bytes);
        EXPECT_EQ(Editor::FindUnwritable(text + L"\n\nab\u0416", encoding),
                  (SyntaxParser::CIterator{2, 2 + 1}));
        EXPECT_THROW(Editor::EncodeSource(text + L"\u0416", format), Base::CWorkError);
    }
    SyntaxParser::SSourceFormat format;
    const std::string unmarked("a\0b\0", 4);
    EXPECT_EQ(SyntaxParser::DecodeSourceAs(unmarked, SyntaxParser::EEncoding::Utf16Little, format), L"ab");
    EXPECT_EQ(Editor::EncodeSource(L"ab", format), unmarked);
}

} // namespace
