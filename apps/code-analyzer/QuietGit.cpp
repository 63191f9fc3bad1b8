#include "QuietGit.h"

#include "Base/Exception.h"
#include "Files/FileIO.h"
#include "Files/FilePath.h"

#include <QProcess>
#include <utility>

namespace Kesh::CommandLine {

namespace {

[[noreturn]] void Fail(const QString& what)
{
    throw Base::CWorkError(L"--changed: " + what.toStdWString(), __LINE__, "apps/code-analyzer/QuietGit");
}

void Start(QProcess& git, const QStringList& arguments)
{
    git.start("git", QStringList{"--no-pager"} + arguments);
    if (!git.waitForStarted())
        Fail("git cannot be run: " + git.errorString());
}

} // namespace

CQuietGit::CQuietGit(const std::wstring& folder)
    : m_folder(Host::PathToQt(folder)), m_environment(QProcessEnvironment::systemEnvironment())
{
    // What a hook is told of its repository would be taken for that of every folder, which finds its own.
    if (!m_environment.contains("GIT_WORK_TREE"))
        m_environment.remove("GIT_DIR");
    for (const auto& [name, value] : {std::pair{"GIT_ALLOW_PROTOCOL", "none"},
                                      {"GIT_TERMINAL_PROMPT", "0"},
                                      {"GIT_ASKPASS", "false"},
                                      {"GIT_NO_LAZY_FETCH", "1"}})
        m_environment.insert(name, value);
    m_settings = m_environment.value("GIT_CONFIG_COUNT").toInt();
    Set("core.fsmonitor", "false");
    Set("core.hooksPath", "/dev/null");
}

QByteArray CQuietGit::Run(const QStringList& arguments, int emptyStatus) const
{
    QProcess git;
    git.setWorkingDirectory(m_folder);
    git.setProcessEnvironment(m_environment);
    Start(git, arguments);
    git.waitForFinished(-1);
    const QByteArray output = git.readAllStandardOutput();
    if (git.exitStatus() == QProcess::NormalExit &&
        (git.exitCode() == 0 || (git.exitCode() == emptyStatus && output.isEmpty())))
        return output;
    Fail(QString::fromUtf8(git.readAllStandardError()).simplified());
}

std::string CQuietGit::ReadBlob(const std::string& object) const
{
    const QByteArray size = Run({"cat-file", "-s", QString::fromStdString(object)});
    if (size.trimmed().toULongLong() > Host::MaxFileBytes)
        Fail(QString::fromStdString(Host::TooLarge()));
    // Unlike "show", this puts nothing through converters of text.
    return Run({"cat-file", "blob", QString::fromStdString(object)}).toStdString();
}

void CQuietGit::Set(const QString& key, const QString& value)
{
    // Goes before the settings of the repository and of the user.
    const QString number = QString::number(m_settings++);
    m_environment.insert("GIT_CONFIG_KEY_" + number, key);
    m_environment.insert("GIT_CONFIG_VALUE_" + number, value);
    m_environment.insert("GIT_CONFIG_COUNT", QString::number(m_settings));
}

void CQuietGit::SilenceFilters()
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

} // namespace Kesh::CommandLine
