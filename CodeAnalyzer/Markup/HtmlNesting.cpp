#include "Markup/HtmlNesting.h"

#include "Markup/HtmlElements.h"
#include "Markup/XmlText.h"

#include <algorithm>
#include <utility>

namespace Kesh::CodeAnalyzer {

using SyntaxParser::SHtmlToken;
using SyntaxParser::SMarkupSpan;

namespace {

/// So many tags may be lost, or too many, for the indentation to tell which.
constexpr std::size_t MostLost = 4;

std::map<std::wstring, std::uint32_t> CountNames(const CNestingEvents& events,
                                                 const std::vector<std::uint32_t>& tags)
{
    std::map<std::wstring, std::uint32_t> count;
    for (const std::uint32_t tag : tags)
        if (!events.All()[tag].dynamic)
            ++count[*events.All()[tag].lower];
    return count;
}

} // namespace

void CHtmlNesting::Begin()
{
    const SyntaxParser::IMarkupPlaces& places = m_report.Places();
    SFlow flow = FindFlow(m_tokens.All(), places);
    m_isMarkup = flow.sound && !places.HasPlaceholders() && !IsXml(places);
    m_isXhtml = places.Written().find(L"http://www.w3.org/1999/xhtml") != std::wstring_view::npos;
    m_events.Begin(places, std::move(flow));
}

void CHtmlNesting::AddHtml(const SHtmlToken& token)
{
    if (m_isMarkup)
        m_events.Add(token);
}

void CHtmlNesting::End()
{
    if (!m_isMarkup)
        return;
    m_events.End();
    if (!m_events.HasTags())
        return;
    SVerdict verdict = Judge();
    if (m_report.Places().IsCancelled())
        return;
    if (IsWhole())
        AddLeftOver(verdict);
    for (const SNestingFault& fault : verdict.faults)
        if (fault.fault != ENestingFault::SelfClosing || !m_isXhtml)
            Tell(fault);
}

// With the help of indentation where that makes the whole come out even.
SVerdict CHtmlNesting::Judge() const
{
    const SyntaxParser::IMarkupPlaces& places = m_report.Places();
    SVerdict verdict = CNestingJudge(m_events, places, {}).Judge();
    if (verdict.unknown || verdict.leftOpen.size() + verdict.leftClosed.size() > MostLost)
        return verdict;
    SIndentBudget budget{CountNames(m_events, verdict.leftOpen), CountNames(m_events, verdict.leftClosed)};
    if (budget.IsEmpty())
        return verdict;
    SVerdict other = CNestingJudge(m_events, places, std::move(budget)).Judge();
    const bool isEven = !other.unknown && other.leftOpen.empty() && other.leftClosed.empty();
    return isEven ? std::move(other) : std::move(verdict);
}

// A whole document, as against a part of one that others go on with.
bool CHtmlNesting::IsWhole() const
{
    if (m_tokens.All().empty())
        return true;
    bool begins = false;
    bool ends = false;
    std::size_t scopes = 0;
    for (const SNestingEvent& event : m_events.All()) {
        if (event.kind == SNestingEvent::Flow) {
            const SFlowMark::EKind kind = m_events.Flow().marks[event.mark].kind;
            scopes += kind == SFlowMark::ScopeBegin ? 1 : kind == SFlowMark::ScopeEnd ? -1 : 0;
        } else if (scopes == 0 && event.lower && *event.lower == L"html") {
            (event.kind == SNestingEvent::Open ? begins : ends) = true;
        }
    }
    return begins && ends;
}

void CHtmlNesting::AddLeftOver(SVerdict& verdict) const
{
    const auto isRoot = [this](std::uint32_t tag) {
        return *Event(tag).lower == L"html" || *Event(tag).lower == L"body" || *Event(tag).lower == L"head";
    };
    if (verdict.unknown || std::ranges::any_of(verdict.leftClosed, isRoot))
        return; // something else has begun the document
    for (const std::uint32_t tag : verdict.leftOpen)
        if (!Event(tag).dynamic && (Event(tag).flags & ElementKnown))
            verdict.faults.push_back({ENestingFault::Unclosed, NoEvent, tag});
    for (const std::uint32_t tag : verdict.leftClosed)
        if (!Event(tag).dynamic && (Event(tag).flags & ElementKnown))
            verdict.faults.push_back({ENestingFault::Stray, tag});
}

SArgument CHtmlNesting::Tag(std::string name, std::uint32_t event) const
{
    const SNestingEvent& tag = Event(event);
    const wchar_t* begin = tag.kind == SNestingEvent::Close ? L"</" : L"<";
    return {std::move(name), begin + *tag.lower + L">"};
}

std::wstring CHtmlNesting::EndTagText(std::uint32_t event) const
{
    const SMarkupSpan name = Event(event).name;
    return L"</" + std::wstring(m_report.Places().Written().substr(name.begin, name.end - name.begin)) + L">";
}

SArgument CHtmlNesting::EndTagOf(std::uint32_t event) const
{
    return {"expected", EndTagText(event)};
}

void CHtmlNesting::Tell(const SNestingFault& fault)
{
    switch (fault.fault) {
    case ENestingFault::Unclosed:
    case ENestingFault::LeftInBranch: TellUnclosed(fault); return;
    case ENestingFault::Stray:
    case ENestingFault::Crossed:
    case ENestingFault::Mismatched:
    case ENestingFault::VoidEnd:
    case ENestingFault::OneBranch: TellEndTag(fault); return;
    default: TellPlace(fault);
    }
}

void CHtmlNesting::TellUnclosed(const SNestingFault& fault)
{
    const SNestingEvent& element = Event(fault.other);
    SDetails details;
    details.arguments = {Tag("name", fault.other), EndTagOf(fault.other)};
    SMarkupSpan place = element.span;
    if (fault.at != NoEvent) {
        place = Event(fault.at).span;
        details.arguments.push_back(Tag("found", fault.at));
        details.related.push_back(m_report.Related(element.span, "The element begins here"));
        details.fixes.push_back(
            m_report.Fix(EFix::Insert, {place.begin, place.begin}, EndTagText(fault.other)));
    }
    m_report.Add(fault.fault == ENestingFault::Unclosed ? Code::UnclosedElement : Code::LeftOpenInBranch,
                 place, std::move(details));
}

void CHtmlNesting::TellEndTag(const SNestingFault& fault)
{
    const SNestingEvent& tag = Event(fault.at);
    SDetails details;
    details.arguments.push_back(Tag("found", fault.at));
    if (fault.other != NoEvent) {
        details.arguments.push_back(EndTagOf(fault.other));
        details.arguments.push_back(Tag("open", fault.other));
        details.related.push_back(m_report.Related(Event(fault.other).span, "The element begins here"));
    }
    std::int32_t code = Code::StrayEndTag;
    switch (fault.fault) {
    case ENestingFault::Crossed: code = Code::CrossedEndTags; break;
    case ENestingFault::Mismatched: {
        code = Code::MismatchedEndTag;
        const SMarkupSpan name = Event(fault.other).name;
        details.fixes.push_back(m_report.Fix(
            EFix::Rename, tag.name,
            std::wstring(m_report.Places().Written().substr(name.begin, name.end - name.begin))));
        break;
    }
    case ENestingFault::OneBranch: code = Code::OpenInOneBranch; break;
    case ENestingFault::VoidEnd: code = Code::EndTagOfVoid; [[fallthrough]];
    default: details.fixes.push_back(m_report.Fix(EFix::Remove, tag.span, L""));
    }
    m_report.Add(code, tag.span, std::move(details));
}

void CHtmlNesting::TellPlace(const SNestingFault& fault)
{
    const SNestingEvent& at = Event(fault.at);
    SDetails details;
    if (at.kind != SNestingEvent::Text)
        details.arguments.push_back(Tag("name", fault.at));
    if (fault.other != NoEvent)
        details.arguments.push_back(Tag("outer", fault.other));
    const auto relate = [&](const char* what) {
        details.related.push_back(m_report.Related(Event(fault.other).span, what));
    };
    std::int32_t code = 0;
    switch (fault.fault) {
    case ENestingFault::SelfClosing:
        code = Code::SelfClosingTag;
        details.arguments.push_back(EndTagOf(fault.at));
        break;
    case ENestingFault::BlockInParagraph:
        code = Code::BlockInParagraph;
        relate("The end tag that closes nothing");
        break;
    case ENestingFault::Alone:
        code = Code::NestedAlike;
        relate("The element begins here");
        break;
    case ENestingFault::TextInTable:
        code = Code::TextInTable;
        relate("The element begins here");
        break;
    case ENestingFault::ElementInTable:
        code = Code::ElementInTable;
        relate("The element begins here");
        break;
    default: code = Code::ElementTwice; relate("The first one is here");
    }
    m_report.Add(code, at.span, std::move(details));
}

} // namespace Kesh::CodeAnalyzer
