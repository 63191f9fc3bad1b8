#include "FindingView.h"

#include "Base/CommonString.h"
#include "Kesh/CodeAnalyzer/Catalog.h"

#include <algorithm>

namespace Kesh::CheckLibrary {

CFindingView::CFindingView(const Findings::SFinding& finding, const std::vector<SProvedFix>& fixes,
                           const CSourceOfText& source)
{
    for (const Findings::SRelated& place : finding.related)
        m_related.push_back({source.Span(place.pos), Keep(place.message)});
    for (const auto& [fix, proof] : fixes) {
        std::vector<code_analyzer_edit>& edits = m_edits.emplace_back();
        for (const Findings::SEdit& edit : fix.edits)
            edits.push_back({source.Span(edit.span), Keep(edit.text)});
        m_fixes.push_back({Keep(fix.Title()), proof, edits.data(), edits.size()});
    }
    const CodeAnalyzer::SDiagnosticKind* kind = CodeAnalyzer::FindKind(finding.error.code);
    m_finding = {sizeof m_finding,
                 source.Span(finding.error.pos),
                 finding.error.code,
                 finding.IsError() ? CODE_ANALYZER_ERROR : CODE_ANALYZER_WARNING,
                 kind ? kind->identifier : "",
                 Keep(finding.title),
                 Keep(finding.message),
                 m_related.data(),
                 m_related.size(),
                 m_fixes.data(),
                 m_fixes.size()};
}

const char* CFindingView::Keep(std::wstring_view text)
{
    std::string bytes = Base::CCommonString::ToUtf8(text);
    std::ranges::replace(bytes, '\0', ' '); // would end it
    return m_texts.emplace_back(std::move(bytes)).c_str();
}

} // namespace Kesh::CheckLibrary
