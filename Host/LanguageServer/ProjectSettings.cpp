#include "LanguageServer/ProjectSettings.h"

#include "Files/FilePath.h"

#include <algorithm>
#include <utility>

namespace Kesh::LanguageServer {

void CProjectSettings::Read(const std::vector<std::wstring>& folders, const std::wstring& file,
                            const std::wstring& named)
{
    m_places.clear();
    for (const std::wstring& folder : folders)
        m_places.push_back(folder.ends_with(L'/') ? folder : folder + L'/');
    m_hasFolders = !m_places.empty();
    if (!m_hasFolders && !file.empty())
        m_places.push_back(file);
    Findings::SRulesForAll all;
    if (!named.empty())
        all.settingsFile = named;
    using EFaults = Findings::CProjectRules::EFaults;
    m_rules = std::make_shared<const Findings::CProjectRules>(std::move(all), EFaults::Keep, m_rules.get());
    for (const std::wstring& place : m_places)
        For(place);
}

std::wstring CProjectSettings::FileToChange(const std::wstring& path) const
{
    if (const std::wstring file = For(path)->settings.file; !file.empty())
        return file;
    if (!m_hasFolders)
        return {};
    std::wstring innermost;
    for (const std::wstring& folder : m_places)
        if (path.starts_with(folder) && folder.size() > innermost.size())
            innermost = folder;
    return (innermost.empty() ? m_places.front() : innermost) + Configuration::FileName;
}

bool CProjectSettings::DependOn(const std::wstring& path) const
{
    const std::wstring name = Host::FileName(path);
    if (name == Configuration::FileName || name == L"composer.json")
        return true;
    const std::vector<Findings::TRules> read = m_rules->Read();
    return std::any_of(read.begin(), read.end(), [&](const Findings::TRules& rules) {
        return path == rules->settings.file || path == rules->settings.baseline ||
               std::ranges::find(rules->settings.bases, path) != rules->settings.bases.end();
    });
}

std::vector<std::string> CProjectSettings::NamesToWatch() const
{
    std::vector<std::string> names;
    for (const Findings::TRules& rules : m_rules->Read()) {
        if (const std::wstring& file = rules->settings.baseline; !file.empty())
            names.push_back(Host::PathToBytes(Host::FileName(file)));
        for (const std::wstring& file : rules->settings.bases)
            names.push_back(Host::PathToBytes(Host::FileName(file)));
    }
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

} // namespace Kesh::LanguageServer
