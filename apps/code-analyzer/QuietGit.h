#pragma once

#include <QByteArray>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <string>

namespace Kesh::CommandLine {

/// Asks git. A repository may be a stranger's, settings included, and many of these name programs. For our
/// questions git runs none of them and asks no other machine. Every operation throws Base::CWorkError with a
/// text for the user.
class CQuietGit
{
public:
    /// Of the repository that `folder` lies in.
    explicit CQuietGit(const std::wstring& folder);

    /// Before questions for which git looks at files: one that was touched is put through filters to be
    /// compared.
    void SilenceFilters();
    /// What git prints. A run that prints nothing and ends with `emptyStatus` is none that failed.
    QByteArray Run(const QStringList& arguments, int emptyStatus = 0) const;
    /// The bytes of a file that git keeps, by its object. Throws for more than Host::MaxFileBytes.
    std::string ReadBlob(const std::string& object) const;

private:
    void Set(const QString& key, const QString& value);

    QString m_folder;
    QProcessEnvironment m_environment;
    int m_settings = 0; ///< in the environment
};

} // namespace Kesh::CommandLine
