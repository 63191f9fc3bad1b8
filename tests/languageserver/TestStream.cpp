#include "Base/EditDistance.h"
#include "Configuration/Edit.h"
#include "LanguageServer/Framing.h"
#include "LanguageServer/PositionEncoding.h"
#include "LanguageServer/ServerText.h"
#include "LanguageServer/Uri.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>

using namespace Kesh;
using namespace Kesh::LanguageServer;

namespace {

/// Bodies, and "!" for each fault.
std::vector<std::string> Read(const std::string& stream, std::size_t step)
{
    CMessageReader reader(100);
    std::vector<std::string> read;
    for (std::size_t at = 0; at < stream.size(); at += step) {
        reader.Feed(std::string_view(stream).substr(at, step));
        while (const auto message = reader.Next())
            read.push_back(message->fault.empty() ? message->body : "!");
    }
    return read;
}

} // namespace

TEST(Framing, MessagesAreFoundHoweverTheyAreCut)
{
    const std::string good = Framed("{}") + Framed("");
    struct SCase
    {
        std::string stream;
        std::vector<std::string> read;
    };
    const SCase cases[] = {
        {good, {"{}", ""}},
        {"Content-Type: x\r\ncontent-length:  2\r\n\r\n{}" + good, {"{}", "{}", ""}},
        {"Content-Length: 2", {}},
        {"Content-Length: 3\r\n\r\n{}", {}},
        {"Content-Length: -2\r\n\r\n" + good, {"!", "{}", ""}},
        {"Content-Length: 2x\r\n\r\n" + good, {"!", "{}", ""}},
        {"Content-Length: 99999999999999999999999\r\n\r\n" + good, {"!", "{}", ""}},
        {"X: y\r\n\r\n" + good, {"!", "{}", ""}},
        {"\r\n\r\n" + good, {"!", "{}", ""}},
        {Framed(std::string(101, 'x')) + good, {"!", "{}", ""}},
        {Framed(std::string(9000, 'x')) + good, {"!", "{}", ""}},
        {Framed(std::string(100, 'x')) + good, {std::string(100, 'x'), "{}", ""}},
        {std::string(5000, 'x').append("\r\n\r\n" + good), {"!", "!", "{}", ""}},
    };
    for (const SCase& test : cases) {
        for (const std::size_t step : {1, 2, 3, 7, 64, 100000}) {
            std::vector<std::string> read = Read(test.stream, step);
            // How often a long run of nonsense is noticed depends on the pieces.
            if (test.stream.starts_with("xxxx"))
                read.erase(std::unique(read.begin(), read.end()), read.end());
            std::vector<std::string> expected = test.read;
            if (test.stream.starts_with("xxxx"))
                expected.erase(expected.begin());
            EXPECT_EQ(read, expected) << test.stream.substr(0, 60) << " in steps of " << step;
        }
    }
}

TEST(Positions, ColumnsGoThereAndBack)
{
    const std::wstring line = L"a\u00E9\u20AC\U0001F600b";
    struct SCase
    {
        EPositionEncoding encoding;
        std::vector<std::int64_t> units; ///< of each character's start, and of the end
    };
    const SCase cases[] = {{EPositionEncoding::Utf8, {0, 1, 3, 6, 10, 11}},
                           {EPositionEncoding::Utf16, {0, 1, 2, 3, 5, 6}},
                           {EPositionEncoding::Utf32, {0, 1, 2, 3, 4, 5}}};
    for (const SCase& test : cases) {
        for (std::size_t column = 0; column < test.units.size(); ++column) {
            EXPECT_EQ(UnitsOf(line, static_cast<std::int64_t>(column), test.encoding), test.units[column]);
            EXPECT_EQ(ColumnOf(line, test.units[column], test.encoding), static_cast<std::int64_t>(column));
        }
        EXPECT_EQ(ColumnOf(line, 99, test.encoding), 5);
        EXPECT_EQ(ColumnOf(line, -1, test.encoding), 0);
    }
    EXPECT_EQ(ColumnOf(line, 4, EPositionEncoding::Utf16), 3) << "inside the emoji";
}

TEST(ServerText, WhatIsSharedStaysAsItWas)
{
    CServerText text;
    text.ReplaceAll(L"one\ntwo");
    const auto before = text.Share();
    text.Replace(4, 7, L"2");
    const auto between = text.Share();
    text.ReplaceAll(L"");
    EXPECT_EQ(*before, L"one\ntwo");
    EXPECT_EQ(*between, L"one\n2");
    EXPECT_EQ(text.Text(), L"");
}

TEST(ServerText, LinesStayRightUnderRandomEdits)
{
    std::mt19937 random(7);
    CServerText text;
    std::wstring model;
    const std::wstring pieces[] = {L"", L"a", L"\n", L"b\nc", L"\n\n", L"\nxyz\n"};
    for (int i = 0; i < 2000; ++i) {
        std::size_t from = random() % (model.size() + 1);
        std::size_t to = random() % 3 ? from : from + random() % (model.size() - from + 1);
        const std::wstring& piece = pieces[random() % std::size(pieces)];
        text.Replace(from, to, piece);
        model.replace(from, to - from, piece);
        ASSERT_EQ(text.Text(), model);
        std::size_t at = 0;
        for (std::size_t line = 0; line < text.LineCount(); ++line) {
            const auto number = static_cast<std::int64_t>(line);
            ASSERT_EQ(text.Offset(number, 0), at);
            at += text.Line(number).size() + 1;
        }
        ASSERT_EQ(at, model.size() + 1);
    }
}

TEST(Uris, PathsGoThereAndBack)
{
    for (const wchar_t* path : {L"/a/b.php", L"/a b/%41#?.php", L"/\u00E9/\U0001F600:;.php", L"/\xDCFF.php"})
        EXPECT_EQ(PathOfUri(UriOfPath(path)), path);
    EXPECT_EQ(PathOfUri("file:///C%3A/a.php"), L"/C:/a.php");
    EXPECT_EQ(PathOfUri("file://host/a/../b.php?q#f"), L"/b.php");
    EXPECT_NE(PathOfUri("untitled:1"), PathOfUri("untitled:2"));
    EXPECT_EQ(PathOfUri("file:"), PathOfUri("file:"));
}

TEST(EditDistance, CountsSlipsUpToALimit)
{
    struct SCase
    {
        const wchar_t* a;
        const wchar_t* b;
        std::size_t distance;
    };
    const SCase cases[] = {{L"", L"", 0},          {L"strng", L"strong", 1}, {L"widht", L"width", 1},
                           {L"colr", L"color", 1}, {L"abcd", L"", 3},        {L"kitten", L"sitting", 3},
                           {L"ab", L"ba", 1},      {L"abc", L"xyz", 3}};
    for (const SCase& test : cases) {
        EXPECT_EQ(Base::EditDistance(test.a, test.b, 2), std::min<std::size_t>(3, test.distance)) << test.a;
        EXPECT_EQ(Base::EditDistance(test.b, test.a, 2), std::min<std::size_t>(3, test.distance)) << test.b;
    }
}

TEST(SettingsEdits, LeaveEverythingElseAlone)
{
    struct SCase
    {
        const char* before;
        const char* named; ///< with the tag "x"
        const char* off;   ///< with code 102 off
    };
    const SCase cases[] = {
        {"", "{\n  \"ownNames\": { \"tags\": [\"x\"] }\n}\n", "{\n  \"codes\": { \"102\": \"off\" }\n}\n"},
        {"{ \"exclude\": [] } // end", "{\n  \"ownNames\": { \"tags\": [\"x\"] }, \"exclude\": [] } // end",
         "{\n  \"codes\": { \"102\": \"off\" }, \"exclude\": [] } // end"},
        {"{\"ownNames\": {\"tags\": [\"y\"]}, \"codes\": {// \"102\": \"error\"\n\"102\": \"error\"}}",
         "{\"ownNames\": {\"tags\": [\"x\", \"y\"]}, \"codes\": {// \"102\": \"error\"\n\"102\": \"error\"}}",
         "{\"ownNames\": {\"tags\": [\"y\"]}, \"codes\": {// \"102\": \"error\"\n\"102\": \"off\"}}"},
        {"{\"ownNames\": {}, \"codes\": {\"901\": \"off\"}}",
         "{\"ownNames\": {\n    \"tags\": [\"x\"]}, \"codes\": {\"901\": \"off\"}}",
         "{\"ownNames\": {}, \"codes\": {\n    \"102\": \"off\",\"901\": \"off\"}}"},
    };
    for (const SCase& test : cases) {
        EXPECT_EQ(Configuration::WithOwnName(test.before, "tags", L"x"), test.named);
        EXPECT_EQ(Configuration::WithCodeOff(test.before, 102), test.off);
    }
}
