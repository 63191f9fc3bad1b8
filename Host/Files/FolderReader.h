#pragma once

#include <cstdint>
#include <dirent.h>
#include <memory>
#include <string>
#include <string_view>

namespace Kesh::Host {

/// Reads what a folder holds, once and in the system's order. What an entry is comes with its name wherever
/// the file system tells: only links, and the entries of file systems that do not, cost a look of their own.
/// One thread.
class CFolderReader
{
public:
    enum class EKind : std::uint8_t { File, Folder, Other };

    explicit CFolderReader(const std::string& path);

    /// Goes to the first or the next entry but "." and ".."; false behind the last one, or when the folder
    /// cannot be read.
    bool Next();
    /// Of the entry, until the next call of Next().
    std::string_view Name() const { return m_name; }
    /// What the entry is, or what the link leads to; one that leads nowhere is something else.
    EKind Kind();
    bool IsLink();
    /// Why the folder could not be read to its end, in the system's words; empty: it could.
    std::string Problem() const;

private:
    struct SClose
    {
        void operator()(DIR* folder) const { ::closedir(folder); }
    };
    /// The mode of the entry, or of what it leads to; 0: there is none.
    unsigned Mode(bool followsLinks) const;

    std::unique_ptr<DIR, SClose> m_folder;
    const dirent* m_entry = nullptr;
    std::string_view m_name;
    int m_error = 0; ///< of the system
};

} // namespace Kesh::Host
