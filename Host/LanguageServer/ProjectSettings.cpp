#include "LanguageServer/ProjectSettings.h"

#include "Base/Exception.h"
#include "Configuration/Composer.h"
#include "Files/FilePath.h"

#include <algorithm>

namespace Kesh::LanguageServer {

namespace {

void Append(std::vector<std::wstring>& all, const std::vector<std::wstring>& more)
{
    all.insert(all.end(), more.begin(), more.end());
}

} // namespace

CProjectSettings::CProjectSettings() : m_none{{}, false, std::make_shared<SProjectSettings>()} {}

std::vector<std::string> CProjectSettings::Read(const std::vector<std::wstring>& folders,
                                                const std::wstring& file, const std::wstring& named)
{
    std::vector<std::string> faults;
    std::vector<SPlace> read;
    const auto add = [&](const std::wstring& path, bool isFolder) {
        const std::wstring found = named.empty() ? Configuration::FindConfiguration(path) : named;
        read.push_back({path, isFolder, ReadOne(path, found, faults)});
    };
    for (const std::wstring& folder : folders)
        add(folder, true);
    if (folders.empty() && !file.empty())
        add(file, false);
    m_places = std::move(read);
    // Folders side by side share the file above them, and what is wrong with it.
    faults.erase(std::unique(faults.begin(), faults.end()), faults.end());
    return faults;
}

TProjectSettings CProjectSettings::ReadOne(const std::wstring& path, const std::wstring& file,
                                           std::vector<std::string>& faults) const
{
    const auto before = std::find_if(m_places.begin(), m_places.end(),
                                     [&](const SPlace& known) { return known.path == path; });
    const TProjectSettings old = (before == m_places.end() ? m_none : *before).settings;
    auto settings = std::make_shared<SProjectSettings>();
    Configuration::SConfiguration& configuration = settings->configuration;
    if (!file.empty()) {
        try {
            configuration = Configuration::ReadConfiguration(file);
        } catch (const Base::CWorkError& fault) {
            // The user is in the middle of changing it.
            faults.push_back(fault.what());
            return old;
        }
    }
    if (!configuration.phpVersion)
        configuration.phpVersion = Configuration::ComposerPhpVersion(path);
    if (configuration.baseline.empty())
        return settings;
    try {
        settings->baseline =
            std::make_shared<const Findings::CBaseline>(Findings::CBaseline::Read(configuration.baseline));
    } catch (const Base::CWorkError& fault) {
        faults.push_back(Host::PathToBytes(Host::FileName(configuration.baseline)) + ": " + fault.what());
        if (old->configuration.baseline == configuration.baseline)
            settings->baseline = old->baseline;
    }
    return settings;
}

const CProjectSettings::SPlace& CProjectSettings::PlaceOf(const std::wstring& path) const
{
    const SPlace* found = m_places.empty() ? &m_none : &m_places.front();
    std::size_t longest = 0;
    for (const SPlace& place : m_places) {
        const std::wstring prefix = place.path.ends_with(L'/') ? place.path : place.path + L'/';
        if (path.starts_with(prefix) && prefix.size() > longest) {
            longest = prefix.size();
            found = &place;
        }
    }
    return *found;
}

std::wstring CProjectSettings::FileToChange(const std::wstring& path) const
{
    const SPlace& place = PlaceOf(path);
    if (!place.settings->configuration.file.empty())
        return place.settings->configuration.file;
    return place.isFolder ? place.path + L'/' + Configuration::FileName : std::wstring();
}

bool CProjectSettings::DependOn(const std::wstring& path) const
{
    const std::wstring name = Host::FileName(path);
    return name == Configuration::FileName || name == L"composer.json" ||
           std::any_of(m_places.begin(), m_places.end(), [&](const SPlace& place) {
               const Configuration::SConfiguration& configuration = place.settings->configuration;
               return path == configuration.file || path == configuration.baseline;
           });
}

std::vector<std::string> CProjectSettings::BaselineNames() const
{
    std::vector<std::string> names;
    for (const SPlace& place : m_places)
        if (const std::wstring& file = place.settings->configuration.baseline; !file.empty())
            names.push_back(Host::PathToBytes(Host::FileName(file)));
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

Configuration::SConfiguration CProjectSettings::ForChecks() const
{
    Configuration::SConfiguration all;
    for (const SPlace& place : m_places) {
        const Configuration::SConfiguration& one = place.settings->configuration;
        // There is one check for all folders: where they differ, the first that says something counts.
        if (!all.grammar)
            all.grammar = one.grammar;
        if (!all.phpVersion)
            all.phpVersion = one.phpVersion;
        Append(all.tags, one.tags);
        Append(all.attributes, one.attributes);
        Append(all.properties, one.properties);
    }
    return all;
}

} // namespace Kesh::LanguageServer
