#include "Findings/CheckedFiles.h"

#include "Files/FilePath.h"

namespace Kesh::Findings {

ProjectManager::SFileQuery CheckedFiles(const std::wstring& folder,
                                        std::shared_ptr<const CProjectRules> rules)
{
    const std::wstring prefix = folder.ends_with(L'/') ? folder : folder + L'/';
    ProjectManager::SFileQuery query;
    query.project = rules->For(prefix)->settings.root;
    query.takesFile = [rules, prefix](const std::wstring& relative) {
        const std::wstring path = prefix + relative;
        const TRules file = rules->For(path);
        return file->settings.Includes(path) && !file->settings.Excludes(path);
    };
    query.entersFolder = [rules, prefix](const std::wstring& relative) {
        return !ProjectManager::IsLeftOut(Host::FileName(relative)) &&
               !rules->For(prefix + relative)->settings.Excludes(prefix + relative);
    };
    return query;
}

} // namespace Kesh::Findings
