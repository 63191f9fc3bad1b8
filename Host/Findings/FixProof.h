#pragma once

#include "Findings/QuickFix.h"
#include "Findings/TextCheck.h"

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Kesh::Findings {

/// How much proving one request may still cost.
struct SProofBudget
{
    std::size_t checks = 40;
    std::size_t characters = std::size_t{16} << 20;
};

/// Tries fixes of a file's findings on copies of its text, which are checked again. One thread, that of the
/// check.
class CFixProof
{
public:
    enum class EVerdict {
        Unknown, ///< it could not be tried: the budget is used up
        Fails,   ///< the error stays, or another one comes up before it
        Helps,   ///< the error goes, but another one comes up behind it, or it may be what an earlier one has
                 ///< led to
        Mends    ///< the error goes, and none comes up
    };

    /// `before` is what the check finds in the file as it is. What is referred to is not owned.
    CFixProof(CTextCheck& check, const SFileText& file, std::wstring path,
              const std::vector<CodeAnalyzer::SDiagnostic>& before, SProofBudget& budget);

    EVerdict Try(const CodeAnalyzer::SCAError& error, const std::vector<SEdit>& edits);
    /// Several errors and what fixes them all at once: whether it mends every one of them.
    bool MendsAll(const std::vector<const CodeAnalyzer::SCAError*>& errors, const std::vector<SEdit>& edits);
    bool IsUsedUp() const { return m_usedUp; }

private:
    /// Errors of a text, by code and place.
    using TFound = std::map<std::pair<std::int32_t, std::size_t>, std::pair<int, std::int32_t>>;

    static TFound Placed(const std::vector<CodeAnalyzer::SDiagnostic>& diagnostics, const CTextLines& lines);
    std::optional<TFound> Check(const std::wstring& text);
    EVerdict Judge(const std::vector<const CodeAnalyzer::SCAError*>& errors, const std::vector<SEdit>& edits);

    CTextCheck& m_check;
    const SFileText& m_file;
    std::wstring m_path;
    SProofBudget& m_budget;
    bool m_usedUp = false;
    TFound m_before;
};

/// The fixes of findings of one file as they are to be shown. Nothing is checked unless there is a fix to be
/// tried. One thread, that of the check.
class CLazyProof
{
public:
    /// `check` gives what checks, or null. What is referred to is not owned.
    CLazyProof(std::function<CTextCheck*()> check, const SFileText& file, std::wstring path,
               SProofBudget budget = {})
        : m_check(std::move(check)), m_file(file), m_path(std::move(path)), m_budget(budget)
    {
    }

    /// FixesFor(), but of the edits that may be fixes only those that help, the ones that mend first.
    std::vector<SQuickFix> Proved(const SFinding& finding);

private:
    void Begin();

    std::function<CTextCheck*()> m_check;
    const SFileText& m_file;
    std::wstring m_path;
    SProofBudget m_budget;
    bool m_begun = false;
    std::optional<CFixProof> m_proof; ///< none: nothing can be tried
};

} // namespace Kesh::Findings
