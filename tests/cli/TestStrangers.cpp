// What a project that somebody else has made can do to the one who checks it, and what bad luck can.

#include "CliFixture.h"
#include "Limits.h"

#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

using namespace Kesh;
using nlohmann::json;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

namespace fs = std::filesystem;

namespace {

const std::string Wrong = "<?php\n$a = 1;\n$b = = 2;\n";
const std::string Baseline = "{\"version\": 1, \"findings\": []}";

class Strangers : public CCliTest
{
protected:
    std::string Bytes(const wchar_t* name)
    {
        return fs::exists(Path(name)) ? Host::ReadFileBytes(m_folder.Path(name)) : "";
    }
    /// Everything in a folder with the bytes of files, by its path.
    std::map<std::string, std::string> Contents(const wchar_t* folder)
    {
        std::map<std::string, std::string> found;
        for (const auto& entry : fs::recursive_directory_iterator(Path(folder)))
            found[entry.path().string()] =
                entry.is_regular_file() ? Host::ReadFileBytes(Host::PathFromBytes(entry.path().string()))
                                        : "";
        return found;
    }
};

TEST_F(Strangers, NothingIsWrittenOutsideOfAProject)
{
    struct SCase
    {
        const char* title;
        const wchar_t* link; ///< in the project p
        const char* target;
        const char* settings;
        QStringList arguments;
        int exit;
        std::string err; ///< part of it
    };
    const SCase cases[] = {
        {"kept errors", L"p/.code-analyzer", "../outside", "{}", {"project", "."}, 2, "is a link"},
        {"a baseline of the usual name",
         L"p/code-analyzer-baseline.json",
         "../outside/old",
         "{}",
         {"check", "--generate-baseline", "."},
         2,
         "lies outside of the project"},
        {"one that the settings name",
         L"p/b.json",
         "../outside/new",
         R"({"baseline": "b.json"})",
         {"check", "--generate-baseline", "."},
         2,
         "lies outside of the project"},
        {"one elsewhere",
         L"p/x",
         "sub",
         R"({"baseline": "../outside/new"})",
         {"check", "--generate-baseline", "."},
         2,
         "lies outside of the project"},
        {"one in a folder elsewhere",
         L"p/d",
         "../outside",
         R"({"baseline": "d/new"})",
         {"check", "--generate-baseline", "."},
         2,
         "lies outside of the project"},
        {"one over another file",
         L"p/x",
         "sub",
         R"({"baseline": "a.php"})",
         {"check", "--generate-baseline", "."},
         2,
         "a.php: no baseline"},
        {"a named one that is a link",
         L"p/b.json",
         "../outside/new",
         "{}",
         {"check", "--generate-baseline", "--baseline", "b.json", "."},
         2,
         "leads out of the current folder"},
        {"a report",
         L"p/r.json",
         "../outside/new",
         "{}",
         {"check", "-o", "r.json", "."},
         2,
         "leads out of the current folder"},
        {"a report in a folder",
         L"p/d",
         "../outside",
         "{}",
         {"check", "-o", "d/new", "."},
         2,
         "leads out of the current folder"},
        {"a first settings file",
         L"p/sub/code-analyzer.json",
         "../../outside/new",
         "{}",
         {"init", "sub"},
         2,
         "is there already"},
    };
    for (const SCase& c : cases) {
        SCOPED_TRACE(c.title);
        fs::remove_all(Path(L"p"));
        m_folder.Write(L"p/a.php", Wrong);
        m_folder.Write(L"p/sub/b.php", "");
        m_folder.Write(L"p/code-analyzer.json", c.settings);
        m_folder.Write(L"outside/old", Baseline);
        fs::create_symlink(c.target, Path(c.link));
        const auto before = Contents(L"outside");
        const auto inside = Contents(L"p");
        const SResult result = RunIn(L"p", c.arguments);
        EXPECT_EQ(result.exit, c.exit);
        EXPECT_THAT(result.err, HasSubstr(c.err));
        EXPECT_EQ(Contents(L"outside"), before);
        EXPECT_EQ(Contents(L"p"), inside);
    }
    // What the user names is the user's.
    m_folder.Write(L"p/b.json", "no baseline");
    EXPECT_EQ(RunIn(L"p", {"check", "--generate-baseline", "--baseline", "b.json", "."}).exit, 0);
    EXPECT_EQ(RunIn(L"p", {"check", "--generate-baseline", "--baseline", "../outside/new", "."}).exit, 0);
    EXPECT_THAT(Bytes(L"outside/new"), HasSubstr("a.php"));
    EXPECT_EQ(RunIn(L"p", {"check", "--format", "json", "-o", "../outside/report", "a.php"}).exit, 1);
    EXPECT_THAT(Bytes(L"outside/report"), HasSubstr("1025"));
}

TEST_F(Strangers, FilesOutsideAreNotReadThroughLinksOfAFolder)
{
    m_folder.Write(L"secret", "<?php\n$a = 'my' secret;\n");
    m_folder.Write(L"p/a.php", "<?php\n");
    fs::create_symlink("../secret", Path(L"p/b.php"));
    Git(L"p", {"init", "-q"});
    Git(L"p", {"add", "."});
    for (const QStringList& arguments :
         {QStringList{"check", "p"}, {"project", "p"}, {"check", "p", "--changed"}}) {
        const SResult result = Run(arguments);
        EXPECT_EQ(result.exit, 0);
        EXPECT_EQ(result.out, "No errors in 1 file.\n");
        EXPECT_EQ(result.err, "code-analyzer: p/b.php: skipped: a link that leads out of the project\n");
    }
    EXPECT_EQ(Run({"check", "p/b.php"}).exit, 1) << "named by the user";
}

TEST_F(Strangers, GitRunsNothingThatARepositoryNames)
{
    m_folder.Write(L"module/m.php", "<?php\n");
    Git(L"module", {"init", "-q"});
    Git(L"module", {"add", "."});
    Git(L"module", {"commit", "-qm", "a"});
    m_folder.Write(L"r/.gitattributes",
                   "*.php filter=evil diff=evil\n*.inc filter=e=v.il\n*.htm filter=e\xFF\n");
    m_folder.Write(L"r/a.php", Wrong);
    m_folder.Write(L"r/b.inc", Wrong);
    m_folder.Write(L"r/c.htm", "<p>");
    Git(L"r", {"init", "-q"});
    Git(L"r", {"submodule", "--quiet", "add", Host::PathToQt(m_folder.Path(L"module")), "sub"});
    Git(L"r", {"add", "."});
    Git(L"r", {"commit", "-qm", "a"});
    m_folder.Write(L"r/s.php", Wrong);
    Git(L"r", {"add", "."});
    const std::string evil = Path(L"evil");
    m_folder.Write(L"evil", "#!/bin/sh\necho \"$0 $*\" >> \"" + Path(L"ran") + "\"\ncat\n");
    ::chmod(evil.c_str(), 0755);
    const QString program = QString::fromStdString(evil);
    const char* const keys[] = {"core.fsmonitor",      "core.sshCommand",     "core.pager",
                                "core.editor",         "core.askPass",        "core.alternateRefsCommand",
                                "pager.diff",          "pager.config",        "pager.rev-parse",
                                "diff.external",       "diff.evil.command",   "diff.evil.textconv",
                                "credential.helper",   "filter.evil.clean",   "filter.evil.smudge",
                                "filter.evil.process", "filter.e=v.il.clean", "gpg.program"};
    for (const wchar_t* repository : {L"r", L"r/sub"})
        for (const char* key : keys)
            Git(repository, {"config", key, program});
    for (const char* key : {"filter.evil.required", "filter.e=v.il.required"})
        Git(L"r", {"config", key, "true"});
    std::ofstream(Path(L"r/.git/config"), std::ios::app) << "[filter \"e\xFF\"]\n\tclean = " << evil << '\n';
    for (const char* hook :
         {"post-index-change", "fsmonitor-watchman", "post-checkout", "reference-transaction"})
        fs::copy_file(evil, Path(L"r/.git/hooks") + '/' + hook);
    Git(L"r", {"config", "core.hooksPath", Host::PathToQt(m_folder.Path(L"r/.git/hooks"))});
    // Touched, so that git has to look at what is in them.
    for (const wchar_t* file : {L"r/a.php", L"r/b.inc", L"r/c.htm", L"r/sub/m.php"})
        fs::last_write_time(Path(file), fs::file_time_type::clock::now() + std::chrono::hours(1));
    fs::remove(Path(L"ran"));
    m_folder.Write(L"r/b.inc", Wrong + "\n");
    EXPECT_THAT(Brief(RunJson({"r", "--changed=HEAD"}, 1)),
                ElementsAre("r/b.inc:3 1025 error", "r/s.php:3 1025 error"));
    EXPECT_THAT(Brief(RunJson({"r", "--changed"}, 1)), ElementsAre("r/s.php:3 1025 error"));
    EXPECT_EQ(Bytes(L"ran"), "");
    // That it would have run.
    QProcess plain;
    plain.setWorkingDirectory(Host::PathToQt(m_folder.Path(L"r")));
    plain.start("git", {"diff", "--name-only", "HEAD"});
    plain.closeWriteChannel();
    EXPECT_TRUE(plain.waitForFinished());
    EXPECT_NE(Bytes(L"ran"), "");
}

TEST_F(Strangers, MessagesArePrintable)
{
    const std::string evil = "\x1B[2J\x07\xC2\x9B\xE2\x80\xAE\r\n::error::x";
    const std::string quoted = json(evil).dump();
    struct SCase
    {
        const char* title;
        std::string settings;
        std::string baseline;
        QStringList arguments;
    };
    const QString name = Host::PathToQt(Host::PathFromBytes(evil));
    const SCase cases[] = {
        {"key", "{" + quoted + ": 1}", Baseline, {"check", "."}},
        {"key that stands there twice",
         "{\"codes\": {" + quoted + ": \"off\", " + quoted + ": \"off\"}}",
         Baseline,
         {"check", "."}},
        {"code", "{\"codes\": {" + quoted + ": \"off\"}}", Baseline, {"check", "."}},
        {"no JSON", "{\"a\": \x1B[2J\xC2\x9B}", Baseline, {"check", "."}},
        {"no JSON, but bytes", "{\"\x1B\xFF\": 1}", Baseline, {"check", "."}},
        {"name of the baseline", "{\"baseline\": " + quoted + "}", Baseline, {"check", "."}},
        {"baseline that is none", "{\"baseline\": \"b.json\"}", "[\x1B]", {"check", "."}},
        {"baseline that is none either",
         "{\"baseline\": \"b.json\"}",
         "{\"version\": " + quoted + "}",
         {"check", "."}},
        {"code of a baseline",
         "{\"baseline\": \"b.json\"}",
         "{\"version\": 1, \"findings\": [{\"file\": \"a\", \"line\": \"b\", \"code\": " + quoted + "}]}",
         {"check", "."}},
        {"gone finding",
         "{\"baseline\": \"b.json\"}",
         "{\"version\": 1, \"findings\": [{\"file\": \"a.php\", \"line\": " + quoted + ", \"code\": 1}]}",
         {"check", "."}},
        {"path", "{}", Baseline, {"check", name}},
        {"project", "{}", Baseline, {"project", name}},
        {"settings", "{}", Baseline, {"check", "--config", name, "."}},
        {"named baseline", "{}", Baseline, {"check", "--baseline", name, "."}},
        {"report", "{}", Baseline, {"check", "-o", name + "/x", "."}},
        {"reference", "{}", Baseline, {"check", ".", "--changed", name}},
        {"folder for settings", "{}", Baseline, {"init", name}},
        {"format", "{}", Baseline, {"check", "--format", name, "."}},
        {"command", "{}", Baseline, {name}},
        {"option", "{}", Baseline, {"check", "--" + name}},
        {"code to explain", "{}", Baseline, {"explain", name}},
        {"tree", "{}", Baseline, {"tree", name}},
    };
    m_folder.Write(L"a.php", "<?php\n");
    Git({}, {"init", "-q"});
    for (const SCase& c : cases) {
        SCOPED_TRACE(c.title);
        m_folder.Write(L"code-analyzer.json", c.settings);
        m_folder.Write(L"b.json", c.baseline);
        const SResult result = Run(c.arguments);
        EXPECT_NE(result.err, "");
        for (const char* bad : {"\x1B", "\x07", "\xC2\x9B", "\xE2\x80\xAE", "\r", "\n::"})
            EXPECT_THAT(result.out + result.err, Not(HasSubstr(bad)));
        std::string rest = result.err;
        std::erase(rest, '\n');
        EXPECT_EQ(Host::PathToBytes(Host::PathFromBytes(rest)), rest);
    }
    const QString made = name.left(name.indexOf('\n'));
    fs::create_directory(Path(L"") + '/' + Host::PathToBytes(Host::PathFromQt(made)));
    EXPECT_THAT(Run({"init", made}).out, Not(HasSubstr("\x1B")));
}

TEST_F(Strangers, NumbersOfABaselineAreNumbers)
{
    m_folder.Write(L"a.php", "<?php\n");
    struct SCase
    {
        const char* code;
        const char* count;
        const char* problem; ///< null: none
    };
    const SCase cases[] = {
        {"1025", "2", nullptr},
        {"1025", "2147483647", nullptr},
        {"1025", "-1", "\"count\" is -1, not a whole number from 1"},
        {"1025", "0", "\"count\" is 0, "},
        {"1025", "1.5", "\"count\" is 1.5, "},
        {"1025", "18446744073709551615", "\"count\" is 18446744073709551615, "},
        {"1025", "\"2\"", "\"count\" is \"2\", "},
        {"5e30", "1", "\"code\" is 5e+30, not a whole number from 1 to 2147483647"},
        {"2147483648", "1", "\"code\" is 2147483648, "},
        {"null", "1", "\"code\" is null, "},
    };
    for (const auto& [code, count, problem] : cases) {
        m_folder.Write(L"b.json",
                       std::string(R"({"version": 1, "findings": [{"file": "a.php", "line": "x", "code": )") +
                           code + ", \"count\": " + count + "}]}");
        const SResult result = Run({"check", "--baseline", "b.json", "a.php"});
        EXPECT_EQ(result.exit, problem ? 2 : 0) << code << ' ' << count;
        EXPECT_THAT(result.err, HasSubstr(problem ? problem : "gone from the baseline"));
    }
}

TEST_F(Strangers, ACurrentFolderThatIsGoneIsExplained)
{
    m_folder.Write(L"abs/a.php", Wrong);
    const QString there = Host::PathToQt(m_folder.Path(L"abs"));
    struct SCase
    {
        QStringList arguments;
        int exit;
        std::string text; ///< part of what is said
    };
    const SCase cases[] = {{{"check", "."}, 2, ".: the current folder is gone"},
                           {{"check", "a.php"}, 2, "a.php: the current folder is gone"},
                           {{"check", "-"}, 1, "stdin.php:3:6: error: "},
                           {{"check", there}, 1, "a.php:3:6: error: "},
                           {{"check", "--changed"}, 2, ".: the current folder is gone"},
                           {{"check", "--generate-baseline", "-"}, 2, "No such file or directory"},
                           {{"check", "-o", "x", "-"}, 2, "cannot write x: No such file or directory"},
                           {{"project", "."}, 2, ".: No such file or directory"},
                           {{"project", there}, 1, "a.php:3:6: error: "},
                           {{"init"}, 2, "cannot be written: No such file or directory"}};
    for (const SCase& c : cases) {
        SCOPED_TRACE(c.arguments.join(' ').toStdString());
        fs::create_directory(Path(L"gone"));
        QProcess process;
        process.setWorkingDirectory(Host::PathToQt(m_folder.Path(L"gone")));
        process.start("sh", QStringList{"-c", "rmdir ../gone && exec \"$0\" \"$@\"", PROGRAM} + c.arguments);
        process.write(Wrong.data(), static_cast<qint64>(Wrong.size()));
        process.closeWriteChannel();
        ASSERT_TRUE(process.waitForFinished());
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(process.exitCode(), c.exit);
        EXPECT_THAT((process.readAllStandardError() + process.readAllStandardOutput()).toStdString(),
                    HasSubstr(c.text));
    }
}

TEST_F(Strangers, AReportThatCannotBeWrittenSaysWhyAndLeavesTheOldOne)
{
    class CPlain : public QProcess
    {
        void setupChildProcess() override { CPlainUser::Become(); }
    };
    constexpr int Files = 2000; // more than one block of a report
    for (int i = 0; i < Files; ++i)
        m_folder.Write(L"p/" + std::to_wstring(i) + L".php", Wrong);
    m_folder.Write(L"closed/old", "old");
    m_folder.Write(L"open/old", "old");
    m_folder.Write(L"open/mine", "old");
    ::chmod(Path(L"open/mine").c_str(), 0444);
    ::chmod(Path(L"closed").c_str(), 0555);
    struct SCase
    {
        const wchar_t* file;
        rlim_t room;        ///< bytes
        const char* reason; ///< null: none
    };
    const SCase cases[] = {
        {L"open/old", 100000, "File too large"},
        {L"open/old", 0, "File too large"},
        {L"closed/new", RLIM_INFINITY, "Permission denied"},
        {L"open/mine", RLIM_INFINITY, "Permission denied"},
        {L"closed/old", 100000, "File too large"},
        {L"none/new", RLIM_INFINITY, "No such file or directory"},
        {L"closed/old", RLIM_INFINITY, nullptr},
    };
    for (const auto& [file, room, reason] : cases) {
        SCOPED_TRACE(Host::PathToBytes(file));
        const std::string before = Bytes(file);
        CPlain process;
        process.setWorkingDirectory(Host::PathToQt(m_folder.Path()));
        {
            const CFullDisk full(room);
            process.start(PROGRAM, {"check", "--format", "json", "-o", Host::PathToQt(file), "p"});
            ASSERT_TRUE(process.waitForStarted());
        }
        ASSERT_TRUE(process.waitForFinished());
        EXPECT_EQ(process.exitCode(), reason ? 2 : 1);
        if (reason) {
            EXPECT_EQ(process.readAllStandardError().toStdString(),
                      "code-analyzer: cannot write " + Host::PathToBytes(file) + ": " + reason + "\n");
            EXPECT_TRUE(Bytes(file) == before);
        } else {
            EXPECT_EQ(json::parse(Bytes(file)).size(), std::size_t{Files});
        }
    }
    ::chmod(Path(L"closed").c_str(), 0755);
}

} // namespace
