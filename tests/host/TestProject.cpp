#include "Base/Exception.h"
#include "HostFixture.h"
#include "Limits.h"
#include "ProjectManager/FileFinder.h"

#include <filesystem>
#include <random>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace Kesh;

namespace {

class ProjectFolder : public CHostTest
{
};

TEST_F(ProjectFolder, ListsKnownFilesSortedAndLeavesOutWhatIsNotTheUsers)
{
    for (const wchar_t* name :
         {L"b.php", L"a.PHP", L"sub/c.css", L"sub/deep/d.html", L"readme.md", L".git/e.php", L"vendor/f.php",
          L"sub/node_modules/g.php", L"vendor.php", L".hidden.php"})
        m_folder.Write(name, "");
    std::filesystem::create_directory_symlink("..", Host::PathToBytes(m_folder.Path(L"sub/loop")));
    m_host.OpenProject(m_folder.Path());
    std::vector<std::wstring> expected;
    for (const wchar_t* name :
         {L".hidden.php", L"a.PHP", L"b.php", L"sub/c.css", L"sub/deep/d.html", L"vendor.php"})
        expected.push_back(m_folder.Path(name));
    EXPECT_EQ(Project().GetFiles(), expected);
    EXPECT_EQ(Project().GetFilesCache()->files, expected);
    EXPECT_TRUE(Project().BelongsToProject(m_folder.Path(L"b.php")));
    EXPECT_FALSE(Project().BelongsToProject(m_folder.Path(L"vendor/f.php")));
    EXPECT_FALSE(Project().BelongsToProject(m_folder.Path(L"readme.md")));
}

TEST_F(ProjectFolder, AFileMadeLaterJoinsWhereFilesAreListed)
{
    m_host.OpenProject(m_folder.Path());
    m_host.Documents().OpenFile(m_folder.Write(L"new.php", ""));
    m_host.Documents().OpenFile(m_folder.Write(L"vendor/other.php", ""));
    m_host.Documents().OpenFile(m_folder.Write(L"note.txt", ""));
    EXPECT_EQ(Project().GetFiles(), std::vector<std::wstring>{m_folder.Path(L"new.php")});
}

TEST_F(ProjectFolder, ClosingIsAnnouncedWhileItIsStillOpen)
{
    const std::wstring file = m_folder.Write(L"a.php", "");
    std::string log;
    // The host closes its project once more after `log` is gone.
    const boost::signals2::scoped_connection parsed =
        m_host.Parser().GetProjectParsedSignal().connect([&] { log += "parsed "; });
    const boost::signals2::scoped_connection closed =
        Project().GetCloseProjectSignal().connect([&](ProjectManager::IProjectManager* pm) {
            EXPECT_TRUE(pm->IsOpened());
            EXPECT_EQ(pm->GetFiles().size(), 1u);
            pm->SetData(L"errors", L"kept");
            log += pm->IsReopening() ? "reopening " : "closing ";
        });
    m_host.OpenProject(m_folder.Path());
    m_host.ReopenProject({file});
    m_host.Project().Close();
    m_host.Project().Close();
    EXPECT_EQ(log, "parsed reopening parsed closing ");
    EXPECT_FALSE(Project().IsOpened());
    EXPECT_EQ(Project().GetFilesCache(), nullptr);
    EXPECT_EQ(Project().GetData(L"errors"), L"");
    m_host.OpenProject(m_folder.Path());
    EXPECT_EQ(Project().GetData(L"errors"), L"kept");
}

TEST_F(ProjectFolder, AFolderThatCannotBeReadIsRefused)
{
    const std::wstring file = m_folder.Write(L"a.php", "");
    EXPECT_THROW(m_host.OpenProject(file), Base::CWorkError);
    EXPECT_THROW(m_host.OpenProject(m_folder.Path(L"none")), Base::CWorkError);
    EXPECT_FALSE(Project().IsOpened());
}

TEST_F(ProjectFolder, DataItemsStayInTheirFolder)
{
    m_host.OpenProject(m_folder.Path());
    const std::wstring text = L"<errors>\n\u00E9\U0001F600\n";
    Project().SetData(L"errors", text);
    EXPECT_EQ(Project().GetData(L"errors"), text);
    EXPECT_EQ(Project().GetData(L"other"), L"");
    for (const wchar_t* name : {L"", L"../escape", L"/etc/x", L".gitignore"}) {
        Project().SetData(name, L"x");
        EXPECT_EQ(Project().GetData(name), L"");
    }
    EXPECT_FALSE(std::filesystem::exists(Host::PathToBytes(m_folder.Path(L"escape"))));
}

TEST_F(ProjectFolder, DataThatCannotBeKeptIsReported)
{
    m_host.OpenProject(m_folder.Path());
    std::wstring reason;
    m_host.Project().GetDataErrorSignal().connect([&](const std::wstring& r) { reason = r; });
    const std::wstring inTheWay = m_folder.Write(L".code-analyzer", "a file");
    Project().SetData(L"errors", L"x");
    EXPECT_EQ(reason, L"Not a directory");
    std::filesystem::remove(Host::PathToBytes(inTheWay));
    Project().SetData(L"errors", L"old");
    {
        const CFullDisk full;
        Project().SetData(L"errors", L"x");
    }
    EXPECT_EQ(reason, L"File too large");
    EXPECT_EQ(Project().GetData(L"errors"), L"old");
}

TEST_F(ProjectFolder, WhatAKilledSaveHasLeftIsRemovedLater)
{
    m_host.OpenProject(m_folder.Path());
    const struct
    {
        const wchar_t* name;
        int hours; ///< since it was last written
        bool stays;
    } cases[] = {{L".code-analyzer-part-0123456789abcdef", 2, false},
                 {L".code-analyzer-part-0123456789abcdee", 0, true},
                 {L".code-analyzer-part-0123456789abcdefg", 2, true},
                 {L".code-analyzer-part-0123456789abcdeF", 2, true},
                 {L"errors.backup", 2, true},
                 {L"errors.aBcDeF", 2, true}};
    const auto path = [&](const wchar_t* name) {
        return Host::PathToBytes(m_folder.Path(std::wstring(L".code-analyzer/") + name));
    };
    for (const auto& c : cases) {
        m_folder.Write(std::wstring(L".code-analyzer/") + c.name, "x");
        std::filesystem::last_write_time(path(c.name), std::filesystem::file_time_type::clock::now() -
                                                           std::chrono::hours(c.hours));
    }
    Project().SetData(L"errors", L"new");
    for (const auto& c : cases)
        EXPECT_EQ(std::filesystem::exists(path(c.name)), c.stays) << path(c.name);
    EXPECT_EQ(Project().GetData(L"errors"), L"new");
}

TEST_F(ProjectFolder, NothingIsReadOrWrittenThroughLinksOfAProject)
{
    namespace fs = std::filesystem;
    const auto path = [&](const wchar_t* name) { return Host::PathToBytes(m_folder.Path(name)); };
    struct SCase
    {
        const char* title;
        const wchar_t* link;
        const wchar_t* target;
    };
    const SCase cases[] = {
        {"the text", L"p/.code-analyzer/errors", L"outside/errors"},
        {"a text that is not there", L"p/.code-analyzer/errors", L"outside/new"},
        {"the folder", L"p/.code-analyzer", L"outside"},
        {"a folder that is not there", L"p/.code-analyzer", L"nowhere"},
    };
    for (const SCase& c : cases) {
        SCOPED_TRACE(c.title);
        for (const wchar_t* folder : {L"p", L"outside"})
            fs::remove_all(path(folder));
        m_folder.Write(L"p/a.php", "");
        const std::string part = path(L"outside/.code-analyzer-part-0123456789abcdef");
        m_folder.Write(L"outside/.code-analyzer-part-0123456789abcdef", "");
        fs::last_write_time(part, fs::file_time_type::clock::now() - std::chrono::hours(2));
        m_folder.Write(L"outside/errors", "old");
        fs::create_directories(fs::path(path(c.link)).parent_path());
        fs::create_symlink(path(c.target), path(c.link));
        m_host.OpenProject(m_folder.Path(L"p"));
        std::wstring reason;
        const boost::signals2::scoped_connection told =
            m_host.Project().GetDataErrorSignal().connect([&](const std::wstring& r) { reason = r; });
        EXPECT_EQ(Project().GetData(L"errors"), L"");
        Project().SetData(L"errors", L"x");
        EXPECT_NE(reason.find(L"is a link"), std::wstring::npos);
        EXPECT_EQ(Host::ReadFileBytes(m_folder.Path(L"outside/errors")), "old");
        EXPECT_TRUE(fs::exists(part));
        EXPECT_EQ(std::distance(fs::directory_iterator(path(L"outside")), fs::directory_iterator()), 2);
        EXPECT_FALSE(fs::exists(path(L"nowhere")));
        m_host.Project().Close();
    }
}

TEST_F(ProjectFolder, WhatIsKeptIsAlwaysIgnored)
{
    const std::wstring ignore = m_folder.Path(L".code-analyzer/.gitignore");
    m_host.OpenProject(m_folder.Path());
    {
        const CFullDisk full;
        Project().SetData(L"errors", L"x");
    }
    EXPECT_LT(Host::StampOf(ignore).size, 0);
    Project().SetData(L"errors", L"x");
    EXPECT_EQ(Host::ReadFileBytes(ignore), "*\n");
    m_folder.Write(L".code-analyzer/.gitignore", "mine");
    Project().SetData(L"errors", L"x");
    EXPECT_EQ(Host::ReadFileBytes(ignore), "mine");
}

TEST_F(ProjectFolder, AKilledSaveLeavesTheOldOrTheNewText)
{
    m_host.OpenProject(m_folder.Path());
    const std::wstring texts[] = {std::wstring(300000, L'a'), std::wstring(400000, L'b')};
    Project().SetData(L"errors", texts[0]);
    std::mt19937 random(7);
    int killedWhileSaving = 0;
    for (int round = 0; round < 40; ++round) {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            for (int i = 0;; ++i)
                Project().SetData(L"errors", texts[i % 2]);
        }
        std::this_thread::sleep_for(std::chrono::microseconds(500 + random() % 6000));
        ::kill(child, SIGKILL);
        int status = 0;
        ::waitpid(child, &status, 0);
        killedWhileSaving += WIFSIGNALED(status);
        const std::wstring found = Project().GetData(L"errors");
        ASSERT_TRUE(found == texts[0] || found == texts[1]) << "length " << found.size();
    }
    EXPECT_EQ(killedWhileSaving, 40);
}

TEST(FileFinder, LinksAreFollowedWithinTheProjectOnly)
{
    const CTempFolder folder;
    const auto link = [&](const wchar_t* name, const char* target) {
        std::filesystem::create_symlink(target, Host::PathToBytes(folder.Path(name)));
    };
    folder.Write(L"outside.php", "");
    folder.Write(L"p/other/b.php", "");
    folder.Write(L"p/src/a.php", "");
    link(L"p/src/in.php", "a.php");
    link(L"p/src/aside.php", "../other/b.php");
    link(L"p/src/out.php", "../../outside.php");
    link(L"p/src/round.php", "../src/out.php");
    link(L"p/src/gone.php", "nothing.php");
    ASSERT_EQ(::mkfifo(Host::PathToBytes(folder.Path(L"p/src/pipe.php")).c_str(), 0600), 0);
    link(L"p/src/topipe.php", "pipe.php");
    link(L"p/src/tofolder.php", "../other");
    link(L"byname", "p/src");
    struct SCase
    {
        const wchar_t* folder;
        std::wstring project; ///< of the query
        std::vector<std::wstring> found;
        std::vector<std::wstring> foreign;
    };
    const SCase cases[] = {
        {L"p/src", {}, {L"a.php", L"in.php"}, {L"aside.php", L"out.php", L"round.php"}},
        {L"p/src", folder.Path(L"p"), {L"a.php", L"aside.php", L"in.php"}, {L"out.php", L"round.php"}},
        {L"p/src", folder.Path(L"x"), {L"a.php", L"in.php"}, {L"aside.php", L"out.php", L"round.php"}},
        {L"byname", {}, {L"a.php", L"in.php"}, {L"aside.php", L"out.php", L"round.php"}},
    };
    for (const SCase& c : cases) {
        ProjectManager::SFileQuery query;
        query.takesFile = [](const std::wstring&) { return true; };
        query.project = c.project;
        std::vector<std::wstring> foreign;
        query.onLeadsOut = [&](const std::wstring& path) { foreign.push_back(Host::FileName(path)); };
        std::vector<std::wstring> found = ProjectManager::FindFiles(folder.Path(c.folder), query);
        for (std::wstring& path : found)
            path = Host::FileName(path);
        std::sort(foreign.begin(), foreign.end());
        EXPECT_EQ(found, c.found);
        EXPECT_EQ(foreign, c.foreign);
    }
}

TEST(FileFinder, AnUnreadableOrVanishedFolderIsReportedAndTheRestFound)
{
    const CTempFolder folder;
    folder.Write(L"a.php", "");
    std::wstring failed;
    ProjectManager::SFileQuery query;
    query.takesFile = [](const std::wstring&) { return true; };
    query.onError = [&](const std::wstring& path, const std::string&) { failed = path; };
    query.entersFolder = [&](const std::wstring& name) {
        // It goes away between being seen and being read.
        std::filesystem::remove(Host::PathToBytes(folder.Path(name)));
        return true;
    };
    std::filesystem::create_directory(Host::PathToBytes(folder.Path(L"gone")));
    EXPECT_EQ(ProjectManager::FindFiles(folder.Path(), query).size(), 1u);
    EXPECT_EQ(failed, folder.Path(L"gone/"));
}

} // namespace
