#pragma once

#include "Grammar/GrammarTokens.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// Tokens that name things of which there should be one each, in the order of the text. However many there
/// are, one is found among them at once.
class CNameTokens
{
public:
    /// Variables differ by case, the names of types do not.
    enum class ECase : std::uint8_t { Differs, IsOne };
    explicit CNameTokens(ECase letterCase) : m_case(letterCase) {}

    void Clear();
    /// The name's index.
    std::uint32_t Add(std::uint32_t token);
    std::uint32_t Count() const { return static_cast<std::uint32_t>(m_names.size()); }
    std::uint32_t Last() const { return m_names.back(); }
    /// The first of the tokens from the index `from` on that has the name of the one at `index`: that one
    /// itself when no other is before it. `tokens` are always the same.
    std::uint32_t FirstOfName(const CGrammarTokens& tokens, std::uint32_t index, std::uint32_t from = 0);

private:
    std::wstring KeyOf(const CGrammarTokens& tokens, std::uint32_t index) const;

    ECase m_case;
    std::vector<std::uint32_t> m_names;
    /// Indexes by name, of as many names as `m_indexed` says; few names do without.
    std::unordered_map<std::wstring, std::vector<std::uint32_t>> m_places;
    std::uint32_t m_indexed = 0;
};

} // namespace Kesh::CodeAnalyzer
