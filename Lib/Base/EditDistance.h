#pragma once

#include <cstddef>
#include <string_view>

namespace Kesh::Base {

/// The number of insertions, removals, replacements and swaps of neighbours that make one text of the other;
/// `limit` + 1 when there are more than `limit`.
std::size_t EditDistance(std::wstring_view a, std::wstring_view b, std::size_t limit);

/// Finds among many names the one that the writer of another may have meant.
class CNearestText
{
public:
    explicit CNearestText(std::wstring_view wanted);

    void Offer(std::wstring_view candidate);
    /// Of names equally near, the one that begins alike. Empty: none is near enough. What was offered must
    /// still be there.
    std::wstring_view Get() const { return m_nearest; }

private:
    std::wstring_view m_wanted;
    std::wstring_view m_nearest;
    std::size_t m_best;
    std::size_t m_bestAlike = 0;
};

} // namespace Kesh::Base
