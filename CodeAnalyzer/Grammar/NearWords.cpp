#include "Grammar/NearWords.h"

#include "Grammar/GrammarTokens.h"

#include <algorithm>
#include <array>

namespace Kesh::CodeAnalyzer {

using K = SyntaxParser::EPhpTokenKind;

namespace {

constexpr std::size_t Longest = 16;
constexpr int TooFar = 99;

// Letters lost, added, changed, or swapped with the next one.
int Distance(std::wstring_view a, std::wstring_view b, int most)
{
    const auto difference = static_cast<int>(a.size()) - static_cast<int>(b.size());
    if (difference > most || -difference > most)
        return TooFar;
    std::array<std::array<int, Longest + 1>, Longest + 1> cost{};
    for (std::size_t i = 0; i <= a.size(); ++i) {
        for (std::size_t j = 0; j <= b.size(); ++j) {
            if (i == 0 || j == 0) {
                cost[i][j] = static_cast<int>(i + j);
                continue;
            }
            cost[i][j] = std::min(
                {cost[i - 1][j] + 1, cost[i][j - 1] + 1, cost[i - 1][j - 1] + (a[i - 1] != b[j - 1])});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                cost[i][j] = std::min(cost[i][j], cost[i - 2][j - 2] + 1);
        }
    }
    return cost[a.size()][b.size()];
}

} // namespace

std::vector<SNearWord> NearWords(std::wstring_view text)
{
    constexpr std::size_t longWord = 6;
    constexpr std::size_t shortest = 2;
    std::vector<SNearWord> near;
    if (text.size() < shortest || text.size() > Longest)
        return near;
    const std::wstring lower = LowerAscii(text);
    for (std::size_t i = 0; i < static_cast<std::size_t>(K::Count); ++i) {
        const K kind = static_cast<K>(i);
        const std::wstring_view word = TextOf(kind);
        if (ClassOf(kind) != SyntaxParser::EPhpTokenClass::Word || word.size() > Longest ||
            kind == K::HaltCompiler)
            continue;
        const int most = word.size() >= longWord ? 2 : 1;
        if (const int distance = Distance(lower, word, most); distance <= most && distance > 0)
            near.push_back({kind, distance});
    }
    return near;
}

} // namespace Kesh::CodeAnalyzer
