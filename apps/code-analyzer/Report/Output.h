#pragma once

#include <QFileDevice>
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

    void Write(std::string_view bytes);
    /// Once, at the end.
    void Commit();
    /// Whether people read along.
    bool IsTerminal() const;
    /// Null for a file.
    std::FILE* Stream() const { return m_stream; }

private:
    void Check(bool done) const;

    std::FILE* m_stream = nullptr;
    std::string m_name;
    std::unique_ptr<QFileDevice> m_file;
};

} // namespace Kesh::CommandLine
