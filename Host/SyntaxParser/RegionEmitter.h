#pragma once

#include "Kesh/SyntaxParser/IParser.h"
#include "Kesh/SyntaxParser/Regions.h"

#include <cwchar>
#include <string_view>
#include <vector>

namespace Kesh::SyntaxParser {

/// Delivers the pieces of a text, in order and without gaps, as regions with positions.
class CRegionEmitter
{
public:
    CRegionEmitter(const wchar_t* text, const std::vector<IStateRegionHandler*>& handlers)
        : m_lineStart(text), m_handlers(handlers)
    {
    }

    /// A piece without a line break.
    void Emit(ISynRegion* definition, const wchar_t* begin, const wchar_t* end)
    {
        m_region.start = {begin - m_lineStart, m_line};
        m_region.end = {end - m_lineStart, m_line};
        Send(definition, begin, end);
    }

    /// A piece that may hold line breaks.
    void EmitLines(ISynRegion* definition, const wchar_t* begin, const wchar_t* end)
    {
        m_region.start = {begin - m_lineStart, m_line};
        // Most pieces are short: a loop of our own beats a call.
        if (end - begin < ShortPiece) {
            for (const wchar_t* p = begin; p < end; ++p) {
                if (*p == L'\n')
                    NextLine(p + 1);
            }
        } else {
            const wchar_t* p = begin;
            while ((p = std::wmemchr(p, L'\n', static_cast<std::size_t>(end - p))))
                NextLine(++p);
        }
        m_region.end = {end - m_lineStart, m_line};
        Send(definition, begin, end);
    }

private:
    static constexpr std::ptrdiff_t ShortPiece = 32;

    void NextLine(const wchar_t* start)
    {
        m_lineStart = start;
        ++m_line;
    }

    void Send(ISynRegion* definition, const wchar_t* begin, const wchar_t* end)
    {
        m_region.definition = definition;
        m_region.text = {begin, static_cast<std::size_t>(end - begin)};
        for (IStateRegionHandler* handler : m_handlers)
            handler->AddRegion(&m_region);
    }

    const wchar_t* m_lineStart;
    std::int64_t m_line = 0;
    CRegion m_region;
    const std::vector<IStateRegionHandler*>& m_handlers;
};

} // namespace Kesh::SyntaxParser
