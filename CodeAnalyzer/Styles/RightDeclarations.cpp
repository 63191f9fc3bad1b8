#include "Styles/RightDeclarations.h"

#include <mutex>
#include <vector>

namespace Kesh::CodeAnalyzer {

namespace {

constexpr std::size_t LongestKept = 100;
constexpr std::size_t MostKept = 16384;
constexpr std::size_t MostSets = 8;

struct SShelf
{
    std::mutex mutex;
    std::vector<std::unique_ptr<CRightDeclarations>> sets;
};

SShelf& Shelf()
{
    static SShelf shelf;
    return shelf;
}

} // namespace

CRightDeclarations::TBorrowed CRightDeclarations::Borrow()
{
    {
        const std::lock_guard lock(Shelf().mutex);
        if (auto& sets = Shelf().sets; !sets.empty()) {
            TBorrowed last(sets.back().release());
            sets.pop_back();
            return last;
        }
    }
    return TBorrowed(new CRightDeclarations);
}

void CRightDeclarations::SReturn::operator()(CRightDeclarations* borrowed) const
{
    std::unique_ptr<CRightDeclarations> set(borrowed);
    const std::lock_guard lock(Shelf().mutex);
    if (Shelf().sets.size() < MostSets)
        Shelf().sets.push_back(std::move(set));
}

bool CRightDeclarations::Contains(std::string_view rule, std::wstring_view declaration)
{
    m_key.clear();
    if (declaration.size() > LongestKept)
        return false;
    m_key.append(rule.begin(), rule.end());
    m_key += L'\0';
    m_key += declaration;
    return m_keys.contains(std::wstring_view(m_key));
}

void CRightDeclarations::Add()
{
    if (m_key.empty())
        return;
    if (m_keys.size() == MostKept)
        m_keys.clear(); // what is written often is soon there again
    m_keys.insert(m_key);
}

} // namespace Kesh::CodeAnalyzer
