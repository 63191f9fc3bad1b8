#pragma once

#include "Base/Exception.h"

#include <string>
#include <string_view>
#include <sys/stat.h>

namespace Kesh::Host {

/// Closes what it holds.
class CDescriptor
{
public:
    explicit CDescriptor(int fd = -1) : m_fd(fd) {}
    CDescriptor(CDescriptor&& other) noexcept : m_fd(other.Release()) {}
    CDescriptor& operator=(CDescriptor&& other) noexcept;
    ~CDescriptor();

    int Get() const { return m_fd; }
    explicit operator bool() const { return m_fd >= 0; }
    int Release();

private:
    int m_fd;
};

/// How a write may reach its file.
struct SWriteRules
{
    /// Whether the file, and the folder it lies in, may be links.
    bool followsLinks = true;
    /// Whether a file whose folder takes no other one may be written in place with no copy of it beside: a
    /// crash in the middle would leave a half of it.
    bool inPlaceWithoutCopy = false;
};

/// Thrown where only SWriteRules::inPlaceWithoutCopy helps, so that users can be asked.
class CNoCopyBeside final : public Base::CWorkError
{
public:
    using CWorkError::CWorkError;
};

/// New bytes of a file, which take the place of the old ones as a whole, or not at all. Owner, group, mode
/// and hard links stay: where another file in its place would lose one of them, or cannot be put there (it is
/// mounted on its own), the old one is written over once the new bytes lie complete beside it.
/// Every operation throws Base::CWorkError with the system's reason, which does not name the path. One
/// thread.
class CFileReplacement
{
public:
    explicit CFileReplacement(const std::wstring& path, const SWriteRules& rules = {});
    CFileReplacement(const CFileReplacement&) = delete;
    CFileReplacement& operator=(const CFileReplacement&) = delete;
    /// What has not been committed is dropped.
    ~CFileReplacement();

    void Write(std::string_view bytes);
    /// Once, at the end.
    void Commit();

    /// Whether a file of this name is what a killed writer may have left behind.
    static bool IsPartName(std::string_view name);

private:
    void OpenFolder(const std::wstring& path, bool followsLinks);
    void OpenPart(bool inPlaceWithoutCopy);
    void Flush();
    bool TakesPlace();
    void WriteOver();
    void DropPart();

    CDescriptor m_folder;
    std::string m_name; ///< of the file, in its folder
    bool m_exists = false;
    struct stat m_old = {}; ///< of a file that exists
    CDescriptor m_part;     ///< the new bytes
    std::string m_pending;  ///< of them, what is still to be written
    std::string m_partName; ///< in the folder; empty: they lie in memory
};

} // namespace Kesh::Host
