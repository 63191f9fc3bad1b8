#include "ChangedFiles.h"

#include "Files/FilePath.h"
#include "QuietGit.h"

namespace Kesh::CommandLine {

namespace {

/// One entry of `git diff --raw`: ":OLDMODE MODE OLDOBJECT OBJECT STATUS".
struct SRawEntry
{
    explicit SRawEntry(const QByteArray& entry)
    {
        const QList<QByteArray> fields = entry.split(' ');
        constexpr int Count = 5;
        if (fields.size() != Count)
            return;
        mode = fields[1];
        object = fields[3];
    }
    bool IsFile() const { return mode.startsWith("100"); }
    bool IsLink() const { return mode == "120000"; }
    /// While a merge has conflicts there are several versions of a file.
    bool IsUnmerged() const { return mode == "000000"; }

    QByteArray mode;
    QByteArray object;
};

QStringList Question(const std::string& ref)
{
    // A submodule has settings of its own, which would hold for the look into it.
    QStringList question{"diff",
                         "--raw",
                         "-z",
                         "--no-abbrev",
                         "--no-relative",
                         "--diff-filter=d",
                         "--no-renames",
                         "--no-ext-diff",
                         "--no-textconv",
                         "--ignore-submodules=all"};
    if (ref.empty())
        question << "--cached";
    else
        question << "--merge-base"
                 << "--end-of-options" << Host::PathToQt(Host::PathFromBytes(ref));
    return question << "--";
}

} // namespace

std::vector<SChangedFile> ChangedFiles(const std::wstring& folder, const std::string& ref)
{
    CQuietGit git(folder);
    git.SilenceFilters();
    QByteArray top = git.Run({"rev-parse", "--show-toplevel"});
    top.chop(1);
    // The top is a resolved path; the user may have come by a link.
    const std::wstring resolved = Host::ResolvedPath(folder);
    const std::wstring root = Host::PathFromBytes(top.toStdString());
    const QList<QByteArray> answer = git.Run(Question(ref)).split('\0');
    std::vector<SChangedFile> files;
    for (int i = 0; i + 1 < answer.size(); i += 2) {
        const SRawEntry entry(answer[i]);
        if (!entry.IsFile() && !entry.IsLink() && !entry.IsUnmerged())
            continue;
        const std::wstring file = root + L'/' + Host::PathFromBytes(answer[i + 1].toStdString());
        SChangedFile& changed = files.emplace_back();
        changed.path =
            file.starts_with(resolved) ? Host::AbsolutePath(folder) + file.substr(resolved.size()) : file;
        changed.isLink = entry.IsLink();
        if (ref.empty() && entry.IsFile())
            changed.staged = {folder, entry.object.toStdString()};
    }
    return files;
}

std::string ReadStaged(const SStaged& staged)
{
    return CQuietGit(staged.repository).ReadBlob(staged.object);
}

} // namespace Kesh::CommandLine
