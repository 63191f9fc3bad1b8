#include "CliFixture.h"
#include "Limits.h"

#include <filesystem>
#include <signal.h>
#include <sys/stat.h>
#include <tuple>
#include <unistd.h>

using namespace Kesh;
using nlohmann::json;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

class CommandLine : public CCliTest
{
protected:
    std::vector<std::string> FilesIn(const json& records)
    {
        std::vector<std::string> files;
        for (const json& record : records) {
            const auto file = record["file"].get<std::string>();
            if (files.empty() || files.back() != file)
                files.push_back(file);
        }
        return files;
    }
};

const std::string Clean = "<?php\n$a = 1;\n";
const std::string Wrong = "<?php\n$a = 1;\n$b = = 2;\n"; // misses a semicolon, noticed at $b
const std::string Warned = "<?php\nif ($a);\n";

TEST_F(CommandLine, ExitStatusAndMessages)
{
    m_folder.Write(L"clean.php", Clean);
    m_folder.Write(L"wrong.php", Wrong);
    m_folder.Write(L"warned.php", Warned);
    m_folder.Write(L"huge.php", "");
    std::filesystem::resize_file(Host::PathToBytes(m_folder.Path(L"huge.php")), Host::MaxFileBytes + 1);
    ASSERT_EQ(::mkfifo(Host::PathToBytes(m_folder.Path(L"pipe.php")).c_str(), 0600), 0);
    struct SCase
    {
        QStringList arguments;
        int exit;
        std::string out; ///< part of it
        std::string err;
    };
    const SCase cases[] = {
        {{"check", "clean.php"}, 0, "No errors in 1 file.\n", ""},
        {{"check", "wrong.php"},
         1,
         "wrong.php:3:6: error: Unexpected operator '=' [1025]\n1 error and 0 warnings in 1 of 1 file.\n",
         ""},
        {{"check", "warned.php"}, 0, "warned.php:2:8: warning: Odd semicolon [901]\n", ""},
        {{"check", "none.php"},
         2,
         "No files were checked.\n",
         "code-analyzer: none.php: No such file or directory\n"},
        {{"check", "none.php", "wrong.php"}, 2, "wrong.php:3:6: error:", "none.php"},
        {{"check", "huge.php"}, 2, "", "huge.php: larger than 64 MiB"},
        {{"check", "pipe.php"}, 2, "", "pipe.php: not a regular file"},
        {{"check", "--quiet", "clean.php"}, 0, "", ""},
        {{"check"}, 2, "", "PATH is required"},
        {{"check", "--format", "xml", "clean.php"},
         2,
         "",
         "--format: \"xml\" is none of text, json, sarif, checkstyle, github, gitlab, junit\n"},
        {{"check", "--format", "json", "--format", "text", "clean.php"}, 2, "", "only one report"},
        {{"check", "-o", "none/x.txt", "clean.php"}, 2, "", "none/x.txt: "},
        {{"check", "-o", "x", "--format", "json", "-o", "x", "clean.php"},
         2,
         "",
         "\"x\" would be written twice"},
        {{"check", "-o", "-", "--format", "json", "clean.php"}, 0, "[]\n", ""},
        {{"check", "-o", "/dev/stdout", "--format", "json", "clean.php"}, 0, "[]\n", ""},
        {{"check", "--color", "red", "."}, 2, "", "--color: \"red\" is none of auto, always, never\n"},
        {{"check", "--generate-baseline", "--baseline", "none/b", "clean.php"},
         2,
         "",
         "none/b: No such file"},
        {{"check", "-dash.php"}, 2, "", "goes behind \"--\""},
        {{"explain", "102"}, 0, "Missing ';' (error)\n", ""},
        {{"explain", "missing-semicolon"}, 0, "Error 1001 (missing-semicolon)\n", ""},
        {{"explain", "mising-semicolon"}, 2, "", "did you mean missing-semicolon?"},
        {{"explain", "abc"}, 2, "", "there is no error \"abc\"; \"code-analyzer explain\" lists all"},
        {{"explain", "1026"}, 2, "", "the nearest are 1025 (unexpected-operator), 1024 ("},
        {{"explain"}, 0, "1001  missing-semicolon  ", ""},
        {{"check", "--no-such-option", "clean.php"}, 2, "", "--no-such-option"},
        {{"lint", "clean.php"}, 2, "", "unknown command \"lint\""},
        {{}, 2, "", "subcommand is required"},
        {{"--help"}, 0, "check", ""},
        {{"check", "--help"}, 0, "--exclude", ""},
        {{"--version"}, 0, "code-analyzer 1.0.0", ""},
        {{"project", "none"}, 2, "", "none: No such file or directory"},
        {{"project", "clean.php"}, 2, "", "clean.php: Not a directory"},
        {{"regions", "none.php"}, 2, "", "none.php: No such file or directory"},
        {{"tree", "."}, 2, "", ".: is a folder"},
    };
    for (const SCase& c : cases) {
        SCOPED_TRACE(c.arguments.join(' ').toStdString());
        const SResult result = Run(c.arguments);
        EXPECT_EQ(result.exit, c.exit);
        EXPECT_THAT(result.out, HasSubstr(c.out));
        EXPECT_THAT(result.err, HasSubstr(c.err));
        EXPECT_EQ(result.err.empty(), c.err.empty()) << result.err;
    }
}

TEST_F(CommandLine, JsonHasTheAgreedShape)
{
    m_folder.Write(L"b.php", Wrong);
    m_folder.Write(L"a.php", Warned);
    const json records = RunJson({"b.php", "a.php"}, 1);
    const json expected = json::parse(R"([
        {"file": "a.php", "startLine": 2, "startColumn": 8, "endLine": 2, "endColumn": 9, "code": 901,
         "identifier": "odd-semicolon", "severity": "warning", "message": "Odd semicolon", "text": ";",
         "arguments": {}},
        {"file": "b.php", "startLine": 3, "startColumn": 6, "endLine": 3, "endColumn": 7, "code": 1025,
         "identifier": "unexpected-operator", "severity": "error", "message": "Unexpected operator '='",
         "text": "=", "arguments": {"found": "="}}])");
    EXPECT_EQ(records, expected);
    m_folder.Write(L"c.php", Clean);
    EXPECT_EQ(Run({"check", "--format", "json", "c.php"}).out, "[]\n");
    EXPECT_EQ(RunJson({"none.php"}, 2), json::array());
}

TEST_F(CommandLine, FoldersAreSearchedForTheUsualFiles)
{
    for (const wchar_t* name :
         {L"s/a.php", L"s/b.PHTML", L"s/c.inc", L"s/e.html", L"s/f.htm", L"s/sub/g.php", L"s/note.txt",
          L"s/tpl.tpl", L"s/.git/h.php", L"s/vendor/i.php", L"s/sub/node_modules/j.php"})
        m_folder.Write(name, "<?php\n$a = 1;\n$b = = 2; ?>\n");
    m_folder.Write(L"s/d.css", "a { colr: red; }\n");
    struct SCase
    {
        QStringList arguments;
        std::vector<std::string> files;
    };
    const std::string all[] = {"s/a.php", "s/b.PHTML", "s/c.inc", "s/d.css", "s/sub/g.php"};
    const SCase cases[] = {
        {{"s"}, {all[0], all[1], all[2], all[3], all[4]}},
        {{"s/"}, {all[0], all[1], all[2], all[3], all[4]}},
        {{"./s"}, {"./s/a.php", "./s/b.PHTML", "./s/c.inc", "./s/d.css", "./s/sub/g.php"}},
        {{"s/vendor"}, {"s/vendor/i.php"}},
        {{"s", "--exclude", "*.inc", "--exclude", "sub"}, {all[0], all[1], all[3]}},
        {{"--exclude", "sub/*", "s"}, {all[0], all[1], all[2], all[3]}},
        {{"--include", "*.txt", "s"}, {"s/note.txt"}},
        {{"--include", "g*", "--include", "*.css", "s"}, {all[3], all[4]}},
        {{"s/note.txt", "s/a.php", "s/../s/a.php"}, {"s/a.php", "s/note.txt"}},
    };
    for (const SCase& c : cases)
        EXPECT_EQ(FilesIn(RunJson(c.arguments, 1)), c.files) << c.arguments.join(' ').toStdString();
}

TEST_F(CommandLine, StandardInputGoesByAName)
{
    const json records = RunJson({"-"}, 1, Wrong);
    EXPECT_EQ(FilesIn(records), std::vector<std::string>{"stdin.php"});
    EXPECT_EQ(RunJson({"-"}, 0, ""), json::array());
    const json css = RunJson({"--stdin-path", "some/style.css", "-"}, 1, "a { colr: red; }");
    ASSERT_EQ(css.size(), 1u);
    EXPECT_EQ(css[0]["file"], "some/style.css");
    EXPECT_EQ(css[0]["code"], 2502);
}

TEST_F(CommandLine, ThousandsOfPathsAreFine)
{
    QStringList paths;
    for (int i = 0; i < 3000; ++i) {
        const std::wstring name = L"f" + std::to_wstring(i) + L".php";
        m_folder.Write(name, i % 1000 == 7 ? Wrong : Clean);
        paths.append(Host::PathToQt(name));
    }
    EXPECT_EQ(FilesIn(RunJson(paths, 1)), (std::vector<std::string>{"f1007.php", "f2007.php", "f7.php"}));
}

TEST_F(CommandLine, FileNamesNeedNotBeUtf8)
{
    m_folder.Write(Host::PathFromBytes("d\xFF/b\xE9.php"), Wrong);
    const json records = RunJson({"."}, 1);
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0]["file"], "./d\xEF\xBF\xBD/b\xEF\xBF\xBD.php");
    EXPECT_THAT(Run({"check", "."}).out, StartsWith("./d\\xFF/b\\xE9.php:3:6: error"));
}

TEST_F(CommandLine, EveryByteSequenceIsCheckedToTheEnd)
{
    std::string all;
    for (int i = 0; i < 256; ++i)
        all += static_cast<char>(i);
    const std::string texts[] = {"",
                                 all,
                                 "<?php " + all,
                                 std::string(1 << 20, '{'),
                                 "<?php " + std::string(1 << 20, '('),
                                 std::string(1 << 18, '<'),
                                 "<?php /*" + std::string(1 << 20, '*'),
                                 "<?php \"" + std::string(1 << 16, '{'),
                                 std::string(1 << 20, '\0'),
                                 "\xEF\xBB\xBF<?php\r\n$a = 1\r\n$b;"};
    std::string nested = "<?php ";
    for (int i = 0; i < 50000; ++i)
        nested += "if ($a) { f(function () { [";
    std::string html;
    for (int i = 0; i < 100000; ++i)
        html += "<div>";
    for (const wchar_t* name : {L"t.php", L"t.html", L"t.css"}) {
        std::size_t number = 0;
        for (const std::string& text : texts) {
            m_folder.Write(name, text);
            const int exit = Run({"check", "--quiet", Host::PathToQt(name)}).exit;
            EXPECT_TRUE(exit == 0 || exit == 1) << Host::PathToBytes(name) << " text " << number;
            ++number;
        }
        for (const std::string& text : {nested, html}) {
            m_folder.Write(name, text);
            const int exit = Run({"check", "--quiet", Host::PathToQt(name)}).exit;
            EXPECT_TRUE(exit == 0 || exit == 1) << Host::PathToBytes(name) << " nested";
            for (const char* command : {"regions", "tree"})
                EXPECT_EQ(Run({command, Host::PathToQt(name)}).exit, 0);
        }
    }
}

TEST_F(CommandLine, Utf16IsReadAndBinaryFilesAreSkippedWithANote)
{
    const auto encoded = [](const std::wstring& text, bool little) {
        std::string bytes = little ? "\xFF\xFE" : "\xFE\xFF";
        for (const wchar_t c : text) {
            bytes += static_cast<char>(little ? c & 0xFF : c >> 8);
            bytes += static_cast<char>(little ? c >> 8 : c & 0xFF);
        }
        return bytes;
    };
    const std::wstring text = L"<?php\r\n$\u00E9 = '\xD83D\xDE00'  $b;\r\n"; // an emoji in two halves
    for (const bool little : {true, false}) {
        m_folder.Write(L"a.php", encoded(text, little));
        const json records = RunJson({"a.php"}, 1);
        ASSERT_EQ(records.size(), 1u);
        EXPECT_EQ(records[0]["startLine"], 2);
        EXPECT_EQ(records[0]["startColumn"], 11);
        EXPECT_EQ(records[0]["text"], "$b");
        m_folder.Write(L"a.php", encoded(L"<?php \xD83D '\xDE00", little) + "x");
        EXPECT_EQ(Run({"check", "a.php"}).err, "");
    }
    m_folder.Write(L"a.php", std::string("\x7F"
                                         "ELF\0\0",
                                         6));
    m_folder.Write(L"b.php", Clean);
    const SResult alone = Run({"check", "a.php"});
    EXPECT_EQ(alone.exit, 0);
    EXPECT_EQ(alone.err, "code-analyzer: a.php: skipped: a binary file\n");
    EXPECT_EQ(alone.out, "No files were checked.\n");
    EXPECT_EQ(Run({"check", "a.php", "b.php"}).out, "No errors in 1 file.\n");
}

// To PHP a NUL is a character like any other, but one that code does not hold.
TEST_F(CommandLine, NulIsNoEndOfPhp)
{
    using namespace std::string_literals;
    const std::tuple<std::string, int, int, int> cases[] = {
        {"<?php\nf('\0');\n$a = 1 2;\n"s, 3, 8, 1012},
        {"<?php f(\0);\n"s, 1, 9, 1056},
        {"<?php if ($a\0) {}\n"s, 1, 13, 1056},
        {"<?php if ($a) {} else\0;\n"s, 1, 22, 1056},
        {"<?php $a = \"\0\"; /* \0 */ $b = 1 2;\n"s, 1, 32, 1012},
        {"\0<?php $b = 1 2;\n"s, 1, 15, 1012},
        {"\xEF\xBB\xBF\0\0<?= $b 2;\n"s, 1, 8, 1007},
        {"<p>\0</p>\n<?PHP $b = 1 2;\n"s, 2, 14, 1012},
    };
    for (const auto& [text, line, column, code] : cases) {
        m_folder.Write(L"a.php", text);
        for (const char* command : {"check", "project"}) {
            const SResult result = Run({command, "--no-markup", "--format", "json", "."});
            EXPECT_EQ(result.exit, 1) << command << " " << text;
            const json records = json::parse(result.out);
            ASSERT_EQ(records.size(), 1u) << command << " " << text;
            EXPECT_EQ(records[0]["startLine"], line) << command << " " << text;
            EXPECT_EQ(records[0]["startColumn"], column) << command << " " << text;
            EXPECT_EQ(records[0]["code"], code) << command << " " << text;
        }
    }
}

// To PHP a byte order mark is text that is printed before anything else.
TEST_F(CommandLine, AByteOrderMarkComesBeforeTheFirstStatement)
{
    struct SCase
    {
        const char* text;
        std::vector<std::string> found;
    };
    for (const auto& [text, found] :
         {SCase{"\xEF\xBB\xBF<?php\nnamespace A;\n", {"a.php:2 1141 error"}},
          SCase{"\xEF\xBB\xBF<?php\nnamespace A { f(); }\n", {"a.php:2 1141 error"}},
          SCase{"\xEF\xBB\xBF<?php\ndeclare(strict_types=1);\n", {"a.php:2 1144 error"}},
          SCase{"\xEF\xBB\xBF<?php\ndeclare(ticks=1);\nuse A\\B;\n", {}},
          SCase{"<?php\nnamespace A;\n", {}}}) {
        m_folder.Write(L"a.php", text);
        EXPECT_EQ(Brief(RunJson({"a.php"}, AnyExit)), found) << text;
        EXPECT_EQ(Brief(RunJson({"."}, AnyExit)).size(), found.size()) << text;
        EXPECT_EQ(Run({"project", "."}).exit, found.empty() ? 0 : 1) << text;
    }
}

TEST_F(CommandLine, ColumnsCountCharacters)
{
    m_folder.Write(L"bom.php", "\xEF\xBB\xBF<?php\r\n$\xC3\xA9 = '\xF0\x9F\x98\x80'  $b;\r\n");
    const json records = RunJson({"bom.php"}, 1);
    ASSERT_FALSE(records.empty());
    EXPECT_EQ(records[0]["startLine"], 2);
    EXPECT_EQ(records[0]["startColumn"], 11);
}

TEST_F(CommandLine, ColoursAreForTerminalsUnlessForced)
{
    m_folder.Write(L"w.php", Wrong);
    m_environment.insert("TERM", "xterm");
    EXPECT_EQ(Run({"check", "w.php"}).out.find('\x1B'), std::string::npos);
    EXPECT_NE(Run({"check", "--color", "always", "w.php"}).out.find("\x1B[1;31merror:"), std::string::npos);
}

TEST_F(CommandLine, RegionsAndTreesArePrinted)
{
    m_folder.Write(L"a.php", "<p class='x'><?php $a;\n");
    const std::string regions = Run({"regions", "a.php"}).out;
    EXPECT_THAT(regions, HasSubstr("1:14-1:19"));
    EXPECT_THAT(regions, HasSubstr("\"<?php\""));
    EXPECT_THAT(regions, HasSubstr("\"\\n\""));
    const std::string tree = Run({"tree", "a.php"}).out;
    EXPECT_THAT(tree, HasSubstr("  tag \"p\" 1:1-1:3\n    attribute \"class\" 1:4-1:9\n"));
    m_folder.Write(L"a.css", "a { color: red }");
    EXPECT_THAT(Run({"tree", "a.css"}).out, HasSubstr("\"color\" 1:5-1:10"));
}

TEST_F(CommandLine, AProjectIsCheckedAndItsErrorsKept)
{
    m_folder.Write(L"p/b.php", Wrong);
    m_folder.Write(L"p/a.php", Warned);
    m_folder.Write(L"p/vendor/c.php", Wrong);
    for (int round = 0; round < 2; ++round) {
        // The second round restores what the first one kept; nothing may then be listed twice.
        const SResult result = Run({"project", "p"});
        EXPECT_EQ(result.exit, 1);
        EXPECT_EQ(result.out, "p/a.php:2:8: warning: Odd semicolon [901]\n"
                              "p/b.php:3:6: error: Unexpected operator '=' [1025]\n"
                              "1 error and 1 warning in 2 of 2 files.\n");
        EXPECT_EQ(result.err, "");
    }
    EXPECT_THAT(Host::ReadFileBytes(m_folder.Path(L"p/.code-analyzer/errors")),
                HasSubstr("val=\"5;2;6;2;1025;1;\""));
    m_folder.Write(L"p/b.php", Clean);
    m_folder.Write(L"p/a.php", Clean);
    const SResult mended = Run({"project", "--format", "json", "p"});
    EXPECT_EQ(mended.exit, 0);
    EXPECT_EQ(mended.out, "[]\n");
}

TEST_F(CommandLine, ErrorsThatCannotBeKeptAreAFailure)
{
    m_folder.Write(L"p/a.php", Clean);
    m_folder.Write(L"q/a.php", Clean);
    m_folder.Write(L"q/.code-analyzer", "a file in the way");
    ASSERT_EQ(Run({"project", "p"}).exit, 0);
    const std::string kept = Host::ReadFileBytes(m_folder.Path(L"p/.code-analyzer/errors"));
    m_folder.Write(L"p/a.php", Wrong);
    EXPECT_EQ(Run({"project", "q"}).exit, 2);
    EXPECT_THAT(Run({"project", "q"}).err, HasSubstr("q: the errors could not be kept: Not a directory"));
    SResult result;
    {
        const CFullDisk full; // the program inherits it
        result = Run({"project", "p"});
    }
    EXPECT_EQ(result.exit, 2);
    EXPECT_THAT(result.out, HasSubstr("p/a.php:3:6: error: Unexpected operator '=' [1025]"));
    EXPECT_THAT(result.err, HasSubstr("p: the errors could not be kept: File too large"));
    EXPECT_EQ(Host::ReadFileBytes(m_folder.Path(L"p/.code-analyzer/errors")), kept);
    m_folder.Write(L"report.json", "old");
    {
        const CFullDisk full;
        result = Run({"check", "--format", "json", "-o", "report.json", "p"});
    }
    EXPECT_EQ(result.exit, 2);
    EXPECT_THAT(result.err, HasSubstr("report.json: File too large"));
    EXPECT_EQ(Host::ReadFileBytes(m_folder.Path(L"report.json")), "old");
}

#ifndef __SANITIZE_THREAD__ // which needs a thread of its own
TEST_F(CommandLine, ASystemWithoutThreadsIsExplained)
{
    class CThreadless : public QProcess
    {
        void setupChildProcess() override { ForbidThreads(); }
    };
    m_folder.Write(L"p/a.php", Wrong);
    for (const auto& [command, exit, err] :
         {std::tuple{"project", 2, "p: the check could not be started: the system has no thread"},
          {"check", 1, ""}}) {
        CThreadless process;
        process.setWorkingDirectory(Host::PathToQt(m_folder.Path()));
        process.start(PROGRAM, {command, "p"});
        ASSERT_TRUE(process.waitForFinished()) << command;
        EXPECT_EQ(process.exitCode(), exit) << command;
        EXPECT_THAT(process.readAllStandardError().toStdString(), HasSubstr(err));
    }
}
#endif

TEST_F(CommandLine, AMissingPlugInIsExplained)
{
    m_folder.Write(L"a.php", Clean);
    m_environment.insert("CODE_ANALYZER_PLUGIN", "/none/libCodeAnalyzer.so.1");
    const SResult result = Run({"check", "a.php"});
    EXPECT_EQ(result.exit, 2);
    EXPECT_THAT(result.err, HasSubstr("could not be loaded"));
    EXPECT_THAT(result.err, HasSubstr("/none/libCodeAnalyzer.so.1"));
}

TEST_F(CommandLine, OutputThatCannotBeWrittenIsAFailure)
{
    m_folder.Write(L"a.php", Wrong);
    QProcess process;
    process.setWorkingDirectory(Host::PathToQt(m_folder.Path()));
    process.setStandardOutputFile("/dev/full");
    process.start(PROGRAM, {"check", "a.php"});
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitCode(), 2);
    EXPECT_THAT(process.readAllStandardError().toStdString(), HasSubstr("standard output: No space left"));
}

TEST_F(CommandLine, NeedsNeitherADisplayNorOpenDescriptors)
{
    m_folder.Write(L"a.php", Wrong);
    m_environment.insert("DISPLAY", ":97");
    m_environment.insert("WAYLAND_DISPLAY", "none");
    for (const char* platform : {"xcb", "wayland", "no-such-platform"}) {
        m_environment.insert("QT_QPA_PLATFORM", platform);
        EXPECT_EQ(Run({"check", "a.php"}).exit, 1) << platform;
    }
    struct SCase
    {
        const char* closed;
        int exit;
        std::string err; ///< part of it
    };
    for (const auto& [closed, exit, err] : {SCase{"<&-", 1, ""},
                                            {">&-", 2, "standard output: Bad file descriptor"},
                                            {"2>&-", 1, ""},
                                            {"<&- >&- 2>&-", 2, ""}}) {
        QProcess process;
        process.setWorkingDirectory(Host::PathToQt(m_folder.Path()));
        process.start("sh", {"-c", QStringLiteral("exec \"$0\" check a.php %1").arg(closed), PROGRAM});
        ASSERT_TRUE(process.waitForFinished()) << closed;
        EXPECT_EQ(process.exitCode(), exit) << closed;
        EXPECT_THAT(process.readAllStandardError().toStdString(), HasSubstr(err));
    }
}

TEST_F(CommandLine, TheUsersSettingsAreLeftAlone)
{
    m_folder.Write(L"a.php", Wrong);
    m_folder.Write(L"home/.config/code-analyzer/workbench.ini", "[Workbench]\nlanguage=de\n");
    m_environment.insert("HOME", Host::PathToQt(m_folder.Path(L"home")));
    m_environment.remove("XDG_CONFIG_HOME");
    EXPECT_THAT(Run({"check", "a.php"}).out, HasSubstr("Unexpected operator"));
    EXPECT_EQ(std::distance(
                  std::filesystem::recursive_directory_iterator(Host::PathToBytes(m_folder.Path(L"home"))),
                  std::filesystem::recursive_directory_iterator()),
              3);
}

// A terminal gives some characters two columns and some none, whatever the user's locale knows.
TEST_F(CommandLine, CaretsStandUnderWhatWasFound)
{
    struct SCase
    {
        const char* line;
        std::size_t columns; ///< before the caret
    };
    for (const auto& [line, columns] :
         {SCase{"$b = ;", 5}, SCase{"$a = '\u65E5\u672C'; $b = ;", 18}, SCase{"$a = 'e\u0301'; $b = ;", 15},
          SCase{"\t$a = '\U0001F600'; $b = ;", 20}}) {
        m_folder.Write(L"a.php", std::string("<?php\n") + line + '\n');
        QProcess process;
        m_environment.insert("LC_ALL", "C");
        process.setProcessEnvironment(m_environment);
        process.setWorkingDirectory(Host::PathToQt(m_folder.Path()));
        process.start("script", {"-qec", PROGRAM " check --color never a.php", "/dev/null"});
        ASSERT_TRUE(process.waitForFinished());
        EXPECT_THAT(process.readAllStandardOutput().toStdString(),
                    HasSubstr("\r\n   | " + std::string(columns, ' ') + "^\r\n"))
            << line;
    }
}

} // namespace
