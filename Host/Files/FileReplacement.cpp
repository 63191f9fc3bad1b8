#include "Files/FileReplacement.h"

#include "Base/CommonString.h"
#include "Files/FilePath.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <random>
#include <sys/mman.h>
#include <unistd.h>

namespace Kesh::Host {

namespace {

constexpr std::string_view PartPrefix = ".code-analyzer-part-";
constexpr std::size_t PartDigits = 16;
constexpr std::size_t BlockSize = 1 << 16;
constexpr mode_t AllModes = 07777;

[[noreturn]] void Fail(const std::string& message, int line)
{
    throw Base::CWorkError(Base::CCommonString::FromUtf8(message), line, "Host/Files/FileReplacement");
}

void FailUnless(bool done, int line)
{
    if (!done)
        Fail(std::strerror(errno ? errno : EIO), line);
}

std::string NewPartName()
{
    std::random_device random;
    char digits[PartDigits + 1];
    std::snprintf(digits, sizeof digits, "%08x%08x", random(), random());
    return std::string(PartPrefix) + digits;
}

/// Whether all of it was written.
bool WriteAll(int file, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = ::write(file, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

/// Up to here the bytes may lie in memory only.
bool Settle(int file)
{
    return ::fsync(file) == 0 || errno == EINVAL || errno == ENOTSUP;
}

bool Copy(int from, int to)
{
    std::array<char, BlockSize> block;
    for (off_t at = 0;;) {
        const ssize_t count = ::pread(from, block.data(), block.size(), at);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return count == 0;
        if (!WriteAll(to, {block.data(), static_cast<std::size_t>(count)}))
            return false;
        at += count;
    }
}

/// Writes all bytes of one file over another, once there is room for them.
bool CopyOver(int from, off_t size, int to, off_t oldSize)
{
    if (size > oldSize) {
        const int fault = ::posix_fallocate(to, 0, size);
        if (fault != 0 && fault != EOPNOTSUPP && fault != EINVAL) {
            errno = fault;
            return false;
        }
    }
    return ::lseek(to, 0, SEEK_SET) == 0 && Copy(from, to) && ::ftruncate(to, size) == 0 && Settle(to);
}

} // namespace

CDescriptor& CDescriptor::operator=(CDescriptor&& other) noexcept
{
    std::swap(m_fd, other.m_fd);
    return *this;
}

CDescriptor::~CDescriptor()
{
    if (m_fd >= 0)
        ::close(m_fd);
}

int CDescriptor::Release()
{
    return std::exchange(m_fd, -1);
}

CFileReplacement::CFileReplacement(const std::wstring& path, const SWriteRules& rules)
{
    OpenFolder(path, rules.followsLinks);
    m_exists = ::fstatat(m_folder.Get(), m_name.c_str(), &m_old, AT_SYMLINK_NOFOLLOW) == 0;
    if (m_exists) {
        if (S_ISLNK(m_old.st_mode))
            Fail("is a link, and nothing is written through it", __LINE__);
        if (S_ISDIR(m_old.st_mode))
            Fail("is a folder", __LINE__);
        if (!S_ISREG(m_old.st_mode))
            Fail("not a regular file", __LINE__);
        // Another file in its place would not be refused.
        FailUnless(::faccessat(m_folder.Get(), m_name.c_str(), W_OK, AT_EACCESS) == 0, __LINE__);
    }
    OpenPart(rules.inPlaceWithoutCopy);
}

CFileReplacement::~CFileReplacement()
{
    DropPart();
}

void CFileReplacement::OpenFolder(const std::wstring& path, bool followsLinks)
{
    const std::filesystem::path file(PathToBytes(followsLinks ? LinkTarget(path) : path));
    m_name = file.filename().string();
    std::string folder = file.parent_path().string();
    if (folder.empty())
        folder = ".";
    struct stat status = {};
    if (!followsLinks && ::lstat(folder.c_str(), &status) == 0 && S_ISLNK(status.st_mode))
        Fail("its folder is a link, and nothing is written through it", __LINE__);
    m_folder = CDescriptor(
        ::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC | (followsLinks ? 0 : O_NOFOLLOW)));
    FailUnless(static_cast<bool>(m_folder), __LINE__);
    if (m_name.empty())
        Fail("is a folder", __LINE__);
}

void CFileReplacement::OpenPart(bool inPlaceWithoutCopy)
{
    // What was nobody else's to read stays so from the beginning.
    const mode_t mode = m_exists ? 0600 : 0666;
    m_partName = NewPartName();
    m_part = CDescriptor(::openat(m_folder.Get(), m_partName.c_str(),
                                  O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
    if (m_part)
        return;
    m_partName.clear();
    if (!m_exists || (errno != EACCES && errno != EPERM && errno != EROFS))
        Fail(std::strerror(errno), __LINE__);
    if (!inPlaceWithoutCopy)
        throw CNoCopyBeside(L"its folder takes no other file: " +
                                Base::CCommonString::FromUtf8(std::strerror(errno)),
                            __LINE__, "Host/Files/FileReplacement");
    m_part = CDescriptor(::memfd_create("part", MFD_CLOEXEC));
    FailUnless(static_cast<bool>(m_part), __LINE__);
}

void CFileReplacement::Write(std::string_view bytes)
{
    m_pending += bytes;
    if (m_pending.size() >= BlockSize)
        Flush();
}

void CFileReplacement::Flush()
{
    FailUnless(WriteAll(m_part.Get(), m_pending), __LINE__);
    m_pending.clear();
}

void CFileReplacement::Commit()
{
    Flush();
    FailUnless(Settle(m_part.Get()), __LINE__);
    if (!TakesPlace())
        WriteOver();
    DropPart();
}

/// Puts the new file in the place of the old one; false when something of that would be lost, or it cannot
/// be.
bool CFileReplacement::TakesPlace()
{
    if (m_partName.empty())
        return false;
    if (m_exists) {
        struct stat status = {};
        FailUnless(::fstat(m_part.Get(), &status) == 0, __LINE__);
        const bool isOthers = status.st_uid != m_old.st_uid || status.st_gid != m_old.st_gid;
        if (m_old.st_nlink > 1 || (isOthers && ::fchown(m_part.Get(), m_old.st_uid, m_old.st_gid) != 0) ||
            ::fchmod(m_part.Get(), m_old.st_mode & AllModes) != 0)
            return false;
    }
    if (::renameat(m_folder.Get(), m_partName.c_str(), m_folder.Get(), m_name.c_str()) != 0) {
        FailUnless(m_exists, __LINE__);
        return false;
    }
    m_partName.clear();
    return true;
}

void CFileReplacement::WriteOver()
{
    const CDescriptor file(::openat(m_folder.Get(), m_name.c_str(), O_RDWR | O_NOFOLLOW | O_CLOEXEC));
    FailUnless(static_cast<bool>(file), __LINE__);
    struct stat status = {};
    FailUnless(::fstat(file.Get(), &status) == 0, __LINE__);
    const off_t oldSize = status.st_size;
    FailUnless(::fstat(m_part.Get(), &status) == 0, __LINE__);
    const CDescriptor old(::memfd_create("old", MFD_CLOEXEC));
    FailUnless(old && Copy(file.Get(), old.Get()), __LINE__);
    if (CopyOver(m_part.Get(), status.st_size, file.Get(), oldSize))
        return;
    const std::string reason = std::strerror(errno);
    if (CopyOver(old.Get(), oldSize, file.Get(), oldSize) || m_partName.empty())
        Fail(reason, __LINE__);
    Fail(reason + "; the new text is in " + std::exchange(m_partName, {}), __LINE__);
}

void CFileReplacement::DropPart()
{
    if (!m_partName.empty())
        ::unlinkat(m_folder.Get(), m_partName.c_str(), 0);
    m_partName.clear();
}

bool CFileReplacement::IsPartName(std::string_view name)
{
    return name.size() == PartPrefix.size() + PartDigits && name.starts_with(PartPrefix) &&
           name.find_first_not_of("0123456789abcdef", PartPrefix.size()) == std::string_view::npos;
}

} // namespace Kesh::Host
