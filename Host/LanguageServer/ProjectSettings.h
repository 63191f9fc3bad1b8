#pragma once

#include "Configuration/Configuration.h"
#include "Findings/Baseline.h"

#include <memory>
#include <string>
#include <vector>

namespace Kesh::LanguageServer {

/// What holds for the files of one folder. Never changed once it is read.
struct SProjectSettings
{
    Configuration::SConfiguration configuration;
    std::shared_ptr<const Findings::CBaseline> baseline; ///< null: none
};

using TProjectSettings = std::shared_ptr<const SProjectSettings>;

/// The settings of all open folders: each has its own file, or the one above it. One thread.
class CProjectSettings
{
public:
    CProjectSettings();

    /// Reads the settings of the folders anew; without a folder, those of `file`, unless it is empty. `named`
    /// is the settings file that the user wants for all, or empty. Answers what is wrong, in words for the
    /// user; what was read before goes on in its place.
    std::vector<std::string> Read(const std::vector<std::wstring>& folders, const std::wstring& file,
                                  const std::wstring& named);

    /// Those of the innermost folder that the file lies in, or of the first. Never null.
    const TProjectSettings& For(const std::wstring& path) const { return PlaceOf(path).settings; }
    /// The settings file to change for a finding in `path`; it need not exist. Empty: no folder could have
    /// one.
    std::wstring FileToChange(const std::wstring& path) const;
    /// Whether what was read depends on the file: a settings file, a baseline or a composer.json.
    bool DependOn(const std::wstring& path) const;
    /// The names of the baseline files, by which they can be watched.
    std::vector<std::string> BaselineNames() const;

    /// What the checks themselves need to know, for all folders together; nothing else is set.
    Configuration::SConfiguration ForChecks() const;

private:
    TProjectSettings ReadOne(const std::wstring& path, const std::wstring& file,
                             std::vector<std::string>& faults) const;

    struct SPlace
    {
        std::wstring path; ///< a folder, or the one file that is open without any
        bool isFolder = true;
        TProjectSettings settings;
    };
    const SPlace& PlaceOf(const std::wstring& path) const;

    std::vector<SPlace> m_places; ///< in the order of the folders
    SPlace m_none;
};

} // namespace Kesh::LanguageServer
