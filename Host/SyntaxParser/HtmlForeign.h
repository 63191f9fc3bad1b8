#pragma once

#include "Kesh/SyntaxParser/IMarkupTokens.h"

#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Kesh::SyntaxParser {

/// Follows the tags as far as it takes to know what is SVG or MathML: there, other rules hold for texts.
class CHtmlForeign
{
public:
    /// Whether an element that stands here is one of SVG or MathML.
    bool IsForeign() const { return !m_levels.empty() && m_levels.back().role != ERole::Holder; }
    /// Whether the text may be written in a CDATA section.
    bool TakesCData() const { return !m_levels.empty() && m_levels.back().open == 0; }

    /// A start tag; `lower` is its name in lower case. False: it is one of HTML.
    bool Open(std::wstring_view lower, bool selfClosing, bool isStyledFont);
    void Close(std::wstring_view lower);

private:
    enum class ERole : std::uint8_t { Svg, Math, Holder };

    struct SLevel
    {
        ERole role;
        std::wstring_view name;
        std::size_t open = 0; ///< elements of HTML that a holder holds
    };

    void Push(ERole role, std::wstring_view lower);
    void Pop();
    void LeaveForeign();

    std::vector<SLevel> m_levels;
    std::unordered_map<std::wstring, std::size_t> m_counts; ///< levels of each name
};

} // namespace Kesh::SyntaxParser
