#include "ChangedFiles.h"

#include "Base/Exception.h"
#include "Files/FilePath.h"

#include <QProcess>

namespace Kesh::CommandLine {

namespace {

[[noreturn]] void Fail(const QString& what)
{
    throw Base::CWorkError(L"--changed: " + what.toStdWString(), __LINE__, "apps/code-analyzer/ChangedFiles");
}

/// A repository may be a stranger's, settings included, and many of these name programs. For our questions
/// git runs none of them and asks no other machine.
class CQuietGit
{
public:
    explicit CQuietGit(const std::wstring& folder)
        : m_folder(Host::PathToQt(folder)), m_environment(QProcessEnvironment::systemEnvironment())
    {
        for (const auto& [name, value] : {std::pair{"GIT_ALLOW_PROTOCOL", "none"},
                                          {"GIT_TERMINAL_PROMPT", "0"},
                                          {"GIT_ASKPASS", "false"},
                                          {"GIT_NO_LAZY_FETCH", "1"}})
            m_environment.insert(name, value);
        m_settings = m_environment.value("GIT_CONFIG_COUNT").toInt();
        Set("core.fsmonitor", "false");
        Set("core.hooksPath", "/dev/null");
        SilenceFilters();
    }

    QByteArray Run(const QStringList& arguments, int emptyStatus = 0) const
    {
        QProcess git;
        git.setWorkingDirectory(m_folder);
        git.setProcessEnvironment(m_environment);
        git.start("git", QStringList{"--no-pager"} + arguments);
        if (!git.waitForStarted())
            Fail("git cannot be run: " + git.errorString());
        git.waitForFinished(-1);
        const QByteArray output = git.readAllStandardOutput();
        if (git.exitStatus() == QProcess::NormalExit &&
            (git.exitCode() == 0 || (git.exitCode() == emptyStatus && output.isEmpty())))
            return output;
        Fail(QString::fromUtf8(git.readAllStandardError()).simplified());
    }

private:
    /// Goes before the settings of the repository and of the user.
    void Set(const QString& key, const QString& value)
    {
        const QString number = QString::number(m_settings++);
        m_environment.insert("GIT_CONFIG_KEY_" + number, key);
        m_environment.insert("GIT_CONFIG_VALUE_" + number, value);
        m_environment.insert("GIT_CONFIG_COUNT", QString::number(m_settings));
    }

    /// A file that was touched is put through them to be compared.
    void SilenceFilters()
    {
        constexpr int NoneFound = 1;
        const QByteArray keys = Run({"config", "-z", "--name-only", "--get-regexp", "^filter\\."}, NoneFound);
        for (const QByteArray& key : keys.split('\0')) {
            const QString name = Host::PathToQt(Host::PathFromBytes(key.toStdString()));
            const QString filter = name.left(name.lastIndexOf('.') + 1);
            if (filter.isEmpty())
                continue;
            for (const char* command : {"clean", "smudge", "process"})
                Set(filter + command, {});
            Set(filter + "required", "false");
        }
    }

    QString m_folder;
    QProcessEnvironment m_environment;
    int m_settings = 0; ///< in the environment
};

} // namespace

std::vector<std::wstring> ChangedFiles(const std::wstring& folder, const std::string& ref)
{
    const CQuietGit git(folder);
    QByteArray top = git.Run({"rev-parse", "--show-toplevel"});
    top.chop(1);
    // A submodule has settings of its own, which would hold for the look into it.
    QStringList arguments{"diff",
                          "--name-only",
                          "-z",
                          "--diff-filter=d",
                          "--no-renames",
                          "--no-ext-diff",
                          "--no-textconv",
                          "--ignore-submodules=all"};
    if (ref.empty())
        arguments << "--cached";
    else
        arguments << "--merge-base"
                  << "--end-of-options" << Host::PathToQt(Host::PathFromBytes(ref));
    // The top is a resolved path; the user may have come by a link.
    const std::wstring resolved = Host::ResolvedPath(folder);
    const std::wstring root = Host::PathFromBytes(top.toStdString());
    std::vector<std::wstring> files;
    for (const QByteArray& name : git.Run(arguments << "--").split('\0')) {
        if (name.isEmpty())
            continue;
        const std::wstring file = root + L'/' + Host::PathFromBytes(name.toStdString());
        files.push_back(file.starts_with(resolved) ? Host::AbsolutePath(folder) + file.substr(resolved.size())
                                                   : file);
    }
    return files;
}

} // namespace Kesh::CommandLine
