#pragma once

#include "Findings/Finding.h"
#include "Findings/ProjectRules.h"
#include "Findings/TextLines.h"
#include "Kesh/CodeAnalyzer/IDiagnosticTexts.h"

#include <functional>
#include <string_view>
#include <vector>

namespace Kesh::Findings {

/// A checked file as Describe() needs it.
struct SCheckedFile
{
    std::wstring shown; ///< the path as the user knows it
    std::wstring path;  ///< absolute
    /// Its text as it was checked, which stays until it is described; asked for only when there is something
    /// to describe.
    std::function<std::wstring_view()> text;
    /// False when its bytes are known to hold no comment that ignores anything.
    bool mayIgnore = true;
    /// Whether the user has asked for this very file, whatever its project leaves out.
    bool named = false;
};

/// Makes findings of diagnostics, for whoever shows them: leaves out what the file's rules, its comments or
/// the baseline do not want heard, sets severities, and adds what a report says. Any thread.
class CDescriber
{
public:
    enum class EDetail {
        Full,
        Brief ///< only which findings are left and their lines
    };
    /// The texts are not owned.
    explicit CDescriber(CodeAnalyzer::IDiagnosticTexts& texts, EDetail detail = EDetail::Full)
        : m_texts(texts), m_detail(detail)
    {
    }

    /// Sorted by position, then code.
    SFileFindings Describe(const SCheckedFile& file, std::vector<CodeAnalyzer::SDiagnostic> diagnostics,
                           const SRules& rules) const;

private:
    void Fill(SFileFindings& described, const SCheckedFile& file,
              std::vector<CodeAnalyzer::SDiagnostic> diagnostics, const SRules& rules) const;

    CodeAnalyzer::IDiagnosticTexts& m_texts;
    EDetail m_detail;
};

/// Findings of diagnostics of which all are wanted, in their order.
std::vector<SFinding> MakeFindings(std::vector<CodeAnalyzer::SDiagnostic> diagnostics, std::wstring_view text,
                                   CodeAnalyzer::IDiagnosticTexts& texts);

} // namespace Kesh::Findings
