#pragma once

#include <boost/container/flat_set.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace Kesh::SyntaxParser {

/// Names, and patterns of names in which `*` stands for any characters, or none; `\*` is a star itself.
/// Nothing else is special: "[*]", "*?" and "\**" are what they look like. Compared as they are. Any thread.
class CNamePatterns
{
public:
    explicit CNamePatterns(const std::vector<std::wstring>& patterns);

    /// In a time that grows with the length of the name, whatever stands in it.
    bool Matches(std::wstring_view name) const;
    /// Those that are single names, sorted, as they are matched.
    const boost::container::flat_set<std::wstring>& Names() const { return m_names; }

private:
    /// What stands before, between and behind the stars: two texts at least.
    using TPieces = std::vector<std::wstring>;

    static bool Matches(const TPieces& pieces, std::wstring_view name);

    boost::container::flat_set<std::wstring> m_names;
    std::vector<TPieces> m_globs;
};

} // namespace Kesh::SyntaxParser
