// What git would commit is what is checked before a commit, whatever lies on the disk.

#include "CliFixture.h"

#include <filesystem>
#include <sys/stat.h>

using nlohmann::json;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace fs = std::filesystem;

namespace {

const std::string Good = "<?php\n$a = 1;\n";
const std::string Bad = "<?php\n$a = 1;\n$b = = 2;\n";

class Staged : public CCliTest
{
protected:
    void Init(const wchar_t* repository)
    {
        fs::create_directories(Path(repository));
        Git(repository, {"init", "-q"});
    }
    void WriteHook(const wchar_t* file, const std::string& check)
    {
        m_folder.Write(file, "#!/bin/sh\nexec " PROGRAM " check " + check + "\n");
        ::chmod(Path(file).c_str(), 0755);
    }
};

TEST_F(Staged, IsWhatAHookChecks)
{
    struct SCase
    {
        const char* title;
        std::string staged;
        std::string disk; ///< empty: removed
        bool commits;
    };
    const SCase cases[] = {
        {"bad, mended on disk", Bad, Good, false},
        {"good, half-typed on disk", Good, Bad, true},
        {"bad, removed from disk", Bad, "", false},
        {"good, removed from disk", Good, "", true},
    };
    Init(L"r"); // the first commit is one like the others
    WriteHook(L"r/.git/hooks/pre-commit", "--changed --quiet");
    for (const SCase& c : cases) {
        SCOPED_TRACE(c.title);
        m_folder.Write(L"r/src/a.php", c.staged + "// " + c.title + '\n');
        Git(L"r", {"add", "."});
        if (c.disk.empty())
            fs::remove(Path(L"r/src/a.php"));
        else
            m_folder.Write(L"r/src/a.php", c.disk);
        const int status = TryGit(L"r", {"commit", "-qm", "a"});
        EXPECT_EQ(status == 0, c.commits) << m_gitSaid.toStdString();
        EXPECT_EQ(m_gitSaid.contains("src/a.php:3:6: error"), !c.commits) << m_gitSaid.toStdString();
    }
}

// git sets variables for hooks, which differ by how it is called and where.
TEST_F(Staged, IsFoundWhereverAndHoweverOneCommits)
{
    Init(L"module");
    m_folder.Write(L"module/m.php", Good);
    Git(L"module", {"add", "."});
    Git(L"module", {"commit", "-qm", "a"});
    Init(L"r");
    m_folder.Write(L"r/src/a.php", Good);
    Git(L"r", {"submodule", "--quiet", "add", Kesh::Host::PathToQt(m_folder.Path(L"module")), "sub"});
    Git(L"r", {"add", "."});
    Git(L"r", {"commit", "-qm", "a"});
    Git(L"r", {"worktree", "add", "-q", "../tree"});
    WriteHook(L"r/.git/hooks/pre-commit", "src --changed --quiet");
    WriteHook(L"r/.git/modules/sub/hooks/pre-commit", ". --changed --quiet");
    struct SCase
    {
        const wchar_t* file;
        const wchar_t* folder;
        QStringList commit;
    };
    const SCase cases[] = {
        {L"r/src/a.php", L"r", {"commit", "-qam", "b"}},
        {L"r/src/a.php", L"r/src", {"commit", "-qam", "b"}},
        {L"r/src/a.php", L"r/src", {"commit", "-qm", "b", "a.php"}},
        {L"tree/src/a.php", L"tree", {"commit", "-qam", "b"}},
        {L"tree/src/a.php", L"tree/src", {"commit", "-qm", "b", "a.php"}},
        {L"r/sub/m.php", L"r/sub", {"commit", "-qam", "b"}},
    };
    for (const SCase& c : cases) {
        SCOPED_TRACE(c.commit.join(' ').toStdString() + " in " + Path(c.folder));
        m_folder.Write(c.file, Bad);
        EXPECT_NE(TryGit(c.folder, c.commit), 0);
        EXPECT_THAT(m_gitSaid.toStdString(), HasSubstr(".php:3:6: error"));
        m_folder.Write(c.file, Good + "\n");
        EXPECT_EQ(TryGit(c.folder, c.commit), 0) << m_gitSaid.toStdString();
        m_folder.Write(c.file, Good);
        EXPECT_EQ(TryGit(c.folder, {"commit", "-qam", "c"}), 0) << m_gitSaid.toStdString();
    }
    // Of the submodule only which commit it is at is staged.
    m_folder.Write(L"r/sub/m.php", Bad);
    Git(L"r/sub", {"commit", "-qam", "b", "--no-verify"});
    Git(L"r", {"add", "."});
    EXPECT_EQ(RunJson({"r", "--changed"}, 0), json::array());
}

TEST_F(Staged, IsKnownByItsNewName)
{
    Init(L"r");
    m_folder.Write(L"r/a.php", Bad);
    Git(L"r", {"config", "diff.relative", "true"});
    Git(L"r", {"add", "."});
    Git(L"r", {"commit", "-qm", "a"});
    fs::create_directories(Path(L"r/src"));
    Git(L"r", {"mv", "a.php", "src/b.php"});
    fs::remove(Path(L"r/src/b.php"));
    fs::create_symlink("b.php", Path(L"r/src/link.php"));
    Git(L"r", {"add", "src/link.php"});
    const std::vector<std::string> found{"r/src/b.php:3 1025 error"};
    EXPECT_EQ(Brief(RunJson({"r", "--changed"}, 1)), found);
    EXPECT_EQ(Brief(RunJson({"r/src", "--changed"}, 1)), found);
    EXPECT_EQ(Brief(RunJson({"r/src/b.php", "--changed"}, 1)), found);
    EXPECT_EQ(Brief(RunJson({"r", "--jobs", "2", "--changed"}, 1)), found);
    const SResult gone = Run({"check", "r/a.php", "--changed"});
    EXPECT_EQ(gone.exit, 2) << "neither staged nor there";
    EXPECT_THAT(gone.err, HasSubstr("r/a.php: No such file or directory"));
}

TEST_F(Staged, IsReportedWhenGitDoesNotGiveIt)
{
    Init(L"r");
    m_folder.Write(L"r/a.php", Bad);
    m_folder.Write(L"r/b.php", Bad + "\n");
    Git(L"r", {"add", "."});
    Git(L"r", {"rev-parse", ":b.php"});
    const std::string object = m_gitSaid.trimmed().toStdString();
    fs::remove(Path(L"r/.git/objects") + '/' + object.substr(0, 2) + '/' + object.substr(2));
    const SResult result = Run({"check", "r", "--changed", "--quiet"});
    EXPECT_EQ(result.exit, 2);
    EXPECT_THAT(result.out, HasSubstr("r/a.php:3:6: error"));
    EXPECT_THAT(result.err, HasSubstr("r/b.php: --changed: "));
}

} // namespace
