#include "Markup/HtmlElements.h"
#include "Markup/NestingJudge.h"
#include "Markup/OthersNames.h"

#include <algorithm>

namespace Kesh::CodeAnalyzer {

namespace {

constexpr std::size_t Reach = 256; ///< so many branches and elements are looked through

} // namespace

bool CNestingJudge::IsOpenIn(const TOpen& open, std::uint32_t close, std::size_t& reach) const
{
    for (std::size_t i = open.size(); i-- > 0;) {
        if (reach-- == 0)
            return true; // nobody can tell
        if (open[i].IsElement()
                ? Fits(open[i].event, close)
                : std::ranges::any_of(open[i].conditional->branches, [&](const TOpen& branch) {
                      return reach == 0 || IsOpenIn(branch, close, reach);
                  }))
            return true;
        if (reach == 0)
            return true;
    }
    return false;
}

// Whether an end tag of the innermost branch may have an element around the branch to end.
bool CNestingJudge::IsOpenAround(std::uint32_t close) const
{
    std::size_t reach = Reach;
    for (std::size_t i = m_sequences.size(); i-- > 0;) {
        const SSequence& sequence = m_sequences[i];
        if (reach-- == 0 || sequence.effect.unknown || IsOpenIn(sequence.effect.opens, close, reach) ||
            !sequence.reopened.empty())
            return true;
        if (sequence.isScope)
            return false;
    }
    return false;
}

// The element around the innermost branch whose end tag is due next; null: none is known.
const SOpenItem* CNestingJudge::NextAround() const
{
    for (std::size_t i = m_sequences.size(); i-- > 0 && m_sequences.size() - i <= Reach;) {
        const TOpen& open = m_sequences[i].effect.opens;
        for (std::size_t k = open.size(); k-- > 0 && open.size() - k <= Reach;)
            if (!IsOptional(open[k]))
                return &open[k];
        if (m_sequences[i].isScope)
            break;
    }
    return nullptr;
}

// Whether somewhere in the text a branch leaves an element of the name open.
bool CNestingJudge::IsLeftSomewhere(const std::wstring* name)
{
    if (!m_hasLeft) {
        m_hasLeft = true;
        std::vector<std::vector<const std::wstring*>> branches(1);
        const auto leave = [&] {
            m_left.insert(branches.back().begin(), branches.back().end());
            branches.pop_back();
        };
        for (const SNestingEvent& event : m_events.All()) {
            if (event.kind == SNestingEvent::Open) {
                branches.back().push_back(event.lower);
            } else if (event.kind == SNestingEvent::Close) {
                auto& open = branches.back();
                const std::size_t reach = std::min(open.size(), Reach);
                const auto found =
                    std::find(open.rbegin(), open.rbegin() + static_cast<std::ptrdiff_t>(reach), event.lower);
                if (found != open.rbegin() + static_cast<std::ptrdiff_t>(reach))
                    open.erase(std::next(found).base());
            } else if (event.kind == SNestingEvent::Flow) {
                const SFlowMark::EKind kind = m_events.Flow().marks[event.mark].kind;
                if (kind == SFlowMark::BranchBegin || kind == SFlowMark::ScopeBegin)
                    branches.emplace_back();
                else if (kind == SFlowMark::BranchEnd || kind == SFlowMark::ScopeEnd)
                    leave();
            }
        }
        while (!branches.empty())
            leave();
    }
    return m_left.contains(name);
}

// End tags of a branch that has just ended, whose elements nobody has begun, are no part of what it does.
void CNestingJudge::SettleCloses(SEffect& branch, bool inLoop)
{
    if (branch.unknown || branch.closes.empty())
        return;
    const SOpenItem* around = NextAround();
    if (around && !around->IsElement())
        return; // it is closed by a condition
    const bool isSure = around && !around->assumed && around->stray < 0 && !around->callsUnknown &&
                        !branch.callsUnknown && !Event(around->event).dynamic && Has(*around, ElementKnown);
    std::erase_if(branch.closes, [&](std::uint32_t close) {
        const SNestingEvent& tag = Event(close);
        const bool inOther = isSure && !(tag.flags & ElementOptionalEnd);
        if (tag.dynamic || !(tag.flags & ElementKnown) || !(inOther || (tag.flags & ElementPhrase)) ||
            IsOpenAround(close) || (inLoop && IsLeftSomewhere(tag.lower)))
            return false;
        Report(ENestingFault::Stray, close, around ? around->event : NoEvent);
        return true;
    });
}

// What a branch leaves open at the end of its scope, which nobody goes on with.
void CNestingJudge::LeavePhrase(const TOpen& branch)
{
    for (const SOpenItem& item : branch)
        if (Has(item, ElementPhrase) && !Event(item.event).dynamic) {
            Report(ENestingFault::LeftInBranch, NoEvent, item.event);
            return;
        }
}

} // namespace Kesh::CodeAnalyzer
