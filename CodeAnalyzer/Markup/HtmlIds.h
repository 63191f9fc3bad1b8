#pragma once

#include "Diagnostics/MarkupReport.h"
#include "Markup/MarkupPart.h"
#include "Markup/TemplateTokens.h"

#include <string_view>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// Finds ids that are given twice in one document. In a template only where the first element is always
/// printed when the second one is.
class CHtmlIds final : public IMarkupPart
{
public:
    /// Not owned; `tokens` are those of each pass's document.
    CHtmlIds(CMarkupReport& report, const CTemplateTokens& tokens) : m_report(report), m_tokens(tokens) {}

    void Begin() override;
    void AddHtml(const SyntaxParser::SHtmlToken& token) override;
    void End() override;

private:
    struct SId
    {
        std::wstring_view text;
        SyntaxParser::SMarkupSpan span;
    };

    void AddId(const SyntaxParser::SHtmlAttribute& attribute);
    bool KeepRepeated();
    void Tell(const SId& first, const SId& second);

    CMarkupReport& m_report;
    const CTemplateTokens& m_tokens;
    std::vector<SId> m_ids;
    std::size_t m_inert = 0; ///< open elements whose content is not shown with the rest
    bool m_isChosen = false; ///< the document's own language says which elements are shown
};

} // namespace Kesh::CodeAnalyzer
