#include "Files/FileIO.h"

#include "Base/CommonString.h"
#include "Base/Exception.h"
#include "Files/FilePath.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace Kesh::Host {

namespace {

[[noreturn]] void Fail(const std::string& message, int line)
{
    throw Base::CWorkError(Base::CCommonString::FromUtf8(message), line, "Host/Files/FileIO");
}

} // namespace

std::string TooLarge()
{
    return "larger than " + std::to_string(MaxFileBytes >> 20) + " MiB";
}

std::string ReadFileStart(const std::wstring& path, std::size_t size)
{
    const CDescriptor file(::open(PathToBytes(path).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status = {};
    if (file.Get() < 0 || ::fstat(file.Get(), &status) != 0 || !S_ISREG(status.st_mode))
        return {};
    std::string bytes(size, '\0');
    const ssize_t count = ::read(file.Get(), bytes.data(), size);
    bytes.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    return bytes;
}

std::string ReadFileBytes(const std::wstring& path, bool followsLinks)
{
    std::string bytes;
    bytes.resize(ReadFileInto(bytes, path, followsLinks).size());
    return bytes;
}

std::string_view ReadFileInto(std::string& buffer, const std::wstring& path, bool followsLinks)
{
    // Without O_NONBLOCK, opening a named pipe would wait for its other end.
    const CDescriptor file(::open(PathToBytes(path).c_str(),
                                  O_RDONLY | O_CLOEXEC | O_NONBLOCK | (followsLinks ? 0 : O_NOFOLLOW)));
    if (file.Get() < 0)
        Fail(std::strerror(errno), __LINE__);
    struct stat status = {};
    if (::fstat(file.Get(), &status) != 0)
        Fail(std::strerror(errno), __LINE__);
    if (S_ISDIR(status.st_mode))
        Fail("is a folder", __LINE__);
    if (!S_ISREG(status.st_mode))
        Fail("not a regular file", __LINE__);

    const auto expected = static_cast<std::size_t>(status.st_size);
    // The size is only a hint: the file may grow while it is read.
    if (const std::size_t wanted = std::min(expected, MaxFileBytes) + 1; buffer.size() < wanted)
        buffer.resize(wanted);
    std::size_t used = 0;
    for (;;) {
        if (used == buffer.size())
            buffer.resize(buffer.size() * 2);
        const ssize_t count = ::read(file.Get(), buffer.data() + used, buffer.size() - used);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            Fail(std::strerror(errno), __LINE__);
        used += static_cast<std::size_t>(count);
        if (used > MaxFileBytes)
            Fail(TooLarge(), __LINE__);
        // Regular files are read in one piece: short of what was asked for means the end.
        if (count == 0 || (expected > 0 && used >= expected && used < buffer.size()))
            break;
    }
    return std::string_view(buffer).substr(0, used);
}

void WriteFileBytes(const std::wstring& path, std::string_view bytes, const SWriteRules& rules)
{
    CFileReplacement file(path, rules);
    file.Write(bytes);
    file.Commit();
}

bool IsWritable(const std::wstring& path)
{
    return ::faccessat(AT_FDCWD, PathToBytes(path).c_str(), W_OK, AT_EACCESS) == 0;
}

void RemoveAbandonedParts(const std::wstring& folder)
{
    namespace fs = std::filesystem;
    constexpr auto Age = std::chrono::hours(1); // what is younger may be being written
    std::error_code error;
    for (fs::directory_iterator entry(PathToBytes(folder), error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code ignored;
        struct stat status = {};
        if (CFileReplacement::IsPartName(entry->path().filename().string()) &&
            ::lstat(entry->path().c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
            status.st_uid == ::geteuid() &&
            entry->last_write_time(ignored) < fs::file_time_type::clock::now() - Age)
            fs::remove(entry->path(), ignored);
    }
}

SFileStamp StampOf(const std::wstring& path)
{
    struct stat status = {};
    if (::stat(PathToBytes(path).c_str(), &status) != 0)
        return {};
    return {status.st_mtim.tv_sec,
            status.st_mtim.tv_nsec,
            status.st_size,
            status.st_ctim.tv_sec,
            status.st_ctim.tv_nsec,
            static_cast<long long>(status.st_ino),
            static_cast<long long>(status.st_dev)};
}

} // namespace Kesh::Host
