#pragma once

#include "Diagnostics/MarkupReport.h"
#include "Markup/MarkupPart.h"
#include "Markup/NestingJudge.h"
#include "Markup/TemplateHalves.h"
#include "Markup/TemplateTokens.h"

#include <utility>

namespace Kesh::CodeAnalyzer {

/// Finds the elements that do not nest as HTML wants, on every way through the PHP around them.
class CHtmlNesting final : public IMarkupPart
{
public:
    /// Not owned.
    explicit CHtmlNesting(CMarkupReport& report) : m_report(report) {}

    void Follow(SyntaxParser::ISPDocument& document) override { m_tokens.Follow(document); }
    void Begin() override;
    void AddHtml(const SyntaxParser::SHtmlToken& token) override;
    void End() override;

    /// Has what other files may be the partners of be kept from now on.
    void KeepHalves() { m_keepsHalves = true; }
    /// Of the last pass.
    SFileHalves TakeHalves() { return std::exchange(m_halves, {}); }
    /// The PHP of the document that is followed.
    const CTemplateTokens& Tokens() const { return m_tokens; }

private:
    void BeginTags();
    bool IsWhole() const;
    bool IsCertain(std::uint32_t tag) const;
    SVerdict Judge() const;
    void FindHalves(const SVerdict& verdict);
    void AddUnprinted();
    void AddLeftOver(SVerdict& verdict) const;
    void AddHalves(SVerdict& verdict) const;
    SyntaxParser::SMarkupSpan EndPlace(const SNestingFault& fault) const;
    std::size_t EndBefore(std::uint32_t event) const;
    bool FindLostStart(std::uint32_t end, SyntaxParser::SMarkupSpan& place) const;
    void Tell(const SNestingFault& fault);
    void TellUnclosed(const SNestingFault& fault);
    void TellEndTag(const SNestingFault& fault);
    void AddSwap(const SNestingFault& fault, SDetails& details) const;
    void AddCondition(const SNestingFault& fault, SDetails& details) const;
    void TellPlace(const SNestingFault& fault);

    const SNestingEvent& Event(std::uint32_t event) const { return m_events.All()[event]; }
    SArgument Tag(std::string name, std::uint32_t event) const;
    SArgument EndTagOf(std::uint32_t event) const;
    std::wstring Written(SyntaxParser::SMarkupSpan span) const;
    std::wstring EndTagText(std::uint32_t event) const;

    CMarkupReport& m_report;
    CTemplateTokens m_tokens;
    CNestingEvents m_events;
    SFileHalves m_halves;
    bool m_keepsHalves = false;
    bool m_hasTags = false;  ///< one has come
    bool m_isMarkup = false; ///< HTML that can be judged
};

} // namespace Kesh::CodeAnalyzer
