#include "Markup/HtmlElements.h"
#include "Markup/NestingJudge.h"

#include <algorithm>
#include <utility>

namespace Kesh::CodeAnalyzer {

namespace {

constexpr std::size_t MostItems = 512;         ///< that branches are compared by
constexpr std::uint32_t MostConditionals = 32; ///< one inside of another

std::uint32_t DepthOf(const std::vector<SOpenItem>& items)
{
    std::uint32_t depth = 0;
    for (const SOpenItem& item : items)
        if (item.conditional)
            depth = std::max(depth, item.conditional->depth + 1);
    return depth;
}

/// How the branches under `b` answer to those under `a`: as they are, the other way round, or not at all.
enum class EAnswer : std::uint8_t { None, Same, Opposite };

EAnswer Compare(const std::vector<SCondition>& a, const std::vector<SCondition>& b)
{
    if (a.size() != b.size() || a.empty())
        return EAnswer::None;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (a[i].text != b[i].text || a[i].text.empty())
            return EAnswer::None;
    if (a.size() == 1 && a[0].negated != b[0].negated)
        return EAnswer::Opposite;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (a[i].negated != b[i].negated)
            return EAnswer::None;
    return EAnswer::Same;
}

} // namespace

void CNestingJudge::OnFlow(const SFlowMark& mark)
{
    switch (mark.kind) {
    case SFlowMark::ScopeBegin: BeginSequence(true); return;
    case SFlowMark::ScopeEnd:
        EndScopeOf(Here());
        m_sequences.pop_back();
        return;
    case SFlowMark::StatementBegin:
        m_statements.emplace_back();
        m_statements.back().branching = mark.branching;
        return;
    case SFlowMark::BranchBegin:
        m_statements.back().always = m_statements.back().always || mark.always;
        if (!mark.always)
            m_statements.back().conditions.push_back(ReadCondition(
                m_places.Written().substr(mark.condition.begin, mark.condition.end - mark.condition.begin)));
        BeginSequence(false);
        return;
    case SFlowMark::BranchEnd: EndBranch(); return;
    case SFlowMark::StatementEnd: EndStatement(); return;
    case SFlowMark::Exit: Here().effect.exits = true; return;
    }
}

void CNestingJudge::BeginSequence(bool isScope)
{
    SSequence sequence;
    sequence.isScope = isScope;
    sequence.foreign = !isScope && IsForeign();
    sequence.inLoop = !isScope && (Here().inLoop || m_statements.back().branching == EBranching::Loop);
    sequence.scope = isScope ? static_cast<std::uint32_t>(m_verdict.scopes.size()) : Here().scope;
    if (isScope)
        m_verdict.scopes.emplace_back();
    m_sequences.push_back(std::move(sequence));
}

void CNestingJudge::EndBranch()
{
    SEffect effect = std::move(Here().effect);
    const bool inLoop = Here().inLoop;
    m_sequences.pop_back();
    if (effect.opens.size() + effect.closes.size() > MostItems || DepthOf(effect.opens) >= MostConditionals)
        effect = {.closes = {},
                  .opens = {},
                  .unknown = true,
                  .exits = effect.exits,
                  .printsUnknown = true,
                  .callsUnknown = true};
    SettleCloses(effect, inLoop);
    m_statements.back().branches.push_back(std::move(effect));
}

// A tag that cannot be followed puts all that is open around it in doubt.
void CNestingJudge::MakeUnknown()
{

    for (std::size_t i = m_sequences.size(); i-- > 0;) {
        m_sequences[i].effect.unknown = true;
        m_sequences[i].effect.opens.clear();
        m_sequences[i].effect.closes.clear();
        if (m_sequences[i].isScope)
            return;
    }
}

void CNestingJudge::EndStatement()
{
    SStatement statement = std::move(m_statements.back());
    m_statements.pop_back();
    for (const SEffect& branch : statement.branches)
        if (branch.unknown) {
            MakeUnknown();
            return;
        }
    if (std::ranges::any_of(statement.branches, [](const SEffect& branch) { return branch.printsUnknown; }))
        OnUnknown(std::ranges::any_of(statement.branches,
                                      [](const SEffect& branch) { return branch.callsUnknown; }));
    if (statement.branching == EBranching::Loop)
        EndLoop(statement);
    else
        ApplyChoice(statement);
}

std::span<const SOpenItem> CNestingJudge::WithoutOptional(const TOpen& open) const
{
    std::size_t size = open.size();
    while (size > 0 && IsOptional(open[size - 1]))
        --size;
    return std::span(open).first(size);
}

bool CNestingJudge::AgreeOpen(std::span<const SOpenItem> a, std::span<const SOpenItem> b) const
{
    return std::ranges::equal(a, b, [this](const SOpenItem& x, const SOpenItem& y) {
        if (x.IsElement() && y.IsElement())
            return Fits(x.event, y.event);
        return !x.IsElement() && !y.IsElement() &&
               Compare(x.conditional->conditions, y.conditional->conditions) == EAnswer::Same;
    });
}

// Whether all do the same, perhaps but for end tags that may be left out.
bool CNestingJudge::AgreeAll(std::vector<SEffect>& branches)
{
    SEffect& first = branches.front();
    const bool close = std::ranges::all_of(branches, [&](const SEffect& branch) {
        return std::ranges::equal(first.closes, branch.closes,
                                  [this](std::uint32_t x, std::uint32_t y) { return Fits(x, y); });
    });
    if (!close)
        return false;
    if (std::ranges::all_of(branches, [&](const SEffect& b) { return AgreeOpen(first.opens, b.opens); }))
        return true;
    const auto least = WithoutOptional(first.opens);
    if (!std::ranges::all_of(branches,
                             [&](const SEffect& b) { return AgreeOpen(least, WithoutOptional(b.opens)); }))
        return false;
    if (!Open().empty())
        Open().back().contentTold = true; // it may be that of a cell
    first.opens.erase(first.opens.begin() + static_cast<std::ptrdiff_t>(least.size()), first.opens.end());
    return true;
}

// A turn of a loop leaves things as they were, or closes what the turn before has opened.
void CNestingJudge::EndLoop(SStatement& statement)
{
    if (statement.branches.empty())
        return;
    SEffect& body = statement.branches.front();
    body.opens.erase(body.opens.begin() + static_cast<std::ptrdiff_t>(WithoutOptional(body.opens).size()),
                     body.opens.end());
    if (body.closes.empty() && body.opens.empty())
        return;
    const bool swaps = body.closes.size() == body.opens.size() && AgreeOpen(body.opens, body.opens) &&
                       std::ranges::all_of(body.opens, [](const SOpenItem& i) { return i.IsElement(); });
    if (swaps)
        return;
    if (body.closes.empty()) {
        SOpenItem item;
        item.conditional = std::make_unique<SConditional>();
        item.conditional->isLoop = true;
        item.conditional->depth = DepthOf(body.opens);
        item.conditional->branches.push_back(std::move(body.opens));
        item.conditional->branches.emplace_back();
        Open().push_back(std::move(item));
        return;
    }
    // So many times as something else has been opened.
    if (!Open().empty() && !Open().back().IsElement() && Open().back().conditional->isLoop)
        Open().pop_back();
    else
        MakeUnknown();
}

void CNestingJudge::ApplyChoice(SStatement& statement)
{
    std::vector<SEffect>& branches = statement.branches;
    const auto exits = [](const SEffect& branch) { return branch.exits; };
    if (statement.always && std::ranges::all_of(branches, exits)) {
        Here().effect.exits = true;
        return;
    }
    // What is not reached agrees with all.
    if (std::erase_if(branches, exits) > 0)
        statement.conditions.clear();
    // Branches that agree are taken for all that there are.
    const bool assumed = !statement.always && branches.size() > 1 && AgreeAll(branches);
    if (!statement.always && !assumed)
        branches.emplace_back();
    if (branches.empty())
        return;
    if (AgreeAll(branches)) {
        if (assumed && !branches.front().closes.empty() && !Open().empty() && !Open().back().IsElement()) {
            MakeUnknown();
            return;
        }
        for (SOpenItem& item : branches.front().opens)
            item.assumed = item.assumed || assumed;
        Apply(std::move(branches.front()));
        return;
    }
    if (statement.branching == EBranching::Attempt) {
        Apply(std::move(branches.front()));
        return;
    }
    if (branches.size() != statement.conditions.size() + 1)
        statement.conditions.clear(); // a switch, whose conditions are compared with something
    const bool opensOnly =
        std::ranges::all_of(branches, [](const SEffect& branch) { return branch.closes.empty(); });
    if (opensOnly) {
        SOpenItem item;
        item.conditional = std::make_unique<SConditional>();
        item.conditional->conditions = std::move(statement.conditions);
        for (SEffect& branch : branches) {
            item.conditional->depth = std::max(item.conditional->depth, DepthOf(branch.opens));
            item.conditional->branches.push_back(std::move(branch.opens));
        }
        Open().push_back(std::move(item));
        return;
    }
    if (!Open().empty() && !Open().back().IsElement() &&
        CloseByCondition(statement, *Open().back().conditional))
        return;
    if (!CloseInSome(statement))
        MakeUnknown();
}

void CNestingJudge::Apply(SEffect effect)
{
    for (const std::uint32_t close : effect.closes)
        OnClose(close);
    for (SOpenItem& item : effect.opens)
        Open().push_back(std::move(item));
}

// Closes what a statement with the same condition has opened. False: the condition is another one.
bool CNestingJudge::CloseByCondition(SStatement& statement, SConditional& open)
{
    const EAnswer answer = Compare(open.conditions, statement.conditions);
    const std::size_t count = open.branches.size();
    if (answer == EAnswer::None || count != statement.branches.size())
        return false;
    SOpenItem left;
    left.conditional = std::make_unique<SConditional>();
    left.conditional->conditions = open.conditions;
    bool empty = true;
    for (std::size_t i = 0; i < count; ++i) {
        TOpen& opened = open.branches[i];
        SEffect& branch = statement.branches[answer == EAnswer::Same ? i : count - 1 - i];
        for (const std::uint32_t close : branch.closes) {
            while (!opened.empty() && IsOptional(opened.back()) && !Fits(opened.back().event, close))
                opened.pop_back();
            if (opened.empty() || !opened.back().IsElement())
                return false;
            if (!Fits(opened.back().event, close)) {
                Report(ENestingFault::Mismatched, close, opened.back().event);
                opened.clear();
                break;
            }
            opened.pop_back();
        }
        for (SOpenItem& item : branch.opens)
            opened.push_back(std::move(item));
        while (!opened.empty() && IsOptional(opened.back()))
            opened.pop_back();
        empty = empty && opened.empty();
        left.conditional->depth = std::max(left.conditional->depth, DepthOf(opened));
        left.conditional->branches.push_back(std::move(opened));
    }
    Open().pop_back();
    if (!empty)
        Open().push_back(std::move(left));
    return true;
}

// Closes elements in some branches only; from there on they are open in the others. False: it cannot be told.
bool CNestingJudge::CloseInSome(SStatement& statement)
{
    TOpen& open = Open();
    std::size_t most = 0;
    for (const SEffect& branch : statement.branches) {
        if (branch.closes.size() > open.size())
            return false;
        for (std::size_t i = 0; i < branch.closes.size(); ++i) {
            const SOpenItem& item = open[open.size() - 1 - i];
            if (!item.IsElement() || item.assumed || !Fits(item.event, branch.closes[i]))
                return false;
        }
        most = std::max(most, branch.closes.size());
    }
    SOpenItem left;
    left.conditional = std::make_unique<SConditional>();
    left.conditional->conditions = statement.conditions;
    const std::size_t base = open.size() - most;
    for (SEffect& branch : statement.branches) {
        TOpen rest;
        for (std::size_t i = base; i < open.size() - branch.closes.size(); ++i) {
            rest.emplace_back();
            rest.back().event = open[i].event;
            rest.back().suspect = open[i].suspect;
        }
        for (SOpenItem& item : branch.opens)
            rest.push_back(std::move(item));
        left.conditional->depth = std::max(left.conditional->depth, DepthOf(rest));
        left.conditional->branches.push_back(std::move(rest));
    }
    open.erase(open.begin() + static_cast<std::ptrdiff_t>(base), open.end());
    const auto& branches = left.conditional->branches;
    if (std::ranges::all_of(branches, [&](const TOpen& b) { return AgreeOpen(b, branches.front()); }))
        for (SOpenItem& item : left.conditional->branches.front())
            open.push_back(std::move(item));
    else
        open.push_back(std::move(left));
    return true;
}

} // namespace Kesh::CodeAnalyzer
