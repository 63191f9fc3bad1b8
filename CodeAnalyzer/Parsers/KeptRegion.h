#pragma once

#include "Kesh/SyntaxParser/Regions.h"

#include <algorithm>
#include <cstdint>

namespace Kesh::CodeAnalyzer {

/// A region in half the space, for later in the same pass.
struct SKeptRegion
{
    /// Whether the source tells the region's text, and no number is too large.
    static bool Fits(const SyntaxParser::CRegion& region)
    {
        const auto x = static_cast<std::uint64_t>(region.start.x);
        const auto y = static_cast<std::uint64_t>(region.start.y);
        return region.text.data() && (x | y | region.text.size()) >> 32 == 0;
    }
    /// Member by member, so that no copy is made; `region` must fit.
    void Set(const SyntaxParser::CRegion& region)
    {
        definition = region.definition;
        text = region.text.data();
        size = static_cast<std::uint32_t>(region.text.size());
        column = static_cast<std::uint32_t>(region.start.x);
        line = static_cast<std::uint32_t>(region.start.y);
    }
    SyntaxParser::CRegion Get() const { return {{column, line}, End(), definition, {text, size}}; }

    SyntaxParser::ISynRegion* definition;
    const wchar_t* text;
    std::uint32_t size;
    std::uint32_t column;
    std::uint32_t line;

private:
    SyntaxParser::CIterator End() const
    {
        SyntaxParser::CIterator end{static_cast<std::int64_t>(column) + size, line};
        const wchar_t* const last = text + size;
        for (const wchar_t* p = text; (p = std::find(p, last, L'\n')) != last;) {
            ++p;
            end = {last - p, end.y + 1};
        }
        return end;
    }
};

} // namespace Kesh::CodeAnalyzer
