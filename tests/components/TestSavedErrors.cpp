#include "Components/CASavedErrorsText.h"
#include "XML/XmlXPathParser.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <malloc.h>

namespace Kesh::CodeAnalyzer {

namespace {

SCAError Error(std::int64_t x, std::int64_t y, std::int64_t endX, std::int64_t endY, int code, int type)
{
    return {{{x, y}, {endX, endY}}, code, type};
}

/// Overwrites memory when it is freed, so that whoever reads it still finds something else.
struct CDirtyMemory
{
    CDirtyMemory() { mallopt(M_PERTURB, 0xA5); }
    ~CDirtyMemory() { mallopt(M_PERTURB, 0); }
};

TEST(SavedErrors, WritesTheFormatToTheByte)
{
    EXPECT_EQ(WriteSavedErrors({}), L"<errors version=\"5.3\">\n</errors>\n");
    EXPECT_EQ(WriteSavedErrors({{L"/p/\xE4 b.php",
                                 {Error(10, 3, 11, 3, 102, 1), Error(-1, 4294967297, 2147483648, -5, 0, 3)}},
                                {L"/p/c.php", {Error(0, 0, 0, 0, 101, 1)}}}),
              L"<errors version=\"5.3\">\n"
              L"<errfile name=\"/p/\xE4 b.php\">\n"
              L"\t<error val=\"10;3;11;3;102;1;\"/>\n"
              L"\t<error val=\"-1;1;-2147483648;-5;0;3;\"/>\n"
              L"</errfile>\n"
              L"<errfile name=\"/p/c.php\">\n"
              L"\t<error val=\"0;0;0;0;101;1;\"/>\n"
              L"</errfile>\n"
              L"</errors>\n");
}

TEST(SavedErrors, ReadsWhatItWrote)
{
    const std::vector<SSavedFileErrors> written = {
        {L"/Proj/A.php", {Error(1, 2, 3, 4, 102, 1), Error(5, 6, 7, 8, 302, 2)}},
        {L"/proj/\x1F600 '.php", {Error(0, 0, 0, 0, 9999, -1)}},
        {L"/proj/gone.php", {Error(0, 0, 1, 0, 101, 1)}},
    };
    const auto read = ReadSavedErrors(WriteSavedErrors(written), {L"/proj/a.php", L"/proj/\x1F600 '.php"});
    ASSERT_EQ(read.size(), 2u) << "the file that has left the project is dropped";
    for (std::size_t file = 0; file < read.size(); ++file) {
        EXPECT_EQ(read[file].file, written[file].file);
        ASSERT_EQ(read[file].errors.size(), written[file].errors.size());
        for (std::size_t i = 0; i < read[file].errors.size(); ++i) {
            EXPECT_EQ(read[file].errors[i].pos, written[file].errors[i].pos);
            EXPECT_EQ(read[file].errors[i].code, written[file].errors[i].code);
            EXPECT_EQ(read[file].errors[i].type, written[file].errors[i].type);
        }
    }
}

// A query would start threads for the network and a message bus, and does not come back without them.
TEST(SavedErrors, ReadingStartsNoThread)
{
    const auto countThreads = [] {
        return std::distance(std::filesystem::directory_iterator("/proc/self/task"),
                             std::filesystem::directory_iterator());
    };
    const auto before = countThreads();
    EXPECT_EQ(
        ReadSavedErrors(WriteSavedErrors({{L"/a.php", {Error(1, 2, 3, 4, 102, 1)}}}), {L"/a.php"}).size(),
        1u);
    EXPECT_EQ(countThreads(), before);
}

TEST(SavedErrors, ReadsNothingFromAnythingElse)
{
    const std::wstring file = L"<errfile name=\"/a.php\"><error val=\"0;0;0;0;101;1;\"/></errfile>";
    std::wstring deep;
    for (int i = 0; i < 20000; ++i)
        deep += L"<errors version=\"5.3\">";
    const std::wstring texts[] = {
        L"",
        L"no xml",
        L"<errors>" + file + L"</errors>",
        L"<errors version=\"5.2\">" + file + L"</errors>",
        L"<errors version=\" 5.3\">" + file + L"</errors>",
        L"<errors version=\"5.3&#10;\">" + file + L"</errors>",
        L"<errors version=\"&#10;&#10;5.3\">" + file + L"</errors>",
        L"<error version=\"5.3\">" + file + L"</error>",
        L"<errors xmlns=\"x\" version=\"5.3\">" + file + L"</errors>",
        L"<x><errors version=\"5.3\">" + file + L"</errors></x>",
        L"<errors version=\"5.3\">" + file,
        L"<errors version=\"5.3\"><errfile name=\"/a&b.php\"/>" + file + L"</errors>",
        L"<errors version=\"5.3\"><errfile name=\"/a\"b.php\"/>" + file + L"</errors>",
        std::wstring(L"<errors version=\"5.3\">\0</errors>", 32),
        deep,
    };
    testing::internal::CaptureStderr();
    for (const std::wstring& text : texts)
        EXPECT_TRUE(ReadSavedErrors(text, {L"/a.php"}).empty())
            << QString::fromStdWString(text).toStdString();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

/// As the queries say it, which take their time and start threads.
std::vector<SSavedFileErrors> ReadByQueries(const std::wstring& text,
                                            const std::set<std::wstring>& lowerFiles)
{
    std::vector<SSavedFileErrors> files;
    XML::CXmlXPathParser errors(text);
    if (errors.GetString(L"/errors/@version") != L"5.3")
        return files;
    for (const std::wstring& element : errors.GetElements(L"/errors/errfile")) {
        XML::CXmlXPathParser errfile(element);
        SSavedFileErrors file{errfile.GetString(L"/errfile/@name"), {}};
        if (!lowerFiles.contains(QString::fromStdWString(file.file).toLower().toStdWString()))
            continue;
        for (const std::wstring& error : errfile.GetElements(L"/errfile/error")) {
            const QStringList pieces =
                QString::fromStdWString(XML::CXmlXPathParser(error).GetString(L"/error/@val")).split(';');
            const auto number = [&](int i) { return i < pieces.size() ? pieces[i].toInt() : 0; };
            file.errors.push_back(Error(number(0), number(1), number(2), number(3), number(4), number(5)));
        }
        files.push_back(file);
    }
    return files;
}

// Whatever stands in the places that are read.
TEST(SavedErrors, ReadsAsTheQueriesWould)
{
    const std::wstring values[] = {
        L"5.3",
        L"&#10;5.3",
        L"5.3&#10;",
        L"&#10;5.3&#10;",
        L"\xFEFF"
        L"5.3",
        L"\xFEFF"
        L"a'b",
        L"\xFEFF&#10;5.3",
        L"&#10;&#10;5.3",
        L" 5.3",
        L"5.3 ",
        L"",
        L"  ",
        L"&#10;",
        L"&#13;",
        L"&#13;&#10;",
        L"a&gt;b",
        L"a>b",
        L"a&amp;b",
        L"a&lt;b",
        L"a&quot;b",
        L"a'b",
        L"a\tb",
        L"a\r\nb",
        L"a&#9;b",
        L"a&#10;b",
        L"a&#13;&#10;",
        L"&#10;a",
        L"&#160;",
        L"\x85",
        L"\x2028",
        L"\x1F600",
        L"1;2;3;4;5;6",
        L"1&gt;2;3;4;5;6",
        L"&#10;1;2;3;4;5;6",
        L"1;2;&#10;3;4;+5;6",
        L"\xFEFF"
        L"1;2",
    };
    const std::wstring others[] = {L"\xFEFF", L"<?xml version='1.0'?>", L"<!-- - -->", L"<?x y?>"};
    std::set<std::wstring> files{L"",    L" a",     L"a b",  L"a ",  L"a&gt;b",  L"a>b", L"a&amp;b",
                                 L"a&b", L"a&lt;b", L"a\"b", L"a'b", L"\x1F600", L"5.3", L" 5.3"};
    std::size_t read = 0;
    const auto compare = [&](const std::wstring& text) {
        const auto expected = ReadByQueries(text, files);
        const auto actual = ReadSavedErrors(text, files);
        SCOPED_TRACE(QString::fromStdWString(text).toStdString());
        ASSERT_EQ(actual.size(), expected.size());
        for (std::size_t i = 0; i < actual.size(); ++i) {
            EXPECT_EQ(actual[i].file, expected[i].file);
            ASSERT_EQ(actual[i].errors.size(), expected[i].errors.size());
            for (std::size_t j = 0; j < actual[i].errors.size(); ++j) {
                EXPECT_EQ(actual[i].errors[j].pos, expected[i].errors[j].pos);
                EXPECT_EQ(actual[i].errors[j].code, expected[i].errors[j].code);
                ++read;
            }
        }
    };
    const auto text = [](const std::wstring& version, const std::wstring& name, const std::wstring& value) {
        return L"<errors version=\"" + version + L"\"><errfile name=\"" + name + L"\">\n t <error val=\"" +
               value + L"\"/><x><error val='9'/></x><error xmlns:p='q' p:val='1'/></errfile></errors>";
    };
    for (const std::wstring& value : values) {
        compare(text(value, L"a'b", L"1;2"));
        compare(text(L"5.3", value, L"1;2"));
        compare(text(L"5.3", L"a'b", value));
    }
    for (const std::wstring& other : others)
        compare(other + text(L"5.3", L"a'b", L"1;2"));
    EXPECT_GT(read, 80u);
}

// What is odd in one file must not shift the errors of the next.
TEST(SavedErrors, GivesEachFileItsOwnErrors)
{
    const std::wstring error = L"<error val=\"1;2;3;4;5;6;\"/>";
    const std::wstring text =
        L"<!-- x --><errors version=\"5.3\">" + error + //
        L"<errfile name=\"/gone.php\">" + error + error + L"</errfile>" + L"<errfile>" + error +
        L"</errfile>" + L"<errfile name=\"/a.php\">text<other val=\"1\"/><error><error/></error>" +
        L"<errfile name=\"/b.php\">" + error + L"</errfile></errfile>" + L"<errfile name=\"/b.php\"/>" +
        L"<x>" + error + L"</x>" + L"<errfile name=\"/B.php\">" + error + L"<!-- y -->" + error +
        L"</errfile>" + L"<errfile name=\"/c&#10;d&#9;.php\">" + error + L"</errfile>" + L"</errors>";
    const struct
    {
        const wchar_t* file;
        std::vector<int> codes;
    } expected[] = {{L"/a.php", {0}}, {L"/b.php", {}}, {L"/B.php", {5, 5}}, {L"/c d .php", {5}}};
    const auto read = ReadSavedErrors(text, {L"/a.php", L"/b.php", L"/c d .php"});
    ASSERT_EQ(read.size(), std::size(expected));
    for (std::size_t i = 0; i < read.size(); ++i) {
        EXPECT_EQ(read[i].file, expected[i].file);
        std::vector<int> codes;
        for (const SCAError& one : read[i].errors)
            codes.push_back(one.code);
        EXPECT_EQ(codes, expected[i].codes) << i;
    }
}

TEST(SavedErrors, DeepNestingCostsNeitherTimeNorStack)
{
    const struct
    {
        int depth;
        std::size_t files;
    } cases[] = {{62, 1}, {63, 0}, {100, 0}, {200000, 0}};
    for (const auto& c : cases) {
        std::wstring text = L"<errors version=\"5.3\"><errfile name=\"/a.php\">";
        for (int i = 0; i < c.depth; ++i)
            text += L"<e>";
        for (int i = 0; i < c.depth; ++i)
            text += L"</e>";
        text += L"</errfile></errors>";
        ASSERT_EQ(ReadSavedErrors(text, {L"/a.php"}).size(), c.files) << c.depth;
    }
}

TEST(SavedErrors, CrowdsOfAttributesCostNoTime)
{
    const struct
    {
        int attributes;
        const wchar_t* equals;
        const wchar_t* start;
        std::size_t files;
    } cases[] = {
        {60, L"=''", L"", 1},     {65, L"=''", L"", 0},
        {65, L" = \"\"", L"", 0}, {0, L"", L"<!DOCTYPE errors [<!ATTLIST errfile a CDATA ''>]>", 0},
        {200000, L"=''", L"", 0},
    };
    for (const auto& c : cases) {
        std::wstring text = c.start;
        text += L"<errors version=\"5.3\"><errfile name=\"/a.php\"";
        for (int i = 0; i < c.attributes; ++i)
            text += L" a" + std::to_wstring(i) + c.equals;
        text += L"/></errors>";
        ASSERT_EQ(ReadSavedErrors(text, {L"/a.php"}).size(), c.files) << c.attributes;
    }
}

TEST(SavedErrors, ForgivesValuesThatAreNoNumbers)
{
    const CDirtyMemory dirty;
    std::wstring surplus; // too long for the allocator to keep as it is
    for (int i = 0; i < 2000; ++i)
        surplus += L"7;";
    const struct
    {
        std::wstring element;
        SCAError error;
    } cases[] = {
        {L"<error val=\"1;2;3;4;5;6;7;\"/>", Error(1, 2, 3, 4, 5, 6)},
        {L"<error val=\"1;2;3;4;5;6;" + surplus + L"\"/>", Error(1, 2, 3, 4, 5, 6)},
        {L"<error val=\"1;x;;4\"/>", Error(1, 0, 0, 4, 0, 0)},
        {L"<error val=\"99999999999;2;3;4;5;6\"/>", Error(0, 2, 3, 4, 5, 6)},
        {L"<error/>", Error(0, 0, 0, 0, 0, 0)},
    };
    for (const auto& c : cases) {
        const auto read = ReadSavedErrors(L"<errors version=\"5.3\"><errfile name=\"/a.php\">" + c.element +
                                              L"</errfile></errors>",
                                          {L"/a.php"});
        ASSERT_EQ(read.size(), 1u);
        ASSERT_EQ(read[0].errors.size(), 1u);
        EXPECT_EQ(read[0].errors[0].pos, c.error.pos);
        EXPECT_EQ(read[0].errors[0].code, c.error.code);
        EXPECT_EQ(read[0].errors[0].type, c.error.type);
    }
}

TEST(XPath, SplitsElementsThatCanBeAskedAgain)
{
    XML::CXmlXPathParser xml(L"<r v=\"a &gt; b\"><a n=\"1\"><b/>\x1F600</a> <a n=\"2\"/></r>");
    const std::vector<std::wstring> elements = xml.GetElements(L"/r/a");
    ASSERT_EQ(elements.size(), 2u);
    // The second element, which is shorter, holds nothing of the first.
    EXPECT_EQ(XML::CXmlXPathParser(elements[0]).GetString(L"/a/@n"), L"1");
    EXPECT_NE(elements[0].find(L"\x1F600"), std::wstring::npos);
    EXPECT_EQ(elements[1], L"<a n=\"2\"/>");
    EXPECT_EQ(xml.GetString(L"/r/@v"), L"a &gt; b") << "as Qt writes it";
    EXPECT_EQ(xml.GetString(L"/r/a/@n"), L"1 2");
    EXPECT_EQ(xml.GetString(L"/r/none"), L"");
    EXPECT_EQ(xml.GetString(L"/r["), L"") << "not XPath";
    EXPECT_TRUE(xml.GetElements(L"/r[").empty());
}

} // namespace

} // namespace Kesh::CodeAnalyzer
