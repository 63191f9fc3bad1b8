#pragma once

#include "Files/FileReplacement.h"

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

namespace Kesh::CommandLine {

/// Where a report goes: a stream, or a file that takes the place of the old one only when it is complete; a
/// pipe or device is written to as it is.
/// Every operation throws Base::CWorkError when the system refuses.
class COutput
{
public:
    /// Standard output; not owned.
    explicit COutput(std::FILE* stream) : m_stream(stream) {}
    /// `file` is bytes, as the user gave them.
    explicit COutput(const std::string& file);
    COutput(const COutput&) = delete;
    COutput& operator=(const COutput&) = delete;
    ~COutput();

    void Write(std::string_view bytes);
    /// Once, at the end.
    void Commit();
    /// Whether people read along.
    bool IsTerminal() const;
    /// Standard output; null for what has a name.
    std::FILE* Stream() const { return m_device ? nullptr : m_stream; }

private:
    std::FILE* m_stream = nullptr;
    std::FILE* m_device = nullptr; ///< the same, when it is owned
    std::wstring m_name;
    std::unique_ptr<Host::CFileReplacement> m_file;
};

} // namespace Kesh::CommandLine
