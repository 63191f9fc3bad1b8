#include "ProjectManager/FileFinder.h"

#include "Files/FilePath.h"

#include <algorithm>
#include <filesystem>

namespace Kesh::ProjectManager {

namespace fs = std::filesystem;

bool IsLeftOut(const std::wstring& folderName)
{
    return folderName.starts_with(L'.') || folderName == L"vendor" || folderName == L"node_modules";
}

namespace {

std::wstring WithSlash(const std::wstring& folder)
{
    return folder.ends_with(L'/') ? folder : folder + L'/';
}

bool Enters(const SFileQuery& query, const std::wstring& relative, const std::wstring& name)
{
    return query.entersFolder ? query.entersFolder(relative) : !IsLeftOut(name);
}

} // namespace

bool IsFoundIn(const std::wstring& folder, const std::wstring& file, const SFileQuery& query)
{
    const std::wstring prefix = WithSlash(folder);
    if (!file.starts_with(prefix))
        return false;
    const std::wstring below = file.substr(prefix.size());
    for (std::size_t from = 0, slash; (slash = below.find(L'/', from)) != std::wstring::npos;
         from = slash + 1)
        if (!Enters(query, below.substr(0, slash), below.substr(from, slash - from)))
            return false;
    return query.takesFile(below);
}

bool IsForeign(const std::wstring& folder, const std::wstring& file, const SFileQuery& query)
{
    const bool staysInProject = !query.project.empty() &&
                                Host::LiesIn(query.project, Host::AbsolutePath(file)) &&
                                !Host::LeadsOut(query.project, file);
    return !staysInProject && Host::LeadsOut(folder, file);
}

std::vector<std::wstring> FindFiles(const std::wstring& folder, const SFileQuery& query)
{
    const std::wstring prefix = WithSlash(folder);
    std::vector<std::wstring> files;
    std::vector<std::wstring> pending{{}}; // folders to read, relative, each empty or with a slash at its end
    while (!pending.empty() && !(query.isCancelled && query.isCancelled())) {
        const std::wstring below = std::move(pending.back());
        pending.pop_back();
        std::error_code error;
        for (fs::directory_iterator entry(Host::PathToBytes(prefix + below), error), end;
             !error && entry != end; entry.increment(error)) {
            std::error_code ignored;
            const std::wstring name = Host::PathFromBytes(entry->path().filename().string());
            const std::wstring relative = below + name;
            if (entry->is_directory(ignored)) {
                if (Enters(query, relative, name) && !entry->is_symlink(ignored))
                    pending.push_back(relative + L'/');
            } else if (query.takesFile(relative) && entry->is_regular_file(ignored)) {
                if (!entry->is_symlink(ignored) || !IsForeign(folder, prefix + relative, query))
                    files.push_back(prefix + relative);
                else if (query.onLeadsOut)
                    query.onLeadsOut(prefix + relative);
            }
        }
        if (error && query.onError)
            query.onError(below.empty() ? folder : prefix + below, error.message());
    }
    std::sort(files.begin(), files.end());
    return files;
}

} // namespace Kesh::ProjectManager
