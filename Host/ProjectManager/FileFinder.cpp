#include "ProjectManager/FileFinder.h"

#include "Files/FilePath.h"
#include "Files/FolderReader.h"

#include <algorithm>

namespace Kesh::ProjectManager {

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
    using EKind = Host::CFolderReader::EKind;
    const std::wstring prefix = WithSlash(folder);
    std::vector<std::wstring> files;
    std::vector<std::wstring> pending{{}}; // folders to read, relative, each empty or with a slash at its end
    while (!pending.empty() && !(query.isCancelled && query.isCancelled())) {
        const std::wstring below = std::move(pending.back());
        pending.pop_back();
        Host::CFolderReader entry(Host::PathToBytes(prefix + below));
        while (entry.Next()) {
            const std::wstring name = Host::PathFromBytes(entry.Name());
            const std::wstring relative = below + name;
            if (entry.Kind() == EKind::Folder) {
                if (Enters(query, relative, name) && !entry.IsLink())
                    pending.push_back(relative + L'/');
            } else if (query.takesFile(relative) && entry.Kind() == EKind::File) {
                if (!entry.IsLink() || !IsForeign(folder, prefix + relative, query))
                    files.push_back(prefix + relative);
                else if (query.onLeadsOut)
                    query.onLeadsOut(prefix + relative);
            }
        }
        if (const std::string problem = entry.Problem(); !problem.empty() && query.onError)
            query.onError(below.empty() ? folder : prefix + below, problem);
    }
    std::sort(files.begin(), files.end());
    return files;
}

} // namespace Kesh::ProjectManager
