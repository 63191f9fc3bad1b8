#include "Findings/ProjectRules.h"

#include "Base/Exception.h"
#include "Configuration/Composer.h"
#include "Configuration/NamePresets.h"
#include "Files/FilePath.h"

#include <algorithm>
#include <utility>

namespace Kesh::Findings {

using Configuration::ELevel;

SyntaxParser::SOwnNames OwnNamesOf(const Configuration::SConfiguration& settings)
{
    return {settings.tags, settings.attributes, settings.properties};
}

std::int32_t SRules::LevelOf(const CodeAnalyzer::SCAError& error, const std::wstring& path) const
{
    const auto level = settings.LevelOf(error.code, path);
    if (!level)
        return error.type;
    return *level == ELevel::Off     ? 0
           : *level == ELevel::Error ? CodeAnalyzer::SeverityError
                                     : CodeAnalyzer::SeverityWarning;
}

TBaseline ReadBaseline(const std::wstring& file)
{
    try {
        return std::make_shared<const CBaseline>(CBaseline::Read(file));
    } catch (const Base::CWorkError& fault) {
        throw Base::CWorkError(Host::FileName(file) + L": " + fault.GetMessage(), __LINE__,
                               "Host/Findings/ProjectRules");
    }
}

CProjectRules::CProjectRules(SRulesForAll all, EFaults faults, const CProjectRules* before)
    : m_all(std::move(all)), m_faults(faults)
{
    if (!before)
        return;
    const std::lock_guard lock(before->m_mutex);
    m_before = before->m_files;
}

std::shared_ptr<const CProjectRules> CProjectRules::None()
{
    SRulesForAll all;
    all.settingsFile.emplace();
    all.phpVersion = 0;
    return std::make_shared<const CProjectRules>(std::move(all));
}

TRules CProjectRules::For(const std::wstring& path) const
{
    const std::size_t end = path.rfind(L'/');
    const std::wstring_view folder = std::wstring_view(path).substr(0, end == std::wstring::npos ? 0 : end);
    const std::lock_guard lock(m_mutex);
    return Of(folder).rules;
}

const CProjectRules::SFolder& CProjectRules::Of(std::wstring_view name) const
{
    if (m_last && m_last->first == name)
        return m_last->second;
    if (const auto known = m_folders.find(name); known != m_folders.end()) {
        m_last = &*known;
        return known->second;
    }
    const std::wstring folder(name);
    SFolder found;
    bool same = !folder.empty(); // as the folder above
    if (same)
        found = Of(name.substr(0, name.rfind(L'/')));
    else if (m_all.settingsFile)
        found.settingsFile = *m_all.settingsFile;
    if (!m_all.settingsFile && Configuration::HasConfiguration(folder)) {
        found.settingsFile = folder + L'/' + Configuration::FileName;
        same = false;
    }
    if (Configuration::HasComposer(folder)) {
        NoteSource(folder + L'/' + Configuration::ComposerFileName);
        const auto version = Configuration::ComposerPhpVersion(folder);
        same = same && version == found.composerVersion;
        found.composerVersion = version;
    }
    if (!same)
        found.rules = Make(found);
    m_last = &*m_folders.emplace(folder, std::move(found)).first;
    return m_last->second;
}

TRules CProjectRules::Make(const SFolder& folder) const
{
    auto rules = std::make_shared<SRules>();
    if (!folder.settingsFile.empty())
        *rules = *ReadFile(folder.settingsFile);
    if (m_all.baseline)
        rules->baseline = *m_all.baseline;
    if (m_all.noGrammar)
        rules->settings.grammar = false;
    if (m_all.noMarkup)
        rules->settings.markup = false;
    for (const std::string& name : m_all.presets)
        if (const Configuration::SNamePreset* preset = Configuration::FindNamePreset(name))
            Configuration::AddNamePreset(*preset, rules->settings);
    if (m_all.noShortTags)
        rules->settings.shortOpenTag = false;
    ChooseVersion(*rules, folder.composerVersion);
    if (const SyntaxParser::SOwnNames names = OwnNamesOf(rules->settings); !names.IsEmpty())
        rules->names = std::make_shared<const SyntaxParser::COwnNames>(names);
    return rules;
}

void CProjectRules::ChooseVersion(SRules& rules, std::optional<std::int32_t> composerVersion) const
{
    if (m_all.phpVersion) {
        rules.settings.phpVersion = m_all.phpVersion;
        rules.phpVersionFrom = m_all.phpVersionFrom;
    } else if (rules.settings.phpVersion) {
        rules.phpVersionFrom = Host::FileName(rules.settings.file);
    } else if (composerVersion) {
        rules.settings.phpVersion = composerVersion;
        rules.phpVersionFrom = Configuration::ComposerFileName;
    }
}

TRules CProjectRules::ReadFile(const std::wstring& file) const
{
    if (const auto known = m_files.find(file); known != m_files.end())
        return known->second;
    const auto found = m_before.find(file);
    const TRules before = found == m_before.end() ? nullptr : found->second;
    auto rules = std::make_shared<SRules>();
    NoteSource(file);
    try {
        rules->settings = Configuration::ReadConfiguration(file);
        for (const std::wstring& base : rules->settings.bases)
            NoteSource(base);
        rules->baseline = BaselineOf(*rules, before.get());
    } catch (const Base::CWorkError& fault) {
        if (m_faults == EFaults::Throw)
            throw;
        // The user is in the middle of changing it.
        m_problems.push_back(fault.what());
        if (before)
            *rules = *before;
    }
    return m_files[file] = rules;
}

TBaseline CProjectRules::BaselineOf(const SRules& rules, const SRules* before) const
{
    const std::wstring& file = rules.settings.baseline;
    if (m_all.baseline || file.empty())
        return nullptr;
    NoteSource(file);
    try {
        return ReadBaseline(file);
    } catch (const Base::CWorkError& fault) {
        if (m_faults == EFaults::Throw)
            throw;
        m_problems.push_back(fault.what());
    }
    return before && before->settings.baseline == file ? before->baseline : nullptr;
}

std::vector<TRules> CProjectRules::Read() const
{
    const std::lock_guard lock(m_mutex);
    std::vector<TRules> all;
    for (const auto& [folder, found] : m_folders)
        if (std::find(all.begin(), all.end(), found.rules) == all.end())
            all.push_back(found.rules);
    return all;
}

bool CProjectRules::AreEmpty() const
{
    return std::ranges::all_of(Read(), [](const TRules& rules) { return rules->AreEmpty(); });
}

void CProjectRules::NoteSource(const std::wstring& file) const
{
    m_sources.try_emplace(file, Host::StampOf(file));
}

std::map<std::wstring, Host::SFileStamp> CProjectRules::Sources() const
{
    const std::lock_guard lock(m_mutex);
    return m_sources;
}

std::vector<std::string> CProjectRules::TakeFaults() const
{
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_problems, {});
}

} // namespace Kesh::Findings
