// The checks through the C interface.

#include "DoorFixture.h"
#include "TempFolder.h"

#include <chrono>
#include <cstddef>
#include <gmock/gmock.h>
#include <thread>

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

// What programs are compiled with: it never moves.
static_assert(sizeof(code_analyzer_position) == 24 && offsetof(code_analyzer_position, offset) == 16);
static_assert(sizeof(code_analyzer_related) == 56 && sizeof(code_analyzer_edit) == 56);
static_assert(offsetof(code_analyzer_fix, edits) == 16 && sizeof(code_analyzer_fix) == 32);
static_assert(offsetof(code_analyzer_finding, code) == 56 && offsetof(code_analyzer_finding, message) == 80);
static_assert(offsetof(code_analyzer_finding, fix_count) == 112 && sizeof(code_analyzer_finding) >= 120);
static_assert(offsetof(code_analyzer_settings, presets) == 32 && sizeof(code_analyzer_settings) >= 56);

TEST_F(CDoor, FindsInTextsOfEachLanguageAndSaysWhereInTheirBytes)
{
    const struct
    {
        const char* path;
        std::string text;
        std::vector<std::string> findings;
        std::vector<std::string> bytes;
    } table[] = {
        {"/none/a.php", "<?php\n$a = 1;\n", {}, {}},
        {"/none/a.php", "<?php\n$b = = 2;\n", {"1:5-1:6 1025"}, {"="}},
        {"/none/a.php", "<?php\r\n$b = = 2;\r\n", {"1:5-1:6 1025"}, {"="}},
        {"/none/a.php", "\xEF\xBB\xBF<?php\n$b = = 2;\n", {"1:5-1:6 1025"}, {"="}},
        {"/none/a.php", "\xEF\xBB\xBF<?php\nnamespace A;\n", {"1:0-1:9 1141"}, {"namespace"}},
        {"/none/a.php", "<?php $ä = '😀'; $b = = 2;\n", {"0:21-0:22 1025"}, {"="}},
        {"/none/a.php", "<?php $a = '\xFF\xFE'; $b = = 2;\n", {"0:22-0:23 1025"}, {"="}},
        {"/none/a.unknown", "<?php\n$b = = 2;\n", {"1:5-1:6 1025"}, {"="}},
        {"/none/a.html", "<p><spam></spam></p>\n", {"0:3-0:8 2001"}, {"<spam"}},
        {"/none/a.css", "a { colour: red }\n", {"0:4-0:10 2502"}, {"colour"}},
    };
    for (const auto& [path, text, findings, bytes] : table) {
        const SFound found = Check(text, path);
        EXPECT_EQ(found.status, CODE_ANALYZER_DONE) << text;
        EXPECT_EQ(found.findings, findings) << text;
        EXPECT_EQ(found.bytes, bytes) << text;
    }
}

TEST_F(CDoor, HandsOverProvedFixes)
{
    const std::string text = "<?php\r\n$ä = f(1;\r\n";
    EXPECT_THAT(Check(text).fixed, ElementsAre(""));
    code_analyzer_settings settings = CODE_ANALYZER_SETTINGS_INIT;
    settings.fixes = CODE_ANALYZER_FIXES_PROVED;
    Open(settings);
    EXPECT_THAT(Check(text).fixed, ElementsAre("<?php\r\n$ä = f(1);\r\n"));
}

TEST_F(CDoor, GoesByTheSettingsNearestToAFile)
{
    CTempFolder folder;
    folder.Write(L"code-analyzer.json", R"({"codes": {"1025": "off"}, "exclude": ["left.php"]})");
    folder.Write(L"a.php", "<?php\n$b = = 2;\n");
    const auto path = [&](const wchar_t* name) { return Kesh::Host::PathToBytes(folder.Path(name)); };
    EXPECT_THAT(CheckFile(path(L"a.php"), "").findings, IsEmpty());
    EXPECT_EQ(Check("<?php\n$b = = 2;\n", path(L"left.php").c_str()).status, CODE_ANALYZER_NO_SOURCE);

    folder.Write(L"code-analyzer.json", "{}");
    EXPECT_THAT(CheckFile(path(L"a.php"), "").findings, IsEmpty()) << "read once";
    code_analyzer_reload(m_session);
    EXPECT_THAT(CheckFile(path(L"a.php"), "").findings, ElementsAre("1:5-1:6 1025"));

    folder.Write(L"code-analyzer.json", "{,}");
    code_analyzer_reload(m_session);
    EXPECT_EQ(CheckFile(path(L"a.php"), "").status, CODE_ANALYZER_BAD_SETTINGS);
    EXPECT_THAT(code_analyzer_error(m_session), HasSubstr("code-analyzer.json:1"));
}

TEST_F(CDoor, ChecksFilesOfOtherEncodingsWithoutOffsets)
{
    CTempFolder folder;
    const std::string text = "<?php\n$a = 'ä'; $b = = 2;\n";
    folder.Write(L"utf8.php", text);
    std::string latin = text;
    latin.replace(latin.find("ä"), 2, "\xE4\xF6\xFC");
    folder.Write(L"latin.php", latin);
    folder.Write(L"binary.php", std::string("\0\1\2", 3));
    const auto check = [&](const wchar_t* name, const std::string& bytes) {
        return CheckFile(Kesh::Host::PathToBytes(folder.Path(name)), bytes);
    };
    EXPECT_THAT(check(L"utf8.php", text).bytes, ElementsAre("="));
    EXPECT_THAT(check(L"latin.php", latin).bytes, ElementsAre("no offset"));
    EXPECT_EQ(check(L"binary.php", "").status, CODE_ANALYZER_NO_SOURCE);
    EXPECT_EQ(check(L"none.php", "").status, CODE_ANALYZER_UNREADABLE);
    EXPECT_THAT(code_analyzer_error(m_session), HasSubstr("No such file"));
}

TEST_F(CDoor, SaysWhichSettingsAreWrong)
{
    const char* const presets[] = {"vue", "veu", nullptr};
    using TChange = void (*)(code_analyzer_settings&, const char* const*);
    const struct
    {
        TChange change;
        code_analyzer_status status;
        const char* reason;
    } table[] = {
        {[](auto& s, auto) { s.php_version = "9.9"; }, CODE_ANALYZER_BAD_SETTINGS, "php_version"},
        {[](auto& s, auto p) { s.presets = p; }, CODE_ANALYZER_BAD_SETTINGS, "veu"},
        {[](auto& s, auto) { s.configuration = "/none/x.json"; }, CODE_ANALYZER_BAD_SETTINGS, "x.json"},
        {[](auto& s, auto) { s.baseline = "/none/b.json"; }, CODE_ANALYZER_BAD_SETTINGS, "b.json"},
        {[](auto& s, auto) { s.fixes = 7; }, CODE_ANALYZER_BAD_SETTINGS, "fixes"},
        {[](auto& s, auto) { s.size = 0; }, CODE_ANALYZER_BAD_CALL, "size"},
    };
    for (const auto& [change, status, reason] : table) {
        code_analyzer_settings settings = CODE_ANALYZER_SETTINGS_INIT;
        change(settings, presets);
        code_analyzer_session* session = m_session;
        EXPECT_EQ(code_analyzer_open(&settings, &session), status) << reason;
        EXPECT_EQ(session, nullptr) << reason;
        EXPECT_THAT(code_analyzer_error(nullptr), HasSubstr(reason));
    }
}

TEST_F(CDoor, TakesSettingsOfAnOlderHost)
{
    code_analyzer_settings settings = CODE_ANALYZER_SETTINGS_INIT;
    settings.size = offsetof(code_analyzer_settings, baseline);
    settings.php_version = "7.0";
    settings.fixes = 7; // it does not know that there is such a thing
    Open(settings);
    EXPECT_THAT(Check("<?php\nfunction f(): ?int {}\n").messages, ElementsAre(HasSubstr("7.1")));
}

TEST_F(CDoor, RefusesWhatCannotBe)
{
    Open();
    EXPECT_EQ(code_analyzer_check_text(nullptr, "a.php", "", 0, nullptr, nullptr), CODE_ANALYZER_BAD_CALL);
    EXPECT_EQ(code_analyzer_check_text(m_session, nullptr, "", 0, nullptr, nullptr), CODE_ANALYZER_BAD_CALL);
    EXPECT_EQ(code_analyzer_check_text(m_session, "a.php", nullptr, 1, nullptr, nullptr),
              CODE_ANALYZER_BAD_CALL);
    EXPECT_EQ(code_analyzer_check_text(m_session, "a.php", "", (64 << 20) + 1, nullptr, nullptr),
              CODE_ANALYZER_BAD_CALL);
    EXPECT_EQ(code_analyzer_open(nullptr, nullptr), CODE_ANALYZER_BAD_CALL);
    code_analyzer_close(nullptr);
    EXPECT_EQ(Check("<?php\n$b = = 2;\n").status, CODE_ANALYZER_DONE);

    const auto again = [](const code_analyzer_finding*, void* session) {
        return static_cast<int>(code_analyzer_check_text(static_cast<code_analyzer_session*>(session),
                                                         "a.php", "", 0, nullptr, nullptr));
    };
    const std::string text = "<?php\n$b = = 2;\n";
    EXPECT_EQ(code_analyzer_check_text(m_session, "a.php", text.data(), text.size(), again, m_session),
              CODE_ANALYZER_STOPPED);
}

TEST_F(CDoor, GivesUpACheckThatNobodyWants)
{
    std::string text = "<?php\n";
    while (text.size() < (24 << 20))
        text += "if ($a[1] + f($b)) { $c = \"x{$d}\" . 'y'; }\n";
    Open();
    std::thread other([this] {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        code_analyzer_cancel(m_session);
    });
    EXPECT_EQ(Check(text).status, CODE_ANALYZER_CANCELLED);
    other.join();
    code_analyzer_cancel(m_session); // there is none
    EXPECT_THAT(Check("<?php\n$b = = 2;\n").findings, ElementsAre("1:5-1:6 1025"));
}

TEST_F(CDoor, ChecksInSeveralThreadsAtOnce)
{
    std::vector<std::thread> threads;
    std::vector<std::size_t> found(4);
    for (std::size_t& count : found)
        threads.emplace_back([&count] {
            code_analyzer_session* session = nullptr;
            ASSERT_EQ(code_analyzer_open(nullptr, &session), CODE_ANALYZER_DONE);
            const auto take = [](const code_analyzer_finding*, void* data) {
                ++*static_cast<std::size_t*>(data);
                return 0;
            };
            for (const std::string& text :
                 {std::string("<?php\n$b = = 2;\n"), std::string("<p><spam></p>\n")})
                for (int i = 0; i < 50; ++i)
                    code_analyzer_check_text(session, "/none/a.php", text.data(), text.size(), take, &count);
            code_analyzer_close(session);
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_GT(found[0], 0U);
    EXPECT_THAT(found, ElementsAre(found[0], found[0], found[0], found[0]));
}

} // namespace
