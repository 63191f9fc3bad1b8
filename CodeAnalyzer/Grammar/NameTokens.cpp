#include "Grammar/NameTokens.h"

#include <algorithm>

namespace Kesh::CodeAnalyzer {

void CNameTokens::Clear()
{
    m_names.clear();
    m_places.clear();
    m_indexed = 0;
}

std::uint32_t CNameTokens::Add(std::uint32_t token)
{
    m_names.push_back(token);
    return Count() - 1;
}

std::wstring CNameTokens::KeyOf(const CGrammarTokens& tokens, std::uint32_t index) const
{
    return m_case == ECase::IsOne ? tokens.Lower(m_names[index]) : std::wstring(tokens.Text(m_names[index]));
}

std::uint32_t CNameTokens::FirstOfName(const CGrammarTokens& tokens, std::uint32_t index, std::uint32_t from)
{
    constexpr std::uint32_t few = 16;
    const std::wstring key = KeyOf(tokens, index);
    if (index <= few) {
        while (from < index && KeyOf(tokens, from) != key)
            ++from;
        return m_names[from];
    }
    for (; m_indexed < Count(); ++m_indexed)
        m_places[KeyOf(tokens, m_indexed)].push_back(m_indexed);
    const std::vector<std::uint32_t>& places = m_places[key];
    return m_names[*std::lower_bound(places.begin(), places.end(), from)];
}

} // namespace Kesh::CodeAnalyzer
