#include "Base/EditDistance.h"

#include <algorithm>
#include <vector>

namespace Kesh::Base {

namespace {

/// Names longer than this are nobody's slip of the finger.
constexpr std::size_t LongestName = 60;
/// In a short name one letter is much: its first one must be right.
constexpr std::size_t ShortName = 4;

} // namespace

std::size_t EditDistance(std::wstring_view a, std::wstring_view b, std::size_t limit)
{
    if (std::max(a.size(), b.size()) - std::min(a.size(), b.size()) > limit)
        return limit + 1;
    std::vector<std::size_t> beforeLast;
    std::vector<std::size_t> last(b.size() + 1);
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j)
        last[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        row[0] = i;
        std::size_t least = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (a[i - 1] != b[j - 1])});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                row[j] = std::min(row[j], beforeLast[j - 2] + 1);
            least = std::min(least, row[j]);
        }
        if (least > limit)
            return limit + 1;
        beforeLast = last;
        last.swap(row);
    }
    return std::min(last[b.size()], limit + 1);
}

// One slip in every three letters.
CNearestText::CNearestText(std::wstring_view wanted)
    : m_wanted(wanted),
      m_best(wanted.empty() || wanted.size() > LongestName ? 0
                                                           : std::max<std::size_t>(1, wanted.size() / 3) + 1)
{
}

void CNearestText::Offer(std::wstring_view candidate)
{
    if (m_best == 0 || candidate.empty() || (m_wanted.size() <= ShortName && candidate[0] != m_wanted[0]))
        return;
    const std::size_t distance = EditDistance(m_wanted, candidate, m_best);
    const auto alike = static_cast<std::size_t>(
        std::mismatch(m_wanted.begin(), m_wanted.end(), candidate.begin(), candidate.end()).first -
        m_wanted.begin());
    if (distance < m_best || (distance == m_best && !m_nearest.empty() && alike > m_bestAlike)) {
        m_best = distance;
        m_bestAlike = alike;
        m_nearest = candidate;
    }
}

} // namespace Kesh::Base
