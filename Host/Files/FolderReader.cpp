#include "Files/FolderReader.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>

namespace Kesh::Host {

CFolderReader::CFolderReader(const std::string& path) : m_folder(::opendir(path.c_str()))
{
    if (!m_folder)
        m_error = errno;
}

bool CFolderReader::Next()
{
    if (!m_folder)
        return false;
    do {
        errno = 0;
        m_entry = ::readdir(m_folder.get());
        if (!m_entry) {
            m_error = errno;
            return false;
        }
        m_name = m_entry->d_name;
    } while (m_name == "." || m_name == "..");
    return true;
}

CFolderReader::EKind CFolderReader::Kind()
{
    switch (m_entry->d_type) {
    case DT_REG: return EKind::File;
    case DT_DIR: return EKind::Folder;
    case DT_LNK:
    case DT_UNKNOWN: break;
    default: return EKind::Other;
    }
    const unsigned mode = Mode(true);
    return S_ISREG(mode) ? EKind::File : S_ISDIR(mode) ? EKind::Folder : EKind::Other;
}

bool CFolderReader::IsLink()
{
    return m_entry->d_type == DT_UNKNOWN ? S_ISLNK(Mode(false)) : m_entry->d_type == DT_LNK;
}

unsigned CFolderReader::Mode(bool followsLinks) const
{
    struct stat status = {};
    const int flags = followsLinks ? 0 : AT_SYMLINK_NOFOLLOW;
    return ::fstatat(::dirfd(m_folder.get()), m_entry->d_name, &status, flags) == 0 ? status.st_mode : 0;
}

std::string CFolderReader::Problem() const
{
    return m_error ? std::strerror(m_error) : "";
}

} // namespace Kesh::Host
