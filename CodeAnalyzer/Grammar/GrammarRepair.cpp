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
constexpr std::array<SInsertable, 31> Insertables{{
    {K::Semicolon, 20},  {K::CloseRound, 20},  {K::CloseSquare, 20}, {K::Comma, 22},
    {K::CloseBrace, 26}, {K::OpenBrace, 24},   {K::OpenRound, 24},   {K::OpenSquare, 32},
    {K::Colon, 26},      {K::DoubleArrow, 28}, {K::Assign, 28},      {K::Dot, 26},
    {K::Variable, 30},   {K::Identifier, 32},  {K::Arrow, 34},       {K::DoubleColon, 34},
    {K::Question, 34},   {K::As, 30},          {K::While, 30},       {K::Function, 34},
    {K::Class, 36},      {K::Quote, 40},       {K::Catch, 40},       {K::Case, 40},
    {K::If, 40},         {K::Try, 44},         {K::Endif, 44},       {K::Endforeach, 44},
    {K::Endwhile, 44},   {K::Endfor, 44},      {K::Endswitch, 44},
}};
constexpr int DropCost = 27;
constexpr int DoubledCost = 10;
constexpr int ReplaceCost = 22; // on top of what is inserted
constexpr int PairCost = 46;
constexpr int CloserCost = 4; // for each further one
constexpr int LineCost = 12;  // what a line break makes likelier or less likely

bool ClosesSomething(K kind)
{
    return kind == K::CloseRound || kind == K::CloseSquare || kind == K::CloseBrace;
}

class CRepairSearch
{
public:
    CRepairSearch(const CGrammarProbe& probe, const SGrammarStop& stop) : m_probe(probe), m_stop(stop) {}

    SGrammarRepair Run()
    {
        TryClosers();
        for (const auto& [kind, cost] : Insertables) {
            // A bracket that is not open cannot be missing its end.
            if (ClosesSomething(kind) && (m_stop.closers.empty() || m_stop.closers.front() != kind))
                continue;
            Try({kind}, 0, cost + LineBreak(kind));
        }
        Try({}, 1, m_stop.sameAsBefore ? DoubledCost : DropCost);
        Try({}, 2, DropCost + DropCost / 2);
        for (const auto& [kind, cost] : Insertables)
            Try({kind}, 1, cost + ReplaceCost + LineBreak(kind));
        Try({K::Colon, K::Variable}, 0, PairCost);
        for (const K end : {K::Endif, K::Endforeach, K::Endwhile, K::Endfor, K::Endswitch})
            Try({end, K::Semicolon}, 0, PairCost);
        return m_best;
    }

private:
    int LineBreak(K kind) const
    {
        if (kind == K::Semicolon)
            return m_stop.leadsLine ? -LineCost : LineCost;
        return 0;
    }

    // Some of what is open is closed, and perhaps the statement ended.
    void TryClosers()
    {
        std::vector<K> closers;
        int cost = 20;
        for (const K closer : m_stop.closers) {
            closers.push_back(closer);
            Try(closers, 0, cost + (closer == K::CloseBrace ? CloserCost : 0));
            if (closer != K::CloseBrace) {
                std::vector<K> ended = closers;
                ended.push_back(K::Semicolon);
                Try(ended, 0, cost + CloserCost + LineBreak(K::Semicolon) / 2);
            }
            cost += CloserCost;
        }
    }

    void Try(const std::vector<K>& inserted, std::uint32_t dropped, int cost)
    {
        if (dropped >= m_stop.ahead.size())
            return;
        CGrammarProbe probe = m_probe;
        for (const K kind : inserted)
            if (!probe.Take(GrammarSymbol(kind)))
                return;
        std::uint32_t accepted = 0;
        for (std::size_t i = dropped; i < m_stop.ahead.size(); ++i) {
            const TGrammarSymbol symbol = GrammarSymbol(m_stop.ahead[i]);
            if (symbol < 0 || !probe.Take(symbol))
                break;
            ++accepted;
        }
        const bool whole = dropped + accepted == m_stop.ahead.size();
        // A repair that the rest of the window contradicts must be worth something all the same.
        const bool likely =
            m_stop.leadsLine && dropped == 0 && inserted.size() == 1 && inserted[0] == K::Semicolon;
        const std::uint32_t enough = likely ? 2 : 4;
        if (!whole && accepted < enough)
            return;
        const int score = cost + (whole ? 0 : 100) - (whole ? 0 : static_cast<int>(accepted) * 3);
        if (m_best.accepted != 0 && score >= m_bestScore)
            return;
        m_bestScore = score;
        m_best = {inserted, dropped, std::max(accepted, 1U), cost};
    }

    const CGrammarProbe& m_probe;
    const SGrammarStop& m_stop;
    SGrammarRepair m_best;
    int m_bestScore = 0;
};

} // namespace

SGrammarRepair FindRepair(const CGrammarProbe& probe, const SGrammarStop& stop)
{
    return CRepairSearch(probe, stop).Run();
}

} // namespace Kesh::CodeAnalyzer
