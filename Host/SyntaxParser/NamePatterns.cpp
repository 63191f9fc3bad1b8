#include "SyntaxParser/NamePatterns.h"

#include <algorithm>

namespace Kesh::SyntaxParser {

CNamePatterns::CNamePatterns(const std::vector<std::wstring>& patterns)
{
    for (const std::wstring& pattern : patterns) {
        TPieces pieces(1);
        for (std::size_t i = 0; i < pattern.size(); ++i) {
            if (pattern[i] == L'*')
                pieces.emplace_back();
            else
                pieces.back() += pattern.compare(i, 2, L"\\*") == 0 ? pattern[++i] : pattern[i];
        }
        if (pieces.size() == 1)
            m_names.insert(std::move(pieces.front()));
        else
            m_globs.push_back(std::move(pieces));
    }
}

bool CNamePatterns::Matches(std::wstring_view name) const
{
    return m_names.contains(std::wstring(name)) ||
           std::ranges::any_of(m_globs, [&](const TPieces& pieces) { return Matches(pieces, name); });
}

bool CNamePatterns::Matches(const TPieces& pieces, std::wstring_view name)
{
    if (!name.starts_with(pieces.front()))
        return false;
    name.remove_prefix(pieces.front().size());
    if (!name.ends_with(pieces.back()))
        return false;
    name.remove_suffix(pieces.back().size());
    // The first place of each piece leaves the most for those behind it.
    for (auto piece = pieces.begin() + 1; piece != pieces.end() - 1; ++piece) {
        const std::size_t at = name.find(*piece);
        if (at == std::wstring_view::npos)
            return false;
        name.remove_prefix(at + piece->size());
    }
    return true;
}

} // namespace Kesh::SyntaxParser
