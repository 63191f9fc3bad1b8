#pragma once

#include "Findings/Baseline.h"
#include "Options.h"
#include "RulesChoice.h"

#include <map>
#include <string>
#include <vector>

namespace Kesh::CommandLine {

/// What a check does besides leaving out what the baselines know: writes them, or names what is gone. Throws
/// Base::CWorkError with a text for the user.
class CBaselineUse
{
public:
    CBaselineUse(const SOptions& options, TProjectRules rules);

    /// A file is about to be checked, so that its project's baseline is to be written. It may be too late to
    /// refuse that afterwards.
    void Expect(const std::wstring& path);
    /// Takes from the findings of a file what is not to be reported.
    void Apply(Findings::SFileFindings& file);
    /// Names on stderr what is gone, or writes the files.
    void Finish();

private:
    std::wstring FileFor(const Configuration::SConfiguration& settings) const;

    TProjectRules m_rules;
    std::wstring m_named; ///< by the user; empty: each project's own
    bool m_generate;
    bool m_quiet;
    std::map<std::wstring, Findings::CBaseline> m_written; ///< by file
    std::vector<Findings::SGone> m_gone;
};

} // namespace Kesh::CommandLine
