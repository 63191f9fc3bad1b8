#pragma once

#include "Configuration/Configuration.h"
#include "Findings/Finding.h"
#include "Findings/TextLines.h"
#include "Kesh/CodeAnalyzer/IDiagnosticTexts.h"

#include <functional>
#include <vector>

namespace Kesh::Findings {

/// A checked file as Describe() needs it.
struct SCheckedFile
{
    std::wstring shown; ///< the path as the user knows it
    std::wstring path;  ///< absolute
    /// Its text as it was checked; asked for only when there is something to describe.
    std::function<std::wstring()> text;
    /// False when its bytes are known to hold no comment that ignores anything.
    bool mayIgnore = true;
};

/// Makes findings of diagnostics: adds what a report says about them, and leaves out what the project or a
/// comment does not want to hear. One thread, which may be any.
class CDescriber
{
public:
    /// What it asks; nothing is owned.
    struct SSources
    {
        CodeAnalyzer::IDiagnosticTexts& texts;
        const Configuration::SConfiguration* configuration = nullptr;
        /// Only which findings are left and their lines: what a report says about them is not looked for.
        bool brief = false;
    };
    explicit CDescriber(const SSources& sources) : m_sources(sources) {}

    /// Sorted by position, then code.
    SFileFindings Describe(const SCheckedFile& file,
                           std::vector<CodeAnalyzer::SDiagnostic> diagnostics) const;

private:
    void Silence(std::vector<CodeAnalyzer::SDiagnostic>& diagnostics, std::wstring_view text,
                 const CTextLines& lines) const;
    bool ApplyLevel(CodeAnalyzer::SCAError& error, const SCheckedFile& file) const;

    SSources m_sources;
};

/// Findings of diagnostics of which all are wanted, in their order.
std::vector<SFinding> MakeFindings(std::vector<CodeAnalyzer::SDiagnostic> diagnostics, std::wstring_view text,
                                   CodeAnalyzer::IDiagnosticTexts& texts);

} // namespace Kesh::Findings
