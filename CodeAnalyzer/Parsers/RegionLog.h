#pragma once

#include "Kesh/SyntaxParser/Regions.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
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
        const auto x = static_cast<std::uint64_t>(region.start.x);
        const auto y = static_cast<std::uint64_t>(region.start.y);
        const bool fits = (x | y | region.text.size()) >> 32 == 0;
        if (!fits || !region.text.data() || (m_next == m_blockEnd && !NextBlock()))
            return false;
        m_next->definition = region.definition;
        m_next->text = region.text.data();
        m_next->size = static_cast<std::uint32_t>(region.text.size());
        m_next->column = static_cast<std::uint32_t>(x);
        m_next->line = static_cast<std::uint32_t>(y);
        ++m_next;
        return true;
    }

    /// Gives every region to `take`, in order. Nothing may be added meanwhile.
    template <class TTake> void Replay(TTake take) const
    {
        if (m_blocks.empty())
            return;
        SyntaxParser::CRegion region;
        for (std::size_t block = 0; block <= m_block; ++block) {
            const auto left = static_cast<std::size_t>(m_blockEnd - m_next);
            const std::size_t count = block < m_block ? BlockSize : BlockSize - left;
            for (std::size_t i = 0; i < count; ++i) {
                const SRegion& kept = (*m_blocks[block])[i];
                region.definition = kept.definition;
                region.text = {kept.text, kept.size};
                region.start = {kept.column, kept.line};
                region.end = EndOf(kept);
                take(&region);
            }
        }
    }

    void Clear()
    {
        if (m_blocks.size() > UsualBlocks) // a large document must not hold its memory for ever
            m_blocks.resize(UsualBlocks);
        m_block = 0;
        m_next = m_blocks.empty() ? nullptr : m_blocks[0]->data();
        m_blockEnd = m_next ? m_next + BlockSize : nullptr;
    }

private:
    static constexpr std::size_t BlockSize = 1024;
    static constexpr std::size_t UsualBlocks = 64;
    static constexpr std::size_t MostBlocks = 1024;

    struct SRegion
    {
        SyntaxParser::ISynRegion* definition;
        const wchar_t* text;
        std::uint32_t size;
        std::uint32_t column;
        std::uint32_t line;
    };
    using TBlock = std::array<SRegion, BlockSize>;

    bool NextBlock()
    {
        const std::size_t next = m_blocks.empty() ? 0 : m_block + 1;
        if (next == MostBlocks)
            return false;
        if (next == m_blocks.size())
            m_blocks.emplace_back(new TBlock);
        m_block = next;
        m_next = m_blocks[next]->data();
        m_blockEnd = m_next + BlockSize;
        return true;
    }

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

    std::vector<std::unique_ptr<TBlock>> m_blocks;
    std::size_t m_block = 0;
    SRegion* m_next = nullptr; ///< in the last block in use
    SRegion* m_blockEnd = nullptr;
};

} // namespace Kesh::CodeAnalyzer
