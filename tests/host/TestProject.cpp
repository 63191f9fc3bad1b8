#include "Base/Exception.h"
#include "HostFixture.h"
#include "Limits.h"
#include "ProjectManager/FileFinder.h"

#include <filesystem>
#include <random>
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
    } cases[] = {{L"errors.aBcDeF", 2, false},
                 {L"errors.GhIjKl", 0, true},
                 {L"errors.backup1", 2, true},
                 {L"errors.oldest.x", 2, true},
                 {L"other.aBcDeF", 2, true}};
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
