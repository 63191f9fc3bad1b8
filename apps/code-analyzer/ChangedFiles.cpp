#include "ChangedFiles.h"

#include "Application/FilePath.h"
#include "Base/Exception.h"

#include <QProcess>

namespace Kesh::CommandLine {

namespace {

[[noreturn]] void Fail(const QString& what)
{
    throw Base::CWorkError(L"--changed: " + what.toStdWString(), __LINE__, "apps/code-analyzer/ChangedFiles");
}

QByteArray RunGit(const std::wstring& folder, const QStringList& arguments)
{
    QProcess git;
    git.setWorkingDirectory(Host::PathToQt(folder));
    git.start("git", arguments);
    if (!git.waitForStarted())
        Fail("git cannot be run: " + git.errorString());
    git.waitForFinished(-1);
    if (git.exitStatus() != QProcess::NormalExit || git.exitCode() != 0)
        Fail(QString::fromUtf8(git.readAllStandardError()).trimmed());
    return git.readAllStandardOutput();
}

} // namespace

std::vector<std::wstring> ChangedFiles(const std::wstring& folder, const std::string& ref)
{
    QByteArray top = RunGit(folder, {"rev-parse", "--show-toplevel"});
    top.chop(1);
    QStringList arguments{"diff", "--name-only", "-z", "--diff-filter=d", "--no-renames", "--no-ext-diff"};
    if (ref.empty())
        arguments << "--cached";
    else
        arguments << "--merge-base"
                  << "--end-of-options" << Host::PathToQt(Host::PathFromBytes(ref));
    // The top is a resolved path; the user may have come by a link.
    const std::wstring resolved = Host::ResolvedPath(folder);
    const std::wstring root = Host::PathFromBytes(top.toStdString());
    std::vector<std::wstring> files;
    for (const QByteArray& name : RunGit(folder, arguments << "--").split('\0')) {
        if (name.isEmpty())
            continue;
        const std::wstring file = root + L'/' + Host::PathFromBytes(name.toStdString());
        files.push_back(file.starts_with(resolved) ? Host::AbsolutePath(folder) + file.substr(resolved.size())
                                                   : file);
    }
    return files;
}

} // namespace Kesh::CommandLine
