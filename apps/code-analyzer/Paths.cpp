#include "Paths.h"

#include "ChangedFiles.h"
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
        return MatchesPath(m_options.exclude, Host::PathToBytes(path)) ||
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

/// Of the changed files, those that a check of `path` would have taken.
std::vector<std::wstring> ChangedFilesOf(const std::wstring& path, bool isFolder, const SOptions& options,
                                         const CSelection& selection)
{
    const std::wstring absolute = Host::AbsolutePath(path);
    const std::wstring folder = isFolder ? absolute : absolute.substr(0, absolute.rfind(L'/') + 1);
    const ProjectManager::SFileQuery query = QueryFor(absolute, selection);
    std::vector<std::wstring> files;
    for (const std::wstring& file : ChangedFiles(folder, options.changedRef)) {
        if (!isFolder && file == absolute)
            files.push_back(path);
        if (!isFolder || !ProjectManager::IsFoundIn(absolute, file, query))
            continue;
        const std::wstring shown = (path == L"."           ? L""
                                    : path.ends_with(L'/') ? path
                                                           : path + L'/') +
                                   file.substr(absolute.size() + !absolute.ends_with(L'/'));
        if (ProjectManager::IsForeign(absolute, file, query))
            PrintLeadsOut(shown);
        else
            files.push_back(shown);
    }
    return files;
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
    const auto addAs = [&](const std::wstring& shown, const std::wstring& absolute, bool standardInput) {
        if (seen.insert(absolute).second)
            inputs.push_back({shown, absolute, standardInput});
    };
    const auto add = [&](const std::wstring& shown, bool standardInput) {
        addAs(shown, Host::AbsolutePath(shown), standardInput);
    };
    for (const std::string& bytes : options.paths) {
        if (bytes == "-") {
            add(Host::PathFromBytes(options.stdinPath), true);
            continue;
        }
        const std::wstring path = Host::PathFromBytes(bytes);
        std::error_code error;
        if (!path.starts_with(L'/') && std::filesystem::current_path(error).empty()) {
            onError(path, "the current folder is gone");
            continue;
        }
        const bool isFolder = std::filesystem::is_directory(bytes, error);
        if (error) {
            onError(path, error.message());
        } else if (options.changed) {
            for (const std::wstring& file : ChangedFilesOf(path, isFolder, options, selection))
                add(file, false);
        } else if (isFolder) {
            // What is below a folder is found under a plain path: only the folder's own has to be resolved.
            const std::wstring absolute = WithSlash(Host::AbsolutePath(path));
            const std::size_t below = WithSlash(path).size();
            for (const std::wstring& file : FilesOf(path, selection, onError))
                addAs(file, absolute + file.substr(below), false);
        } else if (!selection.Excludes(path, Host::AbsolutePath(path))) {
            add(path, false);
        }
    }
    return inputs;
}

} // namespace Kesh::CommandLine
