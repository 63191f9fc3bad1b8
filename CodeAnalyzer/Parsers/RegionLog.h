#pragma once

#include "Parsers/KeptRegion.h"

#include <array>
#include <cstddef>
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
        if (!SKeptRegion::Fits(region) || (m_next == m_blockEnd && !NextBlock()))
            return false;
        m_next->Set(region);
        ++m_next;
        return true;
    }

    /// Gives every region to `take`, in order. Nothing may be added meanwhile.
    template <class TTake> void Replay(TTake take) const
    {
        if (m_blocks.empty())
            return;
        for (std::size_t block = 0; block <= m_block; ++block) {
            const auto left = static_cast<std::size_t>(m_blockEnd - m_next);
            const std::size_t count = block < m_block ? BlockSize : BlockSize - left;
            for (std::size_t i = 0; i < count; ++i) {
                SyntaxParser::CRegion region = (*m_blocks[block])[i].Get();
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

    using TBlock = std::array<SKeptRegion, BlockSize>;

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

    std::vector<std::unique_ptr<TBlock>> m_blocks;
    std::size_t m_block = 0;
    SKeptRegion* m_next = nullptr; ///< in the last block in use
    SKeptRegion* m_blockEnd = nullptr;
};

} // namespace Kesh::CodeAnalyzer
