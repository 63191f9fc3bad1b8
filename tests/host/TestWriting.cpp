// What becomes of a file that is written, and of everything around it.

#include "Base/Exception.h"
#include "Files/FileIO.h"
#include "Files/FilePath.h"
#include "Limits.h"
#include "TempFolder.h"

#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <iostream>
#include <optional>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Kesh;
using namespace std::string_literals;

namespace {

const std::string Old = "old text of the file";

std::ptrdiff_t CountIn(const std::wstring& folder)
{
    return std::distance(std::filesystem::directory_iterator(Host::PathToBytes(folder)),
                         std::filesystem::directory_iterator());
}

struct stat StatusOf(const std::wstring& path)
{
    struct stat status = {};
    EXPECT_EQ(::lstat(Host::PathToBytes(path).c_str(), &status), 0);
    return status;
}

/// What the write says; empty: it is done.
std::wstring Write(const std::wstring& path, const std::string& bytes, const Host::SWriteRules& rules = {})
{
    try {
        Host::WriteFileBytes(path, bytes, rules);
        return {};
    } catch (const Base::CWorkError& fault) {
        return fault.GetMessage();
    }
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

TEST(FileIO, ASaveKeepsWhatTheFileIs)
{
    struct SCase
    {
        const char* title;
        std::function<void(const std::string& file, const std::string& folder)> prepare;
        bool another = true; ///< whether another file may stand in its place
        bool needsRoot = false;
    };
    const SCase cases[] = {
        {"mode", [](const auto& file, const auto&) { ::chmod(file.c_str(), 0640); }},
        {"mode that the mask would not give",
         [](const auto& file, const auto&) { ::chmod(file.c_str(), 0777); }},
        {"hard link",
         [](const auto& file, const auto& folder) {
             EXPECT_EQ(::link(file.c_str(), (folder + "/b").c_str()), 0);
         },
         false},
        {"a link",
         [](const auto& file, const auto& folder) {
             ::rename(file.c_str(), (folder + "/b").c_str());
             EXPECT_EQ(::symlink("b", file.c_str()), 0);
         }},
        {"owner and group",
         [](const auto& file, const auto&) { EXPECT_EQ(::chown(file.c_str(), 1234, 4321), 0); }, true, true},
        {"owner that it cannot be given",
         [](const auto& file, const auto&) {
             EXPECT_EQ(::chown(file.c_str(), 1234, 4321), 0);
             ::chmod(file.c_str(), 0666);
         },
         false, true},
    };
    for (const SCase& c : cases) {
        SCOPED_TRACE(c.title);
        if (c.needsRoot && ::geteuid() != 0) {
            std::cout << "not tested without the superuser's rights: " << c.title << "\n";
            continue;
        }
        const CTempFolder folder;
        const std::wstring file = folder.Write(L"a", Old);
        c.prepare(Host::PathToBytes(file), Host::PathToBytes(folder.Path()));
        const std::ptrdiff_t count = CountIn(folder.Path());
        const std::wstring real = Host::ResolvedPath(file);
        const struct stat before = StatusOf(real);
        const mode_t kind = StatusOf(file).st_mode;
        const std::string texts[] = {"new\0bytes"s, std::string(300000, 'x'), ""};
        for (const std::string& text : texts) {
            std::optional<CPlainUser> plain;
            if (!c.another)
                plain.emplace();
            EXPECT_EQ(Write(file, text), L"");
            plain.reset();
            EXPECT_EQ(Host::ReadFileBytes(file), text);
            const struct stat after = StatusOf(real);
            EXPECT_EQ(StatusOf(file).st_mode, kind);
            EXPECT_EQ(after.st_mode, before.st_mode);
            EXPECT_EQ(after.st_uid, before.st_uid);
            EXPECT_EQ(after.st_gid, before.st_gid);
            EXPECT_EQ(after.st_nlink, before.st_nlink);
            if (!c.another) {
                EXPECT_EQ(after.st_ino, before.st_ino);
            }
            EXPECT_EQ(CountIn(folder.Path()), count) << "nothing is left beside it";
        }
    }
}

TEST(FileIO, AFolderThatTakesNoOtherFileNeedsTheUsersWord)
{
    const CTempFolder folder;
    const std::wstring file = folder.Write(L"f/a", Old);
    const std::wstring own = folder.Write(L"f/b", Old);
    ::chmod(Host::PathToBytes(own).c_str(), 0444);
    ::chmod(Host::PathToBytes(folder.Path(L"f")).c_str(), 0555);
    {
        const CPlainUser plain;
        EXPECT_THROW(Host::WriteFileBytes(file, "new"), Host::CNoCopyBeside);
        EXPECT_EQ(Host::ReadFileBytes(file), Old);
        EXPECT_EQ(Write(file, "new", {true, true}), L"");
        EXPECT_EQ(Host::ReadFileBytes(file), "new");
        EXPECT_EQ(Write(own, "new", {true, true}), L"Permission denied");
        EXPECT_EQ(Write(folder.Path(L"f/c"), "new", {true, true}), L"Permission denied");
        const CFullDisk full(100);
        EXPECT_EQ(Write(file, std::string(200, 'x'), {true, true}), L"File too large");
    }
    EXPECT_EQ(Host::ReadFileBytes(file), "new");
    ::chmod(Host::PathToBytes(folder.Path(L"f")).c_str(), 0755);
}

TEST(FileIO, AFileThatIsMountedOnItsOwnIsWrittenOver)
{
    const CTempFolder folder;
    const std::string from = Host::PathToBytes(folder.Write(L"from/a", Old));
    const std::wstring to = folder.Write(L"to/a", "");
    enum { NoMounts = 77 };
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        // Mounts are the superuser's, or those of whoever is one in a world of his own.
        if ((::unshare(CLONE_NEWNS) != 0 && ::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) ||
            ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            ::mount(from.c_str(), Host::PathToBytes(to).c_str(), nullptr, MS_BIND, nullptr) != 0)
            ::_exit(NoMounts);
        ::_exit(Write(to, "new").empty() && CountIn(folder.Path(L"to")) == 1 ? 0 : 1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    if (WEXITSTATUS(status) == NoMounts)
        GTEST_SKIP() << "the system lets nothing be mounted";
    EXPECT_EQ(status, 0);
    EXPECT_EQ(Host::ReadFileBytes(Host::PathFromBytes(from)), "new");
}

TEST(FileIO, AWriteThatIsNotToFollowLinksDoesNot)
{
    namespace fs = std::filesystem;
    const CTempFolder folder;
    const std::wstring file = folder.Write(L"f/a", Old);
    fs::create_symlink("a", Host::PathToBytes(folder.Path(L"f/link")));
    fs::create_symlink("none", Host::PathToBytes(folder.Path(L"f/dangling")));
    fs::create_symlink("f", Host::PathToBytes(folder.Path(L"g")));
    for (const wchar_t* name : {L"f/link", L"f/dangling", L"g/a", L"g/new"})
        EXPECT_NE(Write(folder.Path(name), "x", {false}).find(L"is a link"), std::wstring::npos);
    EXPECT_EQ(Host::ReadFileBytes(file), Old);
    EXPECT_EQ(CountIn(folder.Path(L"f")), 3);
    EXPECT_EQ(Write(file, "x", {false}), L"");
    // Where they are followed, one that leads to nothing yet makes its target.
    EXPECT_EQ(Write(folder.Path(L"f/dangling"), "x"), L"");
    EXPECT_EQ(Host::ReadFileBytes(folder.Path(L"f/none")), "x");
}

} // namespace
