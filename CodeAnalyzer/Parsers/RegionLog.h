#pragma once

#include "Kesh/SyntaxParser/Regions.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// Regions kept for later in the same pass. What it holds is bounded: what does not fit has to be dealt with
/// at once.
class CRegionLog
{
public:
    /// False when the region cannot be kept: there are too many, or its source tells no text.
    bool Add(const SyntaxParser::CRegion& region)
    {
        if (m_regions.size() >= MostRegions || !region.text.data() ||
            region.text.size() > std::numeric_limits<std::uint32_t>::max() ||
            region.start.x > std::numeric_limits<std::uint32_t>::max() ||
            region.start.y > std::numeric_limits<std::uint32_t>::max())
            return false;
        m_regions.push_back(
            {region.definition, region.text.data(), static_cast<std::uint32_t>(region.text.size()),
             static_cast<std::uint32_t>(region.start.x), static_cast<std::uint32_t>(region.start.y)});
        return true;
    }

    /// Gives every region to `take`, in order, and forgets it.
    template <class TTake> void Replay(TTake take)
    {
        std::vector<SRegion> regions;
        regions.swap(m_regions);
        SyntaxParser::CRegion region;
        for (const SRegion& kept : regions) {
            region.definition = kept.definition;
            region.text = {kept.text, kept.size};
            region.start = {kept.column, kept.line};
            region.end = EndOf(kept);
            take(&region);
        }
        regions.swap(m_regions);
        Clear();
    }

    void Clear()
    {
        m_regions.clear();
        if (m_regions.capacity() > UsualRegions) // a large document must not hold its memory for ever
            m_regions.shrink_to_fit();
    }

private:
    static constexpr std::size_t MostRegions = 1 << 20;
    static constexpr std::size_t UsualRegions = 1 << 16;

    struct SRegion
    {
        SyntaxParser::ISynRegion* definition;
        const wchar_t* text;
        std::uint32_t size;
        std::uint32_t column;
        std::uint32_t line;
    };

    static SyntaxParser::CIterator EndOf(const SRegion& kept)
    {
        SyntaxParser::CIterator end{static_cast<std::int64_t>(kept.column) + kept.size, kept.line};
        const wchar_t* const last = kept.text + kept.size;
        for (const wchar_t* p = kept.text; (p = std::find(p, last, L'\n')) != last;) {
            ++p;
            end = {last - p, end.y + 1};
        }
        return end;
    }

    std::vector<SRegion> m_regions;
};

} // namespace Kesh::CodeAnalyzer
