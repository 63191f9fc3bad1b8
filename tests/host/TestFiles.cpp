#include "Application/FileIO.h"
#include "Application/FilePath.h"
#include "Base/Exception.h"
#include "Editor/TextFile.h"
#include "Limits.h"
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

TEST(FileIO, WritingReplacesTheTargetOfALinkAndKeepsItsMode)
{
    const CTempFolder folder;
    const std::wstring file = folder.Write(L"file", "old");
    const std::string link = Host::PathToBytes(folder.Path(L"link"));
    std::filesystem::create_symlink(Host::PathToBytes(file), link);
    ::chmod(Host::PathToBytes(file).c_str(), 0640);
    Host::WriteFileBytes(folder.Path(L"link"), "new\0bytes"s);
    EXPECT_EQ(Host::ReadFileBytes(file), "new\0bytes"s);
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    struct stat status = {};
    ASSERT_EQ(::stat(link.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0640u);
    EXPECT_THROW(Host::WriteFileBytes(folder.Path(L"no/such/folder"), "x"), Base::CWorkError);
}

TEST(FileIO, AFailedSaveLeavesTheFileAsItWasAndSaysWhy)
{
    const CTempFolder folder;
    struct SCase
    {
        const wchar_t* name;
        std::size_t size;
        const wchar_t* reason;
    };
    const SCase cases[] = {{L"a", 0, nullptr}, // needs no room
                           {L"a", 25, L"File too large"},
                           {L"a", 20000, L"File too large"},
                           {L"no/such/folder", 25, L"No such file or directory"},
                           {L"a/b", 25, L"Not a directory"},
                           {L"", 25, L"is a folder"}};
    for (const SCase& c : cases) {
        const std::wstring file = folder.Write(L"a", "old text of the file");
        std::wstring reason;
        try {
            const CFullDisk full;
            Host::WriteFileBytes(folder.Path(c.name), std::string(c.size, 'x'));
        } catch (const Base::CWorkError& fault) {
            reason = fault.GetMessage();
        }
        EXPECT_EQ(reason, c.reason ? c.reason : L"");
        EXPECT_EQ(Host::ReadFileBytes(file), c.reason ? "old text of the file" : "");
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(Host::PathToBytes(folder.Path())),
                                std::filesystem::directory_iterator()),
                  1);
    }
}

TEST(TextFile, TextIsWrittenInTheFilesOwnFormat)
{
    using ELineEnd = SyntaxParser::SSourceFormat::ELineEnd;
    struct SCase
    {
        bool mark;
        ELineEnd lineEnd;
        std::string expected;
    };
    const SCase cases[] = {{false, ELineEnd::Lf, "\xC3\xA9\n\n\0."s},
                           {true, ELineEnd::CrLf, "\xEF\xBB\xBF\xC3\xA9\r\n\r\n\0."s},
                           {false, ELineEnd::Cr, "\xC3\xA9\r\r\0."s}};
    for (const SCase& c : cases) {
        SyntaxParser::SSourceFormat format;
        format.byteOrderMark = c.mark;
        format.lineEnd = c.lineEnd;
        EXPECT_EQ(Editor::EncodeSource(std::wstring(L"\u00E9\n\n\0.", 5), format), c.expected);
    }
}

} // namespace
