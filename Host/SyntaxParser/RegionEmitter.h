#pragma once

#include "Kesh/SyntaxParser/IParser.h"
#include "Kesh/SyntaxParser/Regions.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace Kesh::SyntaxParser {

/// Delivers the pieces of a text, in order and without gaps, as regions with positions.
class CRegionEmitter
{
public:
    /// `handlers` must stay as they are.
    CRegionEmitter(const wchar_t* text, const std::vector<IStateRegionHandler*>& handlers)
        : m_lineStart(text),
          m_only(handlers.size() == 1 ? handlers[0] : nullptr),
          m_handlers(handlers.data()),
          m_handlersEnd(m_handlers + handlers.size())
    {
    }

    /// The line of what is emitted next, and where its characters begin.
    std::int64_t Line() const { return m_line; }
    const wchar_t* LineStart() const { return m_lineStart; }

    /// A piece without a line break.
    [[gnu::always_inline]] void Emit(ISynRegion* definition, const wchar_t* begin, const wchar_t* end)
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
        } else if (const auto lines = std::count(begin, end, L'\n')) { // counted many at a time
            m_line += lines;
            for (m_lineStart = end; m_lineStart[-1] != L'\n';)
                --m_lineStart;
        }
        m_region.end = {end - m_lineStart, m_line};
        Send(definition, begin, end);
    }

    /// The piece from `begin`, which the test must accept, to the first character that it does not. The end.
    template <class TTest>
    const wchar_t* EmitWhile(ISynRegion* definition, const wchar_t* begin, TTest accepts)
    {
        m_region.start = {begin - m_lineStart, m_line};
        const wchar_t* p = begin;
        do {
            if (*p++ == L'\n')
                NextLine(p);
        } while (accepts(*p));
        m_region.end = {p - m_lineStart, m_line};
        Send(definition, begin, p);
        return p;
    }

private:
    static constexpr std::ptrdiff_t ShortPiece = 32;

    void NextLine(const wchar_t* start)
    {
        m_lineStart = start;
        ++m_line;
    }

    [[gnu::always_inline]] void Send(ISynRegion* definition, const wchar_t* begin, const wchar_t* end)
    {
        m_region.definition = definition;
        m_region.text = {begin, static_cast<std::size_t>(end - begin)};
        if (m_only) { // as there mostly is
            m_only->AddRegion(&m_region);
            return;
        }
        for (IStateRegionHandler* const* handler = m_handlers; handler != m_handlersEnd; ++handler)
            (*handler)->AddRegion(&m_region);
    }

    const wchar_t* m_lineStart;
    std::int64_t m_line = 0;
    CRegion m_region;
    IStateRegionHandler* m_only; ///< null: there are several, or none
    IStateRegionHandler* const* m_handlers;
    IStateRegionHandler* const* m_handlersEnd;
};

} // namespace Kesh::SyntaxParser
