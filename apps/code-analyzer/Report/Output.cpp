#include "Report/Output.h"

#include "Application/FilePath.h"
#include "Base/Exception.h"
#include "Report/Printable.h"

#include <QFile>
#include <QSaveFile>
#include <filesystem>
#include <unistd.h>

namespace Kesh::CommandLine {

COutput::COutput(const std::string& file) : m_name(Printable(Host::PathFromBytes(file)))
{
    const QString name = Host::PathToQt(Host::PathFromBytes(file));
    std::error_code ignored;
    const auto kind = std::filesystem::status(file, ignored).type();
    if (kind == std::filesystem::file_type::fifo || kind == std::filesystem::file_type::character) {
        m_file = std::make_unique<QFile>(name);
    } else {
        auto replacing = std::make_unique<QSaveFile>(name);
        replacing->setDirectWriteFallback(true); // in a folder that takes no other file
        m_file = std::move(replacing);
    }
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
    if (!m_file)
        return;
    Check(m_file->flush()); // without its end it must not take the place of the old one
    if (auto* replacing = qobject_cast<QSaveFile*>(m_file.get()))
        Check(replacing->commit());
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
