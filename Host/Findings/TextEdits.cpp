#include "Findings/TextEdits.h"

#include <algorithm>

namespace Kesh::Findings {

CEditedText::CEditedText(std::wstring_view text, const CTextLines& lines, const std::vector<SEdit>& edits)
{
    std::vector<const SEdit*> sorted;
    for (const SEdit& edit : edits)
        sorted.push_back(&edit);
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const SEdit* a, const SEdit* b) { return a->span.start < b->span.start; });
    std::size_t done = 0;
    for (const SEdit* edit : sorted) {
        const std::size_t from = lines.Offset(edit->span.start);
        const std::size_t to = lines.Offset(edit->span.end);
        const bool doubled =
            !m_changes.empty() && m_changes.back().from == from; // in which order is not plain
        if (from < done || to < from || doubled) {
            m_changes.clear();
            m_text = text;
            return;
        }
        m_text += text.substr(done, from - done);
        m_changes.push_back({from, to, m_text.size(), edit->text.size()});
        m_text += edit->text;
        done = to;
    }
    m_text += text.substr(done);
    m_sound = !edits.empty();
}

std::size_t CEditedText::NewOffset(std::size_t old) const
{
    // The last change that begins at the place or before it.
    const auto behind = std::upper_bound(m_changes.begin(), m_changes.end(), old,
                                         [](std::size_t at, const SChange& c) { return at < c.from; });
    if (behind == m_changes.begin())
        return old;
    const SChange& change = *(behind - 1);
    return old < change.to ? change.at : change.at + change.size + (old - change.to);
}

bool CEditedText::IsTouched(std::size_t place) const
{
    const auto behind = std::upper_bound(m_changes.begin(), m_changes.end(), place,
                                         [](std::size_t at, const SChange& c) { return at < c.at; });
    const std::wstring_view text = m_text;
    const auto sameLine = [&](std::size_t from, std::size_t to) {
        return from >= to || text.substr(from, to - from).find(L'\n') == std::wstring_view::npos;
    };
    if (behind != m_changes.end() && sameLine(place, behind->at))
        return true;
    if (behind == m_changes.begin())
        return false;
    const SChange& change = *(behind - 1);
    return sameLine(change.at + change.size, place);
}

SEdit EditBetween(std::wstring_view before, std::wstring_view after, const CTextLines& linesBefore)
{
    const std::size_t shorter = std::min(before.size(), after.size());
    const auto first = static_cast<std::size_t>(
        std::mismatch(before.begin(), before.begin() + static_cast<std::ptrdiff_t>(shorter), after.begin())
            .first -
        before.begin());
    std::size_t same = 0; // at the end
    while (same < shorter - first && before[before.size() - same - 1] == after[after.size() - same - 1])
        ++same;
    return {{linesBefore.Position(first), linesBefore.Position(before.size() - same)},
            std::wstring(after.substr(first, after.size() - same - first))};
}

} // namespace Kesh::Findings
