#pragma once

#include "Kesh/SyntaxParser/IParserComponent.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>

namespace Kesh::Findings {

/// The number of insertions, removals, replacements and swaps of neighbours that make one name of the other;
/// `limit` + 1 when there are more than `limit`.
std::size_t EditDistance(std::wstring_view a, std::wstring_view b, std::size_t limit);

/// Finds the listed name that the writer of an unknown one may have meant. One thread.
class CNearestName
{
public:
    /// Not owned.
    explicit CNearestName(const SyntaxParser::ICompletionData& names) : m_names(names) {}

    /// For the codes of unknown names; `tag` is the tag that an attribute stands on. Empty: none is near.
    const std::wstring& Find(std::int32_t code, const std::wstring& name, const std::wstring& tag = {});

private:
    const SyntaxParser::ICompletionData& m_names;
    /// A mistyped name mostly comes more than once.
    std::map<std::pair<const SyntaxParser::TCompletionList*, std::wstring>, std::wstring> m_known;
};

} // namespace Kesh::Findings
