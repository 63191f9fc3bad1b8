#pragma once

#include "Findings/Describe.h"
#include "Findings/TextCheck.h"
#include "FixFile.h"
#include "Paths.h"
#include "RulesChoice.h"

#include <optional>
#include <string>

namespace Kesh::CommandLine {

/// Checks files, one after another, with the code validator's checks alone: no window, no errors bar.
class CFileChecker
{
public:
    /// Loads the checks. Throws Base::CWorkError when that fails.
    CFileChecker(const SOptions& options, TProjectRules rules);

    /// Null for a binary file. Throws Base::CWorkError when the input cannot be read or its check fails.
    std::optional<Findings::SFileFindings> Check(const SInput& input);

    /// Throws like Check().
    SFixedFile Fix(const SInput& input, bool onlyDiff);

private:
    std::string_view ReadInput(const SInput& input, const std::wstring& path);

    TProjectRules m_rules;
    Findings::CTextCheck m_check;
    Findings::CDescriber m_describer;
    std::string m_bytes; ///< room for those of a file
};

} // namespace Kesh::CommandLine
