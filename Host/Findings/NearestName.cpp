#include "Findings/NearestName.h"

#include "Base/CommonString.h"
#include "Findings/NameErrors.h"

#include <algorithm>
#include <vector>

namespace Kesh::Findings {

namespace {

/// Names longer than this are nobody's slip of the finger.
constexpr std::size_t LongestName = 60;

const SyntaxParser::TCompletionList& ListFor(std::int32_t code, const std::wstring& tag,
                                             const SyntaxParser::ICompletionData& names)
{
    if (code == UnknownAttribute)
        return names.GetAttributeSource()->GetAttributes(tag);
    return code == UnknownProperty ? names.GetStyleProperties() : names.GetTags();
}

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

const std::wstring& CNearestName::Find(std::int32_t code, const std::wstring& name, const std::wstring& tag)
{
    static const std::wstring none;
    if (name.empty() || name.size() > LongestName)
        return none;
    const SyntaxParser::TCompletionList& list = ListFor(code, tag, m_names);
    const std::wstring lower = Base::CCommonString::LowerCaseFast(name);
    const auto [known, isNew] = m_known.try_emplace({&list, lower});
    if (!isNew)
        return known->second;
    // One slip in every three letters; of names equally near, the one that begins alike is meant.
    std::size_t best = std::max<std::size_t>(1, lower.size() / 3) + 1;
    std::size_t bestAlike = 0;
    for (const SyntaxParser::ICompletionItem* item : list) {
        const std::wstring& candidate = item->GetName();
        const std::size_t distance = EditDistance(lower, candidate, best);
        const auto alike = static_cast<std::size_t>(
            std::mismatch(lower.begin(), lower.end(), candidate.begin(), candidate.end()).first -
            lower.begin());
        if (distance < best || (distance == best && !known->second.empty() && alike > bestAlike)) {
            best = distance;
            bestAlike = alike;
            known->second = candidate;
        }
    }
    return known->second;
}

} // namespace Kesh::Findings
