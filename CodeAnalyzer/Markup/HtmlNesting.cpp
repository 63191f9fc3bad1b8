#include "Markup/HtmlNesting.h"

#include "Markup/HtmlElements.h"
#include "Markup/MarkupKind.h"
#include "Markup/ScriptBlocks.h"

#include <algorithm>
#include <set>
#include <utility>

namespace Kesh::CodeAnalyzer {

using SyntaxParser::EHtmlTokenKind;
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

/// Whether the placeholders of a template engine are of those that take or leave what they surround.
bool HasBlocks(std::wstring_view text)
{
    constexpr std::wstring_view Signs[] = {L"{%", L"<%", L"{{#", L"{{/", L"{{^", L"{if", L"{foreach"};
    return std::ranges::any_of(
        Signs, [&](std::wstring_view sign) { return text.find(sign) != std::wstring_view::npos; });
}

} // namespace

void CHtmlNesting::Begin()
{
    m_hasTags = false;
    m_isMarkup = true;
    m_halves = {};
}

void CHtmlNesting::AddHtml(const SHtmlToken& token)
{
    // Most files of PHP have no tags, and what comes before the first one is in none.
    if (!m_hasTags) {
        if (token.kind != EHtmlTokenKind::StartTag && token.kind != EHtmlTokenKind::EndTag)
            return;
        m_hasTags = true;
        BeginTags();
    }
    if (m_isMarkup)
        m_events.Add(token);
}

void CHtmlNesting::BeginTags()
{
    const SyntaxParser::IMarkupPlaces& places = m_report.Places();
    SFlow flow = FindFlow(m_tokens.All(), places);
    AddScriptBlocks(flow, places);
    m_isMarkup = flow.sound && !(places.HasPlaceholders() && HasBlocks(places.Written())) && !IsXml(places);
    m_events.Begin(places, std::move(flow));
}

void CHtmlNesting::End()
{
    if (m_keepsHalves)
        AddUnprinted();
    if (!m_hasTags || !m_isMarkup)
        return;
    m_events.End();
    SVerdict verdict = Judge();
    if (m_report.Places().IsCancelled())
        return;
    if (m_keepsHalves)
        FindHalves(verdict);
    AddLeftOver(verdict);
    AddHalves(verdict);
    for (const SNestingFault& fault : verdict.faults)
        Tell(fault);
}

// With the help of indentation where that makes a function, or the whole, come out even.
SVerdict CHtmlNesting::Judge() const
{
    const SyntaxParser::IMarkupPlaces& places = m_report.Places();
    SVerdict verdict = CNestingJudge(m_events, places, {}).Judge();
    std::vector<SIndentBudget> budgets(verdict.scopes.size());
    bool any = false;
    for (std::size_t i = 0; i < budgets.size(); ++i) {
        const SLeftOver& left = verdict.scopes[i];
        if (left.unknown || left.open.size() + left.closed.size() > MostLost)
            continue;
        budgets[i] = {CountNames(m_events, left.open), CountNames(m_events, left.closed)};
        any = any || !budgets[i].IsEmpty();
    }
    if (!any)
        return verdict;
    SVerdict other = CNestingJudge(m_events, places, std::move(budgets)).Judge();
    if (places.IsCancelled())
        return verdict;
    std::vector<bool> better(verdict.scopes.size());
    for (std::size_t i = 0; i < better.size(); ++i)
        better[i] = !verdict.scopes[i].IsEven() && other.scopes[i].IsEven();
    std::erase_if(verdict.faults, [&](const SNestingFault& fault) { return better[fault.scope]; });
    for (const SNestingFault& fault : other.faults)
        if (better[fault.scope])
            verdict.faults.push_back(fault);
    for (std::size_t i = 0; i < better.size(); ++i)
        if (better[i])
            verdict.scopes[i] = {};
    return verdict;
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

// Whether a tag's name is whole, and one of HTML.
bool CHtmlNesting::IsCertain(std::uint32_t tag) const
{
    return !Event(tag).dynamic && (Event(tag).flags & ElementKnown) != 0;
}

// Other files may go on with what a part of a document leaves open, but not with a piece of text.
void CHtmlNesting::AddLeftOver(SVerdict& verdict) const
{
    const bool isWhole = IsWhole();
    const auto isRoot = [this](std::uint32_t tag) {
        return *Event(tag).lower == L"html" || *Event(tag).lower == L"body" || *Event(tag).lower == L"head";
    };
    const SLeftOver& left = verdict.scopes.front();
    if (left.unknown || (isWhole && std::ranges::any_of(left.closed, isRoot)))
        return;                       // something else has begun the document
    std::set<std::wstring_view> told; // one of each name: the others may be its doubles
    const auto isSure = [&](std::uint32_t tag) {
        return IsCertain(tag) && (isWhole || ((Event(tag).flags & ElementPhrase) != 0 &&
                                              told.insert(*Event(tag).lower).second));
    };
    for (const std::uint32_t tag : left.open)
        if (isSure(tag))
            verdict.faults.push_back({ENestingFault::Unclosed, NoEvent, tag});
    for (const std::uint32_t tag : left.closed)
        if (isSure(tag))
            verdict.faults.push_back({ENestingFault::Stray, tag});
}

// A function may leave an element open for another one to close; there must be such another one.
void CHtmlNesting::AddHalves(SVerdict& verdict) const
{
    std::set<std::wstring_view> opened;
    std::set<std::wstring_view> closed;
    for (const SLeftOver& left : verdict.scopes) {
        if (left.unknown)
            return;
        for (const std::uint32_t tag : left.open)
            opened.insert(*Event(tag).lower);
        for (const std::uint32_t tag : left.closed)
            closed.insert(*Event(tag).lower);
    }
    for (std::uint32_t scope = 1; scope < verdict.scopes.size(); ++scope) {
        const auto add = [&](const std::vector<std::uint32_t>& tags, const auto& partners,
                             ENestingFault kind) {
            for (const std::uint32_t tag : tags)
                if (IsCertain(tag) && !(Event(tag).flags & ElementOptionalEnd) &&
                    !partners.contains(*Event(tag).lower))
                    verdict.faults.push_back({kind, tag, tag, scope});
        };
        add(verdict.scopes[scope].open, closed, ENestingFault::HalfOpen);
        add(verdict.scopes[scope].closed, opened, ENestingFault::HalfClosed);
    }
}

SArgument CHtmlNesting::Tag(std::string name, std::uint32_t event) const
{
    const SNestingEvent& tag = Event(event);
    const wchar_t* begin = tag.kind == SNestingEvent::Close ? L"</" : L"<";
    return {std::move(name), begin + *tag.lower + L">"};
}

std::wstring CHtmlNesting::EndTagText(std::uint32_t event) const
{
    return L"</" + Written(Event(event).name) + L">";
}

std::wstring CHtmlNesting::Written(SMarkupSpan span) const
{
    return std::wstring(m_report.Places().Written().substr(span.begin, span.end - span.begin));
}

SArgument CHtmlNesting::EndTagOf(std::uint32_t event) const
{
    return {"expected", EndTagText(event)};
}

void CHtmlNesting::Tell(const SNestingFault& fault)
{
    switch (fault.fault) {
    case ENestingFault::Unclosed:
    case ENestingFault::HalfOpen:
    case ENestingFault::LeftInBranch: TellUnclosed(fault); return;
    case ENestingFault::Stray:
    case ENestingFault::Crossed:
    case ENestingFault::Mismatched:
    case ENestingFault::VoidEnd:
    case ENestingFault::HalfClosed:
    case ENestingFault::OneBranch: TellEndTag(fault); return;
    case ENestingFault::SelfClosing: return;
    default: TellPlace(fault);
    }
}

// Where what is before the event ends.
std::size_t CHtmlNesting::EndBefore(std::uint32_t event) const
{
    const SNestingEvent& before = Event(event - 1);
    return before.kind == SNestingEvent::Flow ? m_events.Flow().marks[before.mark].offset : before.span.end;
}

// Where the end tag is missing: at the end of the line on which the content begins behind the start tag, or
// of what comes before the first tag outside.
SMarkupSpan CHtmlNesting::EndPlace(const SNestingFault& fault) const
{
    const SMarkupSpan start = Event(fault.other).span;
    const std::wstring_view text = m_report.Places().Written();
    constexpr std::size_t LongestLine = 4096;
    const std::wstring_view line = text.substr(start.end, LongestLine);
    const std::size_t last =
        text.substr(0, start.end + std::min(line.find(L'\n'), line.size())).find_last_not_of(L" \t\r") + 1;
    const bool isOther = fault.at == NoEvent || fault.at == fault.other;
    const bool isWritten = m_report.Places().Text()[last - 1] != SyntaxParser::MarkupIsland;
    if (last > start.end && isWritten && (isOther || last <= Event(fault.at).span.begin))
        return {last - 1, last};
    if (isOther)
        return start;
    std::size_t end = std::max(start.end, std::min(EndBefore(fault.at), Event(fault.at).span.begin));
    // Between the PHP, not in it: before what ends the branch, or behind what ends the statement.
    const std::wstring_view scan = m_report.Places().Text();
    const bool inBranch = fault.fault == ENestingFault::LeftInBranch;
    while (inBranch && end > start.end && scan[end - 1] == SyntaxParser::MarkupIsland)
        --end;
    while (!inBranch && end < Event(fault.at).span.begin && scan[end] == SyntaxParser::MarkupIsland)
        ++end;
    return {end - 1, end};
}

void CHtmlNesting::TellUnclosed(const SNestingFault& fault)
{
    const SNestingEvent& element = Event(fault.other);
    SDetails details;
    details.arguments = {Tag("name", fault.other), EndTagOf(fault.other)};
    const SMarkupSpan place = fault.fault == ENestingFault::HalfOpen ? element.span : EndPlace(fault);
    if (fault.at != NoEvent && fault.at != fault.other)
        details.arguments.push_back(Tag("found", fault.at));
    if (place != element.span) {
        details.related.push_back(m_report.Related(element.span, "The element begins here"));
        details.fixes.push_back(m_report.Fix(EFix::Insert, {place.end, place.end}, EndTagText(fault.other)));
    }
    const std::int32_t code = fault.fault == ENestingFault::Unclosed   ? Code::UnclosedElement
                              : fault.fault == ENestingFault::HalfOpen ? Code::HalfOpenElement
                                                                       : Code::LeftOpenInBranch;
    m_report.Add(code, place, std::move(details));
}

// By the indentation of the lines before an end tag that begins its line: behind which one its start tag was.
bool CHtmlNesting::FindLostStart(std::uint32_t end, SMarkupSpan& place) const
{
    constexpr std::size_t MostLines = 200;
    const SNestingEvent& tag = Event(end);
    if (tag.indent == SNestingEvent::NoIndent)
        return false;
    const std::wstring_view text = m_report.Places().Written();
    std::size_t lineEnd = text.rfind(L'\n', tag.span.begin);
    for (std::size_t lines = 0; lineEnd != std::wstring_view::npos && lineEnd > 0 && lines < MostLines;
         ++lines) {
        const std::size_t before = text.rfind(L'\n', lineEnd - 1);
        const std::size_t begin = before == std::wstring_view::npos ? 0 : before + 1;
        const std::size_t content = std::min(text.find_first_not_of(L" \t", begin), lineEnd);
        const bool isBlank = content == lineEnd || text[content] == L'\r';
        if (!isBlank && WidthOf(text.substr(begin, content - begin)) <= tag.indent) {
            if (lines == 0)
                return false;
            const std::size_t last = text.substr(0, lineEnd).find_last_not_of(L" \t\r") + 1;
            place = {last - 1, last};
            return true;
        }
        lineEnd = before;
    }
    return false;
}

void CHtmlNesting::TellEndTag(const SNestingFault& fault)
{
    const SNestingEvent& tag = Event(fault.at);
    SDetails details;
    details.arguments.push_back(Tag("found", fault.at));
    SMarkupSpan place = tag.span;
    if (fault.fault == ENestingFault::Stray && FindLostStart(fault.at, place)) {
        details.arguments.push_back({"expected", L"<" + *tag.lower + L">"});
        details.related.push_back(m_report.Related(tag.span, "The end tag is here"));
        details.fixes.push_back(
            m_report.Fix(EFix::Insert, {place.end, place.end}, L"<" + Written(tag.name) + L">"));
        m_report.Add(Code::LostStartTag, place, std::move(details));
        return;
    }
    if (fault.other != NoEvent && fault.other != fault.at) {
        details.arguments.push_back(EndTagOf(fault.other));
        details.arguments.push_back(Tag("open", fault.other));
        details.related.push_back(m_report.Related(Event(fault.other).span, "The element begins here"));
    }
    std::int32_t code = Code::StrayEndTag;
    switch (fault.fault) {
    case ENestingFault::Crossed:
        code = Code::CrossedEndTags;
        AddSwap(fault, details);
        break;
    case ENestingFault::Mismatched:
        code = Code::MismatchedEndTag;
        details.fixes.push_back(m_report.Fix(EFix::Rename, tag.name, Written(Event(fault.other).name)));
        break;
    case ENestingFault::HalfClosed: code = Code::HalfClosedElement; break;
    case ENestingFault::OneBranch:
        code = Code::OpenInOneBranch;
        AddCondition(fault, details);
        break;
    case ENestingFault::VoidEnd: code = Code::EndTagOfVoid; [[fallthrough]];
    default: details.fixes.push_back(m_report.Fix(EFix::Remove, tag.span, L""));
    }
    m_report.Add(code, tag.span, std::move(details));
}

// Two end tags, one directly behind the other, in the other order.
void CHtmlNesting::AddSwap(const SNestingFault& fault, SDetails& details) const
{
    const std::uint32_t next = fault.at + 1;
    if (fault.other == NoEvent || next >= m_events.All().size() || Event(next).kind != SNestingEvent::Close ||
        Event(next).dynamic || *Event(next).lower != *Event(fault.other).lower)
        return;
    SFix swap = m_report.Fix(EFix::Rename, Event(fault.at).name, Written(Event(next).name));
    const SFix second = m_report.Fix(EFix::Rename, Event(next).name, Written(Event(fault.at).name));
    swap.edits.push_back(second.edits.front());
    details.fixes.push_back(std::move(swap));
}

// The end tag under the condition of the start tag.
void CHtmlNesting::AddCondition(const SNestingFault& fault, SDetails& details) const
{
    if (fault.other == NoEvent)
        return;
    const std::vector<SFlowMark>& marks = m_events.Flow().marks;
    const SFlowMark* branch = nullptr;
    std::size_t depth = 0;
    for (std::uint32_t i = fault.other; i-- > 0 && !branch;) {
        if (Event(i).kind != SNestingEvent::Flow)
            continue;
        const SFlowMark& mark = marks[Event(i).mark];
        depth += mark.kind == SFlowMark::BranchEnd ? 1 : 0;
        if (mark.kind == SFlowMark::BranchBegin && depth-- == 0)
            branch = &mark;
        else if (mark.kind == SFlowMark::ScopeBegin || mark.kind == SFlowMark::ScopeEnd)
            return;
    }
    // Of the first branch of an "if": what the others take depends on more than their own condition.
    if (!branch || branch == marks.data() || (branch - 1)->kind != SFlowMark::StatementBegin ||
        (branch - 1)->branching != EBranching::Choice || branch->condition.IsEmpty())
        return;
    const std::wstring condition = Written(branch->condition);
    const SMarkupSpan end = Event(fault.at).span;
    if (!m_report.Places().Written().substr((branch - 1)->offset).starts_with(L"if") ||
        condition.find_first_of(L"\n?") != std::wstring::npos)
        return;
    SFix fix = m_report.Fix(EFix::Insert, {end.begin, end.begin}, L"<?php if (" + condition + L"): ?>");
    fix.edits.push_back(m_report.Fix(EFix::Insert, {end.end, end.end}, L"<?php endif ?>").edits.front());
    details.fixes.push_back(std::move(fix));
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
