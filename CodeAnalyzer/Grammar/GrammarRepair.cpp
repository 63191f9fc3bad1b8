#include "Grammar/GrammarRepair.h"

#include <algorithm>
#include <array>

namespace Kesh::CodeAnalyzer {

using K = SyntaxParser::EPhpTokenKind;

namespace {

/// A token that may be missing, and how unlikely that is.
struct SInsertable
{
    K kind;
    int cost;
};
constexpr std::array<SInsertable, 32> Insertables{{
    {K::Semicolon, 20},  {K::CloseRound, 20},  {K::CloseSquare, 20}, {K::Comma, 22},
    {K::CloseBrace, 26}, {K::OpenBrace, 24},   {K::OpenRound, 24},   {K::OpenSquare, 30},
    {K::Colon, 26},      {K::DoubleArrow, 28}, {K::Assign, 28},      {K::Dot, 26},
    {K::Variable, 30},   {K::Identifier, 32},  {K::Arrow, 34},       {K::DoubleColon, 34},
    {K::Question, 34},   {K::As, 30},          {K::While, 30},       {K::Function, 34},
    {K::Class, 36},      {K::Quote, 40},       {K::Catch, 40},       {K::Case, 40},
    {K::If, 40},         {K::Try, 44},         {K::Endif, 44},       {K::Endforeach, 44},
    {K::Endwhile, 44},   {K::Endfor, 44},      {K::Endswitch, 44},   {K::Use, 44},
}};
/// Those that are worth a try farther back.
constexpr std::size_t Earlier = 12;
/// What people write for something else.
struct SConfusion
{
    K written;
    K meant;
};
constexpr std::array<SConfusion, 10> Confusions{{
    {K::Assign, K::DoubleArrow},
    {K::Colon, K::Semicolon},
    {K::Semicolon, K::Colon},
    {K::Semicolon, K::Comma},
    {K::Comma, K::Semicolon},
    {K::Dot, K::Comma},
    {K::Colon, K::DoubleColon},
    {K::Arrow, K::DoubleArrow},
    {K::CloseRound, K::CloseSquare},
    {K::CloseSquare, K::CloseRound},
}};
constexpr int ConfusionCost = 20;
/// What ends something whose line ends before its body, or before all of it.
const std::array<std::vector<K>, 5> Bodies{{
    {K::OpenBrace, K::CloseBrace},
    {K::OpenBrace, K::CloseBrace, K::Semicolon},
    {K::OpenBrace, K::CloseBrace, K::Finally, K::OpenBrace, K::CloseBrace},
    {K::While, K::OpenRound, K::Variable, K::CloseRound, K::Semicolon},
    {K::CloseRound, K::OpenBrace, K::CloseBrace},
}};
/// The same where the line has opened a block.
const std::array<std::vector<K>, 5> BlockEnds{{
    {K::Semicolon, K::CloseBrace},
    {K::Semicolon, K::CloseBrace, K::Semicolon},
    {K::Variable, K::Semicolon, K::CloseBrace},
    {K::CloseRound, K::Semicolon, K::CloseBrace},
    {K::OpenBrace, K::CloseBrace, K::CloseBrace},
}};
/// What ends a member that the next one has been taken to belong to.
const std::array<std::vector<K>, 3> MemberEnds{{
    {K::CloseRound, K::OpenBrace, K::CloseBrace},
    {K::Assign, K::Number, K::Semicolon},
    {K::Semicolon},
}};
constexpr int BodyCost = 22;
/// Statements and declarations that what stands alone may have lost the beginning of.
const std::array<std::vector<K>, 6> Frames{{
    {K::Class, K::Identifier, K::OpenBrace},
    {K::Switch, K::OpenRound, K::Variable, K::CloseRound, K::OpenBrace},
    {K::Switch, K::OpenRound, K::Variable, K::CloseRound, K::Colon},
    {K::Try, K::OpenBrace, K::CloseBrace},
    {K::If, K::OpenRound, K::Variable, K::CloseRound, K::Semicolon},
    {K::Function, K::Identifier, K::OpenRound, K::CloseRound, K::OpenBrace},
}};
constexpr int FrameCost = 58;
constexpr int MemberCost = 30; // for a property without a modifier
constexpr int DropCost = 27;
constexpr int DoubledCost = 10;
constexpr int FramingCost = 14; // on top of that, for what statements are told apart by
constexpr int ReplaceCost = 22; // on top of what is inserted
constexpr int SwapCost = 38;
constexpr int WordCost = 14;
constexpr int PairCost = 46;
constexpr int EndedCost = 40;      // an element that is not ended, nor told from the next one
constexpr int CloserCost = 4;      // for each further one
constexpr int UnfinishedCost = 32; // a line that ends before its value
constexpr int LineCost = 12;       // what a line break makes likelier or less likely
constexpr int BackCost = 8;        // for what is done before the wrong token, and for each further one
constexpr int StepCost = 3;
constexpr std::size_t BackMost = 8;
constexpr int SureCost = 30;     // what costs no more and has nothing against it needs no rival
constexpr int StopCost = 24;     // where what follows does not all pass
constexpr int StatementGain = 8; // for a statement that does

bool ClosesSomething(K kind)
{
    return kind == K::CloseRound || kind == K::CloseSquare || kind == K::CloseBrace;
}

class CRepairSearch
{
public:
    explicit CRepairSearch(const SGrammarStop& stop) : m_stop(stop) {}

    SGrammarRepair Run()
    {
        TryHere();
        TryWords();
        if (m_best.way == SGrammarRepair::None || m_bestScore > SureCost)
            TryEarlier();
        return m_best;
    }

private:
    using R = SGrammarRepair;

    int LineBreak(K kind) const
    {
        if (kind == K::Semicolon)
            return m_stop.leadsLine ? -LineCost : LineCost;
        return 0;
    }

    int CostOfDrop(std::size_t at) const
    {
        const K kind = at < m_stop.kinds.size() ? m_stop.kinds[at] : K::End;
        const bool isFrame = kind == K::OpenBrace || kind == K::CloseBrace || kind == K::Semicolon;
        return isFrame ? DropCost + FramingCost : DropCost;
    }

    void TryHere()
    {
        const std::size_t here = m_stop.back;
        TryClosers();
        for (const auto& [kind, cost] : Insertables) {
            // A bracket that is not open cannot be missing its end.
            if (ClosesSomething(kind) && (m_stop.closers.empty() || m_stop.closers.front() != kind))
                continue;
            Try(R::Insert, {kind}, 0, 0, cost + LineBreak(kind));
        }
        // A word that leads its line begins something, mostly behind what has no end yet.
        const bool begins = m_stop.back > 0 && m_stop.leadsLine &&
                            ClassOf(m_stop.kinds[here]) == SyntaxParser::EPhpTokenClass::Word;
        Try(R::Drop, {}, 0, 1,
            m_stop.sameAsBefore ? DoubledCost : CostOfDrop(here) + (begins ? FramingCost : 0));
        if (m_stop.leadsLine)
            Try(R::Insert, {K::Variable, K::Semicolon}, 0, 0, UnfinishedCost);
        if (m_stop.isNoDeeper)
            for (const std::vector<K>& body : Bodies)
                Try(R::Insert, body, 0, 0, BodyCost);
        if (m_stop.isNoDeeper && m_stop.isInLinesBlock)
            for (const std::vector<K>& end : BlockEnds)
                Try(R::Insert, end, 0, 0, BodyCost);
        if (m_stop.modifiers > 0 && m_stop.modifiers <= m_stop.back)
            for (const std::vector<K>& end : MemberEnds)
                Try(R::Insert, end, m_stop.modifiers, 0, BodyCost);
        Try(R::Drop, {}, 0, 2, CostOfDrop(here) + CostOfDrop(here + 1) / 2);
        for (const auto& [kind, cost] : Insertables)
            Try(R::Replace, {kind}, 0, 1, cost + ReplaceCost + LineBreak(kind));
        for (const auto& [written, meant] : Confusions)
            if (m_stop.kinds[here] == written)
                Try(R::Replace, {meant}, 0, 1, ConfusionCost);
        Try(R::Insert, {K::Colon, K::Variable}, 0, 0, PairCost);
        for (const K end : {K::Endif, K::Endforeach, K::Endwhile, K::Endfor, K::Endswitch})
            Try(R::Insert, {end, K::Semicolon}, 0, 0, PairCost);
        Try(R::Frame, {K::Public}, 0, 0, MemberCost);
        for (const std::vector<K>& frame : Frames)
            Try(R::Frame, frame, 0, 0, FrameCost);
        TrySwap(0, 0);
    }

    void TrySwap(std::size_t back, int more)
    {
        const std::size_t at = m_stop.back - back;
        if (at + 1 < m_stop.kinds.size())
            Try(R::Drop, {m_stop.kinds[at + 1], m_stop.kinds[at]}, back, 2, SwapCost + more);
    }

    // A word written wrongly may have let some tokens pass all the same.
    void TryWords()
    {
        for (std::size_t back = 0; back <= m_stop.back; ++back)
            for (const auto& [word, distance] : m_stop.words[m_stop.back - back])
                Try(R::Word, {word}, back, 1, WordCost + distance + static_cast<int>(back) / 4);
    }

    // The mistake may be some tokens before the one that cannot stand.
    void TryEarlier()
    {
        for (std::size_t back = 1; back <= std::min(BackMost, m_stop.back); ++back) {
            const std::size_t at = m_stop.back - back;
            const int more = BackCost + StepCost * static_cast<int>(back);
            for (std::size_t i = 0; i < Earlier; ++i) {
                const auto [kind, cost] = Insertables[i];
                Try(R::Insert, {kind}, back, 0, cost + more);
                Try(R::Replace, {kind}, back, 1, cost + ReplaceCost + more);
            }
            for (const K closer : {K::CloseRound, K::CloseSquare})
                Try(R::Insert, {closer, K::Comma}, back, 0, EndedCost + more);
            Try(R::Drop, {}, back, 1, CostOfDrop(at) + more);
            TrySwap(back, more);
        }
    }

    // Some of what is open is closed, and perhaps the statement ended.
    void TryClosers()
    {
        std::vector<K> closers;
        int cost = 20;
        for (const K closer : m_stop.closers) {
            closers.push_back(closer);
            Try(R::Insert, closers, 0, 0, cost + (closer == K::CloseBrace ? CloserCost : 0));
            if (closer != K::CloseBrace) {
                std::vector<K> ended = closers;
                ended.push_back(K::Semicolon);
                Try(R::Insert, ended, 0, 0, cost + CloserCost + LineBreak(K::Semicolon) / 2);
            }
            cost += CloserCost;
        }
    }

    void Try(R::EWay way, const std::vector<K>& inserted, std::size_t back, std::uint32_t dropped, int cost)
    {
        if (m_best.way != R::None && cost >= m_bestScore)
            return;
        const std::size_t at = m_stop.back - back;
        std::size_t next = at + dropped;
        if (next >= m_stop.kinds.size())
            return;
        CGrammarProbe probe = m_stop.probes[at];
        for (const K kind : inserted)
            if (!probe.Take(GrammarSymbol(kind)))
                return;
        for (; next < m_stop.kinds.size(); ++next)
            if (const TGrammarSymbol symbol = GrammarSymbol(m_stop.kinds[next]);
                symbol < 0 || !probe.Take(symbol))
                break;
        const bool whole = next == m_stop.kinds.size();
        const std::size_t first = std::min(std::max(at + dropped, m_stop.back), next);
        const std::size_t accepted = next > first ? next - first : 0;
        // A repair that what follows contradicts must be worth something all the same.
        const bool likely =
            m_stop.leadsLine && way == R::Insert && inserted.size() == 1 && inserted[0] == K::Semicolon;
        if (!whole && accepted < (likely ? 2U : 4U))
            return;
        int score = cost;
        if (!whole) {
            const auto begin = m_stop.kinds.begin();
            const bool ended = std::find(begin + static_cast<std::ptrdiff_t>(first),
                                         begin + static_cast<std::ptrdiff_t>(next),
                                         K::Semicolon) != begin + static_cast<std::ptrdiff_t>(next);
            score += StopCost + static_cast<int>(m_stop.kinds.size() - next) - (ended ? StatementGain : 0);
        }
        if (m_best.way != R::None && score >= m_bestScore)
            return;
        m_bestScore = score;
        m_best = {
            way,  inserted, static_cast<std::uint32_t>(back), dropped, static_cast<std::uint32_t>(accepted),
            cost, whole};
    }

    const SGrammarStop& m_stop;
    SGrammarRepair m_best;
    int m_bestScore = 0;
};

} // namespace

SGrammarRepair FindRepair(const SGrammarStop& stop)
{
    return CRepairSearch(stop).Run();
}

} // namespace Kesh::CodeAnalyzer
