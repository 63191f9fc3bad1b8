#pragma once

#include "Findings/ProjectRules.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace Kesh::LanguageServer {

/// The rules of all files that an editor may show, and what of them the server has to follow. One thread; the
/// rules themselves may be asked on any.
class CProjectSettings
{
public:
    using TRules = std::shared_ptr<const Findings::CProjectRules>;

    /// Forgets what was read, and reads what holds in the folders; without a folder, what holds for `file`,
    /// unless it is empty. `named` is the settings file that the user wants for all, or empty. What cannot be
    /// read now goes on as it was.
    void Read(const std::vector<std::wstring>& folders, const std::wstring& file, const std::wstring& named);

    /// Never null; another one after each Read().
    const TRules& Rules() const { return m_rules; }
    Findings::TRules For(const std::wstring& path) const { return m_rules->For(path); }
    /// The settings file to change for a finding in `path`; it need not exist. Empty: no folder could have
    /// one.
    std::wstring FileToChange(const std::wstring& path) const;
    /// Whether what was read depends on the file: a settings file, one that such a file adds to, a baseline
    /// or a composer.json.
    bool DependOn(const std::wstring& path) const;
    /// The names of baselines and of files that settings add to, by which they can be watched.
    std::vector<std::string> NamesToWatch() const;

private:
    std::vector<std::wstring> m_places; ///< folders, with a slash behind each, or the one file
    bool m_hasFolders = false;
    TRules m_rules = std::make_shared<const Findings::CProjectRules>();
};

} // namespace Kesh::LanguageServer
