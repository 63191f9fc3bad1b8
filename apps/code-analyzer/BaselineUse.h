#pragma once

#include "Configuration/Configuration.h"
#include "Findings/Baseline.h"
#include "Options.h"

#include <optional>
#include <vector>

namespace Kesh::CommandLine {

/// What a check does with the baseline: leaves out what it knows, or writes it. Throws Base::CWorkError with
/// a text for the user.
class CBaselineUse
{
public:
    CBaselineUse(const SOptions& options, const Configuration::SConfiguration& configuration);

    /// Takes from the findings of a file what is not to be reported.
    void Apply(Findings::SFileFindings& file);
    /// Names on stderr what is gone, or writes the file.
    void Finish();

private:
    std::wstring m_file; ///< empty: no baseline
    bool m_generate;
    bool m_quiet;
    std::optional<Findings::CBaseline> m_baseline;
    std::vector<Findings::CBaseline::SGone> m_gone;
};

} // namespace Kesh::CommandLine
