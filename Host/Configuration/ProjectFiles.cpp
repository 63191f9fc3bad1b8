#include "Configuration/ProjectFiles.h"

#include "Files/FilePath.h"

namespace Kesh::Configuration {

ProjectManager::SFileQuery CheckedFiles(const std::wstring& folder, const SConfiguration& settings)
{
    const std::wstring prefix = folder.ends_with(L'/') ? folder : folder + L'/';
    ProjectManager::SFileQuery query;
    query.project = settings.root;
    query.takesFile = [&settings, prefix](const std::wstring& path) {
        return settings.Includes(prefix + path) && !settings.Excludes(prefix + path);
    };
    query.entersFolder = [&settings, prefix](const std::wstring& path) {
        return !ProjectManager::IsLeftOut(Host::FileName(path)) && !settings.Excludes(prefix + path);
    };
    return query;
}

} // namespace Kesh::Configuration
