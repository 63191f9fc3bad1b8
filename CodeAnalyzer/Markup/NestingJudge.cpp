#include "Markup/NestingJudge.h"

#include "Markup/HtmlElements.h"
#include "Markup/OthersNames.h"

#include <algorithm>
#include <utility>

namespace Kesh::CodeAnalyzer {

namespace {

/// How far down an element is looked for: what is deeper cannot be told, and nothing costs more than this.
constexpr std::size_t Reach = 256;

} // namespace

CNestingJudge::CNestingJudge(const CNestingEvents& events, const SyntaxParser::IMarkupPlaces& places,
                             std::vector<SIndentBudget> budgets)
    : m_events(events), m_places(places), m_budgets(std::move(budgets))
{
}

SVerdict CNestingJudge::Judge()
{
    BeginSequence(true);
    const std::vector<SNestingEvent>& all = m_events.All();
    for (std::uint32_t i = 0; i < all.size(); ++i) {
        if (i % 1024 == 0 && m_places.IsCancelled())
            break;
        switch (all[i].kind) {
        case SNestingEvent::Open: OnOpen(i); break;
        case SNestingEvent::Close: OnClose(i); break;
        case SNestingEvent::Text: CheckTable(i); break;
        case SNestingEvent::Torn: MakeUnknown(); break;
        case SNestingEvent::Unknown: OnUnknown(all[i].calls); break;
        case SNestingEvent::Flow: OnFlow(m_events.Flow().marks[all[i].mark]); break;
        }
    }
    while (!m_sequences.empty()) { // a scope that is given up
        Here().effect.unknown = Here().effect.unknown || m_sequences.size() > 1;
        if (Here().isScope)
            EndScopeOf(Here());
        m_sequences.pop_back();
    }
    return std::move(m_verdict);
}

void CNestingJudge::EndScopeOf(SSequence& sequence)
{
    SettleStrays(sequence.effect.opens);
    SLeftOver& left = m_verdict.scopes[sequence.scope];
    left.unknown = sequence.effect.unknown;
    left.closed = std::move(sequence.effect.closes);
    for (const SOpenItem& item : sequence.effect.opens) {
        left.unknown = left.unknown || !item.IsElement();
        if (!item.IsElement() && !sequence.effect.unknown)
            for (const TOpen& branch : item.conditional->branches)
                LeavePhrase(branch);
        if (item.IsElement() && !IsOptional(item) && item.stray < 0)
            left.open.push_back(item.event);
    }
}

// An end tag that fits nothing stands for that of the element around it, which has no other.
void CNestingJudge::SettleStrays(const TOpen& open)
{
    for (const SOpenItem& item : open)
        if (item.stray >= 0) {
            m_verdict.faults[item.stray].fault = ENestingFault::Mismatched;
            m_verdict.faults[item.stray].other = item.event;
        }
}

void CNestingJudge::Report(ENestingFault fault, std::uint32_t at, std::uint32_t other)
{
    m_verdict.faults.push_back({fault, at, other, Here().scope});
}

bool CNestingJudge::IsOptional(const SOpenItem& item) const
{
    return Has(item, ElementOptionalEnd);
}

bool CNestingJudge::IsForeign() const
{
    const SSequence& here = m_sequences.back();
    const TOpen& open = here.effect.opens;
    for (std::size_t i = open.size(); i-- > 0 && open.size() - i <= 16;)
        if (open[i].IsElement()) {
            if (Has(open[i], ElementForeign))
                return true;
            if (Name(open[i].event) == L"foreignobject" || (Event(open[i].event).flags & ElementKnown) != 0)
                return false;
        }
    return here.foreign;
}

bool CNestingJudge::Fits(std::uint32_t open, std::uint32_t close) const
{
    const SNestingEvent& a = Event(open);
    const SNestingEvent& b = Event(close);
    return a.dynamic || b.dynamic || a.lower == b.lower;
}

void CNestingJudge::Indent(std::uint32_t event)
{
    const std::int32_t indent = Event(event).indent;
    if (indent == SNestingEvent::NoIndent || Open().empty())
        return;
    SOpenItem& top = Open().back();
    if (!top.IsElement() || Event(top.event).indent == SNestingEvent::NoIndent)
        return;
    if (indent > Event(top.event).indent)
        top.indented = true;
    else if (top.indented && top.suspect == NoEvent)
        top.suspect = event;
}

void CNestingJudge::OnOpen(std::uint32_t event)
{
    const SNestingEvent& tag = Event(event);
    Indent(event);
    if (IsForeign() && tag.selfClosing)
        return;
    EndOptional(event);
    CheckTwice(event);
    CheckTable(event);
    if (tag.flags & ElementEndsParagraph)
        EndByBlock(event);
    if (tag.flags & (ElementAlone | ElementHeading))
        CheckAlone(event);
    if (tag.flags & ElementVoid)
        return;
    if (tag.selfClosing && !tag.dynamic) {
        if ((tag.flags & ElementKnown) && !(tag.flags & ElementForeign)) {
            Report(ENestingFault::SelfClosing, event, event);
            Here().reopened.push_back(static_cast<std::uint32_t>(m_verdict.faults.size() - 1));
        }
        return; // as it was meant
    }
    SOpenItem item;
    item.event = event;
    Open().push_back(std::move(item));
}

// Elements that the start tag of the next one ends.
void CNestingJudge::EndOptional(std::uint32_t event)
{
    if (Event(event).dynamic)
        return;
    TOpen& open = Open();
    for (std::size_t i = open.size(); i-- > 0 && IsOptional(open[i]);)
        if (!Event(open[i].event).dynamic && IsEndedBy(Name(open[i].event), Name(event))) {
            open.erase(open.begin() + static_cast<std::ptrdiff_t>(i), open.end());
            i = open.size();
        }
}

// A paragraph goes on, to its author, where its end tag still comes.
void CNestingJudge::EndByBlock(std::uint32_t event)
{
    TOpen& open = Open();
    for (std::size_t i = open.size(); i-- > 0 && open.size() - i <= 64;) {
        if (!open[i].IsElement() || Has(open[i], ElementScope))
            return;
        if (Name(open[i].event) != L"p" || Event(open[i].event).dynamic)
            continue;
        if (Name(event) == L"p" && i + 1 == open.size())
            open.pop_back();
        else if (open[i].blockInside == NoEvent)
            open[i].blockInside = event;
        return;
    }
}

void CNestingJudge::CheckAlone(std::uint32_t event)
{
    TOpen& open = Open();
    const bool isHeading = Event(event).flags & ElementHeading;
    const std::size_t reach = isHeading ? 1 : 64;
    for (std::size_t i = open.size(); i-- > 0 && open.size() - i <= reach;) {
        if (!open[i].IsElement())
            return;
        const bool alike =
            isHeading ? Has(open[i], ElementHeading) : Event(open[i].event).lower == Event(event).lower;
        if (alike) {
            Report(ENestingFault::Alone, event, open[i].event);
            Here().reopened.push_back(static_cast<std::uint32_t>(m_verdict.faults.size() - 1));
            open.erase(open.begin() + static_cast<std::ptrdiff_t>(i));
            return;
        }
        if (Has(open[i], ElementScope) && Name(event) != L"form")
            return;
    }
}

void CNestingJudge::CheckTable(std::uint32_t event)
{
    if (Open().empty() || !Has(Open().back(), ElementTablePart) || Open().back().contentTold || IsForeign())
        return;
    SOpenItem& table = Open().back();
    const SNestingEvent& what = Event(event);
    const bool isText = what.kind == SNestingEvent::Text;
    if (!isText && (what.dynamic || (what.flags & ElementInTable) || !(what.flags & ElementKnown)))
        return;
    Report(isText ? ENestingFault::TextInTable : ENestingFault::ElementInTable, event, table.event);
    table.contentTold = true;
}

void CNestingJudge::CheckTwice(std::uint32_t event)
{
    const std::wstring& name = Name(event);
    const bool inTemplate =
        !Open().empty() && Open().back().IsElement() && IsPrefixed(Name(Open().back().event));
    if (m_sequences.size() != 1 || inTemplate || Here().effect.unknown ||
        (name != L"html" && name != L"head" && name != L"body"))
        return;
    const auto [first, isNew] = m_once.try_emplace(name, event);
    if (!isNew)
        Report(ENestingFault::Twice, event, first->second);
}

// What is printed may hold elements whose end tags may be left out, or are written.
void CNestingJudge::OnUnknown(bool calls)
{
    TOpen& open = Open();
    for (std::size_t i = open.size(); i-- > 0;) {
        open[i].printsUnknown = true;
        open[i].callsUnknown = open[i].callsUnknown || calls;
        if (!IsOptional(open[i]))
            return;
    }
    Here().effect.printsUnknown = true;
    Here().effect.callsUnknown = Here().effect.callsUnknown || calls;
}

void CNestingJudge::OnClose(std::uint32_t event)
{
    const SNestingEvent& tag = Event(event);
    if ((tag.flags & ElementVoid) && !IsForeign()) {
        const bool isXml = tag.xmlish && !(tag.flags & ElementPlain);
        if (!isXml && !Here().effect.unknown)
            Report(ENestingFault::VoidEnd, event);
        return;
    }
    if (!CloseKnown(event) && !CloseReopened(event) && !Here().effect.unknown)
        CloseUnknown(event);
}

// Closes the nearest element that the tag fits. False: there is none.
bool CNestingJudge::CloseKnown(std::uint32_t event)
{
    TOpen& open = Open();
    std::size_t found = open.size();
    bool next = true; // nothing is in between that needs an end tag
    for (std::size_t i = open.size(); i-- > 0 && open.size() - i <= Reach && found == open.size();) {
        const bool known = open[i].IsElement() && !Event(event).dynamic && !Event(open[i].event).dynamic;
        if (open[i].IsElement() && (next || known) && Fits(open[i].event, event))
            found = i;
        next = next && IsOptional(open[i]);
    }
    if (found == open.size()) {
        if (open.size() > Reach)
            MakeUnknown();
        return false;
    }
    // A name that cannot be told fits only what is next.
    const bool certain = !Event(event).dynamic && !Event(open[found].event).dynamic;
    found = ByIndent(found, event);
    if (found == open.size())
        return true;
    if (certain) {
        const std::wstring* last = nullptr; // one of each name: the others may be its doubles
        for (std::size_t i = open.size(); i-- > found + 1;) {
            const std::wstring* name = open[i].IsElement() ? &Name(open[i].event) : nullptr;
            if (!name || name != last)
                GiveUp(open[i], event);
            last = name;
        }
    }
    const SOpenItem& closed = open[found];
    if (closed.blockInside != NoEvent && certain && Name(closed.event) == L"p")
        Report(ENestingFault::BlockInParagraph, closed.blockInside, event);
    open.erase(open.begin() + static_cast<std::ptrdiff_t>(found), open.end());
    return true;
}

// Where tags are lost or too many, the indentation of lines may tell which: the element that the tag closes
// then, or none.
std::size_t CNestingJudge::ByIndent(std::size_t found, std::uint32_t event)
{
    TOpen& open = Open();
    const std::int32_t indent = Event(event).indent;
    const std::int32_t opened = Event(open[found].event).indent;
    if (Here().scope >= m_budgets.size() || indent == SNestingEvent::NoIndent ||
        opened == SNestingEvent::NoIndent)
        return found;
    SIndentBudget& budget = m_budgets[Here().scope];
    if (indent > opened) {
        const auto extra = budget.extra.find(Name(event));
        if (extra == budget.extra.end() || extra->second == 0)
            return found;
        --extra->second;
        Report(ENestingFault::Stray, event, open[found].event);
        return open.size();
    }
    const auto lost = budget.lost.find(Name(event));
    if (indent == opened || lost == budget.lost.end() || lost->second == 0)
        return found;
    for (std::size_t i = found; i-- > 0 && found - i <= 64 && open[i].IsElement();)
        if (Fits(open[i].event, event) && Event(open[i].event).indent == indent) {
            --lost->second;
            return i;
        }
    return found;
}

// An element, or what some branches have left open, that is closed from outside.
void CNestingJudge::GiveUp(SOpenItem& item, std::uint32_t at)
{
    if (!item.IsElement()) {
        if (!item.conditional->isLoop || at != NoEvent)
            for (const TOpen& branch : item.conditional->branches)
                LeaveOpen(branch, at);
        return;
    }
    const SNestingEvent& tag = Event(item.event);
    if (IsOptional(item) || tag.dynamic)
        return;
    if (item.stray >= 0) { // an end tag for something else stands where its own is due
        SNestingFault& stray = m_verdict.faults[item.stray];
        stray.fault = ENestingFault::Mismatched;
        stray.other = item.event;
        return;
    }
    if (!(tag.flags & ElementKnown) && tag.lower->find(L'-') == std::wstring::npos)
        return; // a name that is mistyped is an error of its own
    Report(ENestingFault::Unclosed, item.suspect != NoEvent ? item.suspect : at, item.event);
    Here().reopened.push_back(static_cast<std::uint32_t>(m_verdict.faults.size() - 1));
}

void CNestingJudge::LeaveOpen(const TOpen& items, std::uint32_t at)
{
    for (const SOpenItem& item : items)
        if (item.IsElement() && !IsOptional(item) && !Event(item.event).dynamic) {
            Report(ENestingFault::LeftInBranch, item.suspect != NoEvent ? item.suspect : at, item.event);
            return;
        }
}

// The end tag of an element that has been given up before: the two stand in the wrong order.
bool CNestingJudge::CloseReopened(std::uint32_t event)
{
    std::vector<std::uint32_t>& reopened = Here().reopened;
    for (std::size_t i = reopened.size(); i-- > 0 && reopened.size() - i <= 16;) {
        SNestingFault& fault = m_verdict.faults[reopened[i]];
        if (!Fits(fault.other, event))
            continue;
        if (fault.fault == ENestingFault::Unclosed && fault.at != NoEvent &&
            Event(fault.at).kind == SNestingEvent::Close)
            fault.fault = ENestingFault::Crossed;
        reopened.erase(reopened.begin() + static_cast<std::ptrdiff_t>(i));
        return true;
    }
    return false;
}

void CNestingJudge::CloseUnknown(std::uint32_t event)
{
    TOpen& open = Open();
    std::size_t top = open.size();
    while (top > 0 && IsOptional(open[top - 1]))
        --top;
    if (top == 0) {
        if (!(Event(event).flags & ElementOptionalEnd))
            std::erase_if(open, [this](const SOpenItem& item) { return !Has(item, ElementRoot); });
        Here().effect.closes.push_back(event);
        return;
    }
    SOpenItem& item = open[top - 1];
    if (!item.IsElement()) {
        open.erase(open.begin() + static_cast<std::ptrdiff_t>(top), open.end());
        if (!CloseConditional(open.back(), event))
            MakeUnknown();
        return;
    }
    const auto isOdd = [&](std::uint32_t tag) {
        return !(Event(tag).flags & ElementKnown) && Name(tag).find(L'-') == std::wstring::npos;
    };
    if (IsPrefixed(Name(item.event)) || IsPrefixed(Name(event))) {
        MakeUnknown(); // tags of a template engine need not nest
        return;
    }
    if (item.printsUnknown && (Event(event).flags & ElementOptionalEnd))
        return;
    if (isOdd(item.event) || isOdd(event)) { // one of the two names is mistyped
        if (!isOdd(item.event))
            Report(ENestingFault::Mismatched, event, item.event);
        open.erase(open.begin() + static_cast<std::ptrdiff_t>(top - 1), open.end());
        return;
    }
    if (item.stray >= 0)
        return; // one record for one place
    Report(ENestingFault::Stray, event, item.event);
    item.stray = static_cast<std::int32_t>(m_verdict.faults.size() - 1);
}

// An end tag behind what branches have left open differently. False: it fits none of them.
bool CNestingJudge::CloseConditional(SOpenItem& item, std::uint32_t event)
{
    SConditional& conditional = *item.conditional;
    std::size_t fitting = 0;
    std::uint32_t opened = NoEvent;
    for (TOpen& branch : conditional.branches) {
        while (!branch.empty() && IsOptional(branch.back()) && !Fits(branch.back().event, event))
            branch.pop_back();
        if (branch.empty() || !branch.back().IsElement() || !Fits(branch.back().event, event))
            continue;
        ++fitting;
        opened = branch.back().event;
    }
    if (fitting == 0)
        return false;
    if (fitting < conditional.branches.size()) {
        if (!Event(event).dynamic && !Event(opened).dynamic)
            Report(ENestingFault::OneBranch, event, opened);
        Open().pop_back();
        return true;
    }
    bool empty = true;
    for (TOpen& branch : conditional.branches) {
        branch.pop_back();
        empty = empty && branch.empty();
    }
    if (empty)
        Open().pop_back();
    return true;
}

} // namespace Kesh::CodeAnalyzer
