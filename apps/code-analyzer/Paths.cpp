#include "Paths.h"

#include "Commands.h"
#include "Files/FilePath.h"
#include "ProjectManager/FileFinder.h"

#include <algorithm>
#include <filesystem>
#include <unordered_set>

namespace Kesh::CommandLine {

namespace {

using Configuration::MatchesPath;

/// Which files of folders are wanted, by the command line and by the project's settings.
class CSelection
{
public:
    CSelection(const SOptions& options, const TProjectRules& rules) : m_options(options), m_rules(rules) {}

    /// A file in a folder that is looked into; `below` is its path below that folder.
    bool TakesFile(const std::wstring& below, const std::wstring& absolute) const
    {
        return IsIncluded(below, absolute) && !Excludes(below, absolute);
    }
    bool EntersFolder(const std::wstring& below, const std::wstring& absolute) const
    {
        return !ProjectManager::IsLeftOut(Host::FileName(below)) && !Excludes(below, absolute);
    }
    /// Where links may lead from a folder, which has a slash behind it.
    std::wstring ProjectOf(const std::wstring& folder) const { return m_rules->For(folder)->settings.root; }
    bool Excludes(const std::wstring& path, const std::wstring& absolute) const
    {
        return (!m_options.exclude.empty() && MatchesPath(m_options.exclude, Host::PathToBytes(path))) ||
               m_rules->For(absolute)->settings.Excludes(absolute);
    }

private:
    bool IsIncluded(const std::wstring& below, const std::wstring& absolute) const
    {
        if (!m_options.include.empty())
            return MatchesPath(m_options.include, Host::PathToBytes(below));
        return m_rules->For(absolute)->settings.Includes(absolute);
    }

    const SOptions& m_options;
    const TProjectRules& m_rules;
};

std::wstring WithSlash(const std::wstring& folder)
{
    return folder.ends_with(L'/') ? folder : folder + L'/';
}

std::wstring FolderOf(const std::wstring& file)
{
    return file.substr(0, file.rfind(L'/') + 1);
}

/// How a file of a folder is shown when the folder is `shown`.
std::wstring ShownBelow(const std::wstring& shown, const std::wstring& folder, const std::wstring& file)
{
    return (shown == L"." ? std::wstring() : WithSlash(shown)) +
           file.substr(folder.size() + !folder.ends_with(L'/'));
}

/// What a search in `folder` looks for. The selection outlives it.
ProjectManager::SFileQuery QueryFor(const std::wstring& folder, const CSelection& selection)
{
    const std::wstring prefix = WithSlash(Host::AbsolutePath(folder));
    ProjectManager::SFileQuery query;
    query.project = selection.ProjectOf(prefix);
    query.onLeadsOut = &PrintLeadsOut;
    query.takesFile = [&selection, prefix](const std::wstring& path) {
        return selection.TakesFile(path, prefix + path);
    };
    query.entersFolder = [&selection, prefix](const std::wstring& path) {
        return selection.EntersFolder(path, prefix + path);
    };
    return query;
}

std::vector<std::wstring> FilesOf(const std::wstring& folder, const CSelection& selection,
                                  const TPathError& onError)
{
    ProjectManager::SFileQuery query = QueryFor(folder, selection);
    query.onError = onError;
    return ProjectManager::FindFiles(folder, query);
}

/// Of the changed files, those that a check of `path` would have taken, by the names that the user knows.
std::vector<SChangedFile> ChangedFilesOf(const std::wstring& path, bool isFolder, const SOptions& options,
                                         const CSelection& selection)
{
    const std::wstring absolute = Host::AbsolutePath(path);
    const std::wstring folder = isFolder ? absolute : FolderOf(absolute);
    const ProjectManager::SFileQuery query = QueryFor(absolute, selection);
    std::vector<SChangedFile> files;
    for (SChangedFile& file : ChangedFiles(folder, options.changedRef)) {
        const bool wanted =
            isFolder ? ProjectManager::IsFoundIn(absolute, file.path, query) : file.path == absolute;
        if (!wanted)
            continue;
        const std::wstring shown = !isFolder ? path : ShownBelow(path, absolute, file.path);
        if (isFolder && file.staged.object.empty() && ProjectManager::IsForeign(absolute, file.path, query))
            PrintLeadsOut(shown);
        else if (!file.isLink || !options.changedRef.empty()) // what a staged link leads to is staged itself
            files.push_back({shown, std::move(file.staged), false});
    }
    return files;
}

std::shared_ptr<const SStaged> StagedOf(const SChangedFile& file)
{
    return file.staged.object.empty() ? nullptr : std::make_shared<const SStaged>(file.staged);
}

/// Whether only git may know the file, since it is staged and gone from the disk.
bool MayBeStaged(const std::wstring& path, const SOptions& options, const std::error_code& error)
{
    std::error_code ignored;
    return options.changed && options.changedRef.empty() && error == std::errc::no_such_file_or_directory &&
           std::filesystem::is_directory(Host::PathToBytes(FolderOf(Host::AbsolutePath(path))), ignored);
}

} // namespace

void PrintLeadsOut(const std::wstring& path)
{
    PrintProblem(path, "skipped: a link that leads out of the project");
}

std::vector<SInput> CollectInputs(const SOptions& options, const TProjectRules& rules,
                                  const TPathError& onError)
{
    const CSelection selection(options, rules);
    std::vector<SInput> inputs;
    std::unordered_set<std::wstring> seen;
    const bool mayRepeat = options.paths.size() > 1; // a search finds each file once
    const auto add = [&](SInput input) {
        if (!input.place)
            input.place = std::make_shared<SPlace>(input.shown.size(), Host::AbsolutePath(input.shown));
        if (!mayRepeat || seen.insert(input.Absolute()).second)
            inputs.push_back(std::move(input));
    };
    for (const std::string& bytes : options.paths) {
        if (bytes == "-") {
            add({Host::PathFromBytes(options.stdinPath), {}, true, true, {}});
            continue;
        }
        const std::wstring path = Host::PathFromBytes(bytes);
        std::error_code error;
        if (!path.starts_with(L'/') && std::filesystem::current_path(error).empty()) {
            onError(path, "the current folder is gone");
            continue;
        }
        const bool isFolder = std::filesystem::is_directory(bytes, error);
        const bool mayBeStaged = error && MayBeStaged(path, options, error);
        if (error && !mayBeStaged) {
            onError(path, error.message());
        } else if (options.changed) {
            std::vector<SChangedFile> files = ChangedFilesOf(path, isFolder, options, selection);
            if (mayBeStaged && files.empty())
                onError(path, error.message());
            for (SChangedFile& file : files)
                add({std::move(file.path), {}, false, !isFolder, StagedOf(file)});
        } else if (isFolder) {
            // What is below a folder is found under a plain path: only the folder's own has to be resolved.
            const auto place =
                std::make_shared<const SPlace>(WithSlash(path).size(), WithSlash(Host::AbsolutePath(path)));
            std::vector<std::wstring> files = FilesOf(path, selection, onError);
            inputs.reserve(inputs.size() + files.size());
            for (std::wstring& file : files)
                add({std::move(file), place, false, false, {}});
        } else if (!selection.Excludes(path, Host::AbsolutePath(path))) {
            add({path, {}, false, true, {}});
        }
    }
    return inputs;
}

} // namespace Kesh::CommandLine
