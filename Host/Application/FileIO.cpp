#include "Application/FileIO.h"

#include "Application/FilePath.h"
#include "Base/CommonString.h"
#include "Base/Exception.h"

#include <QSaveFile>
#include <algorithm>
#include <cctype>
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
    throw Base::CWorkError(Base::CCommonString::FromUtf8(message), line, "Host/Application/FileIO");
}

class CDescriptor
{
public:
    explicit CDescriptor(int fd) : m_fd(fd) {}
    CDescriptor(const CDescriptor&) = delete;
    CDescriptor& operator=(const CDescriptor&) = delete;
    ~CDescriptor()
    {
        if (m_fd >= 0)
            ::close(m_fd);
    }
    int Get() const { return m_fd; }

private:
    int m_fd;
};

} // namespace

std::string ReadFileBytes(const std::wstring& path)
{
    std::string bytes;
    bytes.resize(ReadFileInto(bytes, path).size());
    return bytes;
}

std::string_view ReadFileInto(std::string& buffer, const std::wstring& path)
{
    // Without O_NONBLOCK, opening a named pipe would wait for its other end.
    const CDescriptor file(::open(PathToBytes(path).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
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
            Fail("larger than " + std::to_string(MaxFileBytes >> 20) + " MiB", __LINE__);
        // Regular files are read in one piece: short of what was asked for means the end.
        if (count == 0 || (expected > 0 && used >= expected && used < buffer.size()))
            break;
    }
    return std::string_view(buffer).substr(0, used);
}

void WriteFileBytes(const std::wstring& path, std::string_view bytes)
{
    // Qt's own texts name no reason for some failures ("Unknown error"), the system's always do.
    const auto failUnless = [](bool done, int line) {
        if (!done)
            Fail(std::strerror(errno ? errno : EIO), line);
    };
    const QString name = PathToQt(path);
    errno = 0;
    QSaveFile file(name);
    if (!file.open(QIODevice::WriteOnly)) {
        struct stat status = {};
        if (::stat(PathToBytes(path).c_str(), &status) == 0 && S_ISDIR(status.st_mode))
            Fail("is a folder", __LINE__);
        failUnless(false, __LINE__);
    }
    failUnless(file.write(bytes.data(), static_cast<qint64>(bytes.size())) ==
                   static_cast<qint64>(bytes.size()),
               __LINE__);
    // Up to here the bytes may lie in memory only, and commit() would put an empty file in the place of the
    // old one without a word when there is no room for them.
    failUnless(file.flush(), __LINE__);
    failUnless(::fsync(file.handle()) == 0 || errno == EINVAL || errno == ENOTSUP, __LINE__);
    failUnless(file.commit(), __LINE__);
}

void RemoveAbandonedCopies(const std::wstring& path)
{
    namespace fs = std::filesystem;
    constexpr auto Age = std::chrono::hours(1); // what is younger may be being written
    constexpr std::size_t SuffixSize = 7;
    const fs::path file(PathToBytes(path));
    const std::string prefix = file.filename().string() + '.';
    const auto isCopy = [&](const std::string& name) {
        return name.size() == file.filename().string().size() + SuffixSize && name.starts_with(prefix) &&
               std::all_of(name.begin() + static_cast<std::ptrdiff_t>(prefix.size()), name.end(),
                           [](unsigned char c) { return std::isalpha(c); });
    };
    std::error_code error;
    for (fs::directory_iterator entry(file.parent_path(), error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code ignored;
        if (isCopy(entry->path().filename().string()) && entry->is_regular_file(ignored) &&
            entry->last_write_time(ignored) < fs::file_time_type::clock::now() - Age)
            fs::remove(entry->path(), ignored);
    }
}

SFileStamp StampOf(const std::wstring& path)
{
    struct stat status = {};
    if (::stat(PathToBytes(path).c_str(), &status) != 0)
        return {};
    return {status.st_mtim.tv_sec, status.st_mtim.tv_nsec, status.st_size};
}

} // namespace Kesh::Host
