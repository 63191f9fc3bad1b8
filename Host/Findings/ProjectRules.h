#pragma once

#include "Configuration/Configuration.h"
#include "Files/FileIO.h"
#include "Findings/Baseline.h"
#include "SyntaxParser/OwnNames.h"

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Kesh::Findings {

using TBaseline = std::shared_ptr<const CBaseline>;

SyntaxParser::SOwnNames OwnNamesOf(const Configuration::SConfiguration& settings);

/// Throws Base::CWorkError with a text for the user that names the file.
TBaseline ReadBaseline(const std::wstring& file);

/// What a project wants of the check of its files. Never changed once it is read.
struct SRules
{
    Configuration::SConfiguration settings; ///< its PHP version may be that of a composer.json
    std::wstring phpVersionFrom;            ///< who asks for that version, in a few words; empty: nobody
    TBaseline baseline;                     ///< null: none
    std::shared_ptr<const SyntaxParser::COwnNames> names; ///< those of the settings; null: none

    /// Whether they leave all that is found as it is.
    bool AreEmpty() const { return settings.rules.empty() && settings.exclude.empty() && !baseline; }
    /// The severity of an error of a file that is not excluded, by the settings alone; 0: it is not wanted.
    std::int32_t LevelOf(const CodeAnalyzer::SCAError& error, const std::wstring& path) const;
};

using TRules = std::shared_ptr<const SRules>;

/// What a user says for all files, whatever their projects say.
struct SRulesForAll
{
    std::optional<std::wstring> settingsFile; ///< absolute; empty: no file is read
    std::optional<std::int32_t> phpVersion;
    std::wstring phpVersionFrom; ///< how the user says so, for messages
    bool noGrammar = false;
    bool noMarkup = false;
    std::vector<std::string> presets; ///< of names, in addition to those of the settings
    bool noShortTags = false;
    std::optional<TBaseline> baseline;
};

/// The rules of files: of the settings file and the composer.json nearest to each, in its folder or above.
/// What has been read once is not read again. Any thread.
class CProjectRules
{
public:
    enum class EFaults : std::uint8_t {
        Throw, ///< For() throws Base::CWorkError with a text for the user
        Keep   ///< what was read before goes on in place of what is wrong now, or nothing does
    };
    explicit CProjectRules(SRulesForAll all = {}, EFaults faults = EFaults::Throw,
                           const CProjectRules* before = nullptr);

    /// Those without any, wherever a file lies.
    static std::shared_ptr<const CProjectRules> None();

    /// Of a file, or of a folder with a slash behind it; absolute. Never null.
    TRules For(const std::wstring& path) const;
    /// All that have been read so far, each once.
    std::vector<TRules> Read() const;
    /// Whether all of these leave what is found as it is.
    bool AreEmpty() const;
    /// The files that they were read from, as these were then; what has been looked for and is missing is
    /// not among them.
    std::map<std::wstring, Host::SFileStamp> Sources() const;
    /// What has been wrong since the last call, in words for the user.
    std::vector<std::string> TakeFaults() const;

private:
    struct SFolder
    {
        TRules rules;
        std::wstring settingsFile;
        std::optional<std::int32_t> composerVersion;
    };
    using TFolders = std::map<std::wstring, SFolder, std::less<>>; ///< names without a slash at the end
    const SFolder& Of(std::wstring_view folder) const;
    TRules Make(const SFolder& folder) const;
    void ChooseVersion(SRules& rules, std::optional<std::int32_t> composerVersion) const;
    /// Before it is read.
    void NoteSource(const std::wstring& file) const;
    TRules ReadFile(const std::wstring& file) const;
    TBaseline BaselineOf(const SRules& rules, const SRules* before) const;

    SRulesForAll m_all;
    EFaults m_faults;
    mutable std::mutex m_mutex; ///< guards what follows
    mutable TFolders m_folders;
    mutable const TFolders::value_type* m_last = nullptr; ///< asked for: files come folder by folder
    mutable std::map<std::wstring, TRules> m_files;       ///< by settings file, as each says itself
    mutable std::map<std::wstring, TRules> m_before;      ///< the same of an earlier time
    mutable std::vector<std::string> m_problems;
    mutable std::map<std::wstring, Host::SFileStamp> m_sources;
};

} // namespace Kesh::Findings
