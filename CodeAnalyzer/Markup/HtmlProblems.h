#pragma once

#include "Diagnostics/MarkupReport.h"
#include "Markup/MarkupPart.h"

#include <vector>

namespace Kesh::CodeAnalyzer {

/// Reports the parse errors of HTML, one for each slip. Silent in XML, and in texts that hold no tag at all.
class CHtmlProblems final : public IMarkupPart
{
public:
    /// Must outlive the object.
    explicit CHtmlProblems(CMarkupReport& report) : m_report(report) {}

    void Begin() override;
    void AddHtml(const SyntaxParser::SHtmlToken& token) override;
    void AddProblem(SyntaxParser::EHtmlProblem problem, SyntaxParser::SMarkupSpan span) override;
    void End() override;

private:
    struct SProblem
    {
        SyntaxParser::EHtmlProblem problem;
        SyntaxParser::SMarkupSpan span;
    };

    bool HidesQuotes(const SyntaxParser::SHtmlToken& tag) const;
    bool IsPrinted(SyntaxParser::SMarkupSpan text) const;
    void Judge(const SProblem& problem, const SyntaxParser::SHtmlToken& token);
    void JudgeInTag(const SProblem& problem, const SyntaxParser::SHtmlToken& tag);
    void JudgeInText(const SProblem& problem);
    void JudgeComment(const SProblem& problem, const SyntaxParser::SHtmlToken& comment);

    void AddUnclosedValue(SyntaxParser::SMarkupSpan span, const SyntaxParser::SHtmlToken& tag);
    void AddUnclosedTag(SyntaxParser::SMarkupSpan span, const SyntaxParser::SHtmlToken& tag);
    void AddDuplicate(SyntaxParser::SMarkupSpan span, const SyntaxParser::SHtmlToken& tag);
    void AddUnquoted(SyntaxParser::SMarkupSpan span, const SyntaxParser::SHtmlToken& tag);
    void AddSolidus(SyntaxParser::SMarkupSpan span, const SyntaxParser::SHtmlToken& tag);
    void AddUnknownReference(SyntaxParser::SMarkupSpan span);
    void AddCharacterInName(SyntaxParser::SMarkupSpan span, const SyntaxParser::SHtmlToken& tag);
    void AddBadComment(SyntaxParser::SMarkupSpan span);
    void Add(std::int32_t code, SyntaxParser::SMarkupSpan span, EFix kind, SyntaxParser::SMarkupSpan place,
             std::wstring text);

    CMarkupReport& m_report;
    bool m_isXml = false;
    bool m_hasTags = false;
    bool m_hasControls = false;
    std::vector<SProblem> m_pending; ///< of the token to come
    std::vector<SProblem> m_inText;  ///< until it is known that the text is HTML
};

} // namespace Kesh::CodeAnalyzer
