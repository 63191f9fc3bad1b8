#include "Report/Output.h"

#include "Application/FilePath.h"
#include "Base/Exception.h"
#include "Report/Printable.h"

#include <unistd.h>

namespace Kesh::CommandLine {

COutput::COutput(const std::string& file) : m_name(Printable(Host::PathFromBytes(file)))
{
    m_file = std::make_unique<QSaveFile>(Host::PathToQt(Host::PathFromBytes(file)));
    // Pipes and devices cannot be replaced; they are written as they are.
    m_file->setDirectWriteFallback(true);
    Check(m_file->open(QIODevice::WriteOnly));
}

void COutput::Write(std::string_view bytes)
{
    if (m_stream)
        std::fwrite(bytes.data(), 1, bytes.size(), m_stream); // main() looks whether all of it arrived
    else
        Check(m_file->write(bytes.data(), static_cast<qint64>(bytes.size())) ==
              static_cast<qint64>(bytes.size()));
}

void COutput::Commit()
{
    if (m_file)
        Check(m_file->commit());
}

bool COutput::IsTerminal() const
{
    return m_stream && ::isatty(::fileno(m_stream));
}

void COutput::Check(bool done) const
{
    if (!done)
        throw Base::CWorkError(Host::PathFromBytes(m_name) + L": " + m_file->errorString().toStdWString(),
                               __LINE__, "apps/code-analyzer/Report/Output");
}

} // namespace Kesh::CommandLine
