#include "Report/Fingerprint.h"

#include "Files/FilePath.h"

#include <QCryptographicHash>

namespace Kesh::CommandLine {

std::string CFingerprints::Next(const Findings::SFinding& finding)
{
    std::string subject =
        m_file + '\n' + std::to_string(finding.error.code) + '\n' + Host::PathToBytes(finding.line.text);
    subject += '\n' + std::to_string(m_alike[subject]++);
    return QCryptographicHash::hash(QByteArray::fromRawData(subject.data(), static_cast<int>(subject.size())),
                                    QCryptographicHash::Md5)
        .toHex()
        .toStdString();
}

} // namespace Kesh::CommandLine
