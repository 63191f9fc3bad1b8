#pragma once

#include "Diagnostics/MarkupReport.h"
#include "Markup/HtmlFacts.h"
#include "Markup/MarkupPart.h"

#include <set>
#include <string>

namespace Kesh::CodeAnalyzer {

/// Judges the values of HTML's attributes, and names obsolete elements and attributes, each once. What
/// islands touch, and elements that are not HTML's, are not judged.
class CHtmlAttributes final : public IMarkupPart
{
public:
    /// Must outlive the object.
    explicit CHtmlAttributes(CMarkupReport& report) : m_report(report) {}

    void Begin() override;
    void AddHtml(const SyntaxParser::SHtmlToken& token) override;

private:
    void Judge(const SyntaxParser::SHtmlToken& tag, const SyntaxParser::SHtmlAttribute& attribute);
    void JudgeKeyword(const SValueRule& rule, const SyntaxParser::SHtmlAttribute& attribute);
    void JudgeKeywords(const SValueRule& rule, const SyntaxParser::SHtmlAttribute& attribute);
    void JudgeBoolean(const SyntaxParser::SHtmlAttribute& attribute);
    void JudgeNumber(EValueForm form, const SyntaxParser::SHtmlAttribute& attribute);
    void JudgeId(const SyntaxParser::SHtmlAttribute& attribute);
    void JudgeUrl(const SyntaxParser::SHtmlAttribute& attribute);
    void AddValue(const SValueRule& rule, const SyntaxParser::SHtmlAttribute& attribute,
                  SyntaxParser::SMarkupSpan word);
    void AddObsolete(const SyntaxParser::SHtmlToken& tag);

    CMarkupReport& m_report;
    bool m_isXml = false;
    std::size_t m_foreign = 0;         ///< open svg and math elements
    std::set<std::wstring> m_obsolete; ///< those that are told
};

} // namespace Kesh::CodeAnalyzer
