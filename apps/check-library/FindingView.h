#pragma once

#include "CodeAnalyzerCheck.h"
#include "Findings/QuickFix.h"
#include "SourceOfText.h"

#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace Kesh::CheckLibrary {

/// A fix and how well it is known to help.
struct SProvedFix
{
    Findings::SQuickFix fix;
    code_analyzer_proof proof = CODE_ANALYZER_UNTRIED;
};

/// A finding as C sees it; owns all that it refers to.
class CFindingView
{
public:
    CFindingView(const Findings::SFinding& finding, const std::vector<SProvedFix>& fixes,
                 const CSourceOfText& source);
    CFindingView(const CFindingView&) = delete;
    CFindingView& operator=(const CFindingView&) = delete;

    const code_analyzer_finding& Finding() const { return m_finding; }

private:
    const char* Keep(std::wstring_view text);

    std::deque<std::string> m_texts;
    std::vector<code_analyzer_related> m_related;
    std::deque<std::vector<code_analyzer_edit>> m_edits;
    std::vector<code_analyzer_fix> m_fixes;
    code_analyzer_finding m_finding{};
};

} // namespace Kesh::CheckLibrary
