#pragma once

#include "Kesh/SyntaxParser/IMarkupTokens.h"
#include "Markup/TemplateFlow.h"

#include <cstdint>
#include <limits>
#include <string>
#include <unordered_map>
#include <vector>

namespace Kesh::CodeAnalyzer {

inline constexpr std::uint32_t NoEvent = std::numeric_limits<std::uint32_t>::max();

/// What the nesting of a text depends on, in its order: tags, text, and the turns of control between them.
struct SNestingEvent
{
    enum EKind : std::uint8_t {
        Open,
        Close,
        Text,    ///< with more than blanks
        Unknown, ///< PHP that may print
        Torn,    ///< a tag of which some of the turns are a part
        Flow
    };
    static constexpr std::int32_t NoIndent = -1;

    EKind kind = Open;
    bool selfClosing = false;
    bool xmlish = false;            ///< of an end tag: its start tag, just before, has no attributes
    bool dynamic = false;           ///< PHP makes the name, or a part of it
    bool calls = false;             ///< of Unknown: more is done than to print values
    std::int32_t indent = NoIndent; ///< the column, of what comes first on its line
    std::uint32_t flags = 0;        ///< of the element
    std::uint32_t mark = 0;         ///< of Flow: which one
    SyntaxParser::SMarkupSpan span;
    SyntaxParser::SMarkupSpan name;
    const std::wstring* lower = nullptr; ///< the name; one for all of the same name
};

/// How far blanks indent what follows them.
std::int32_t WidthOf(std::wstring_view blanks);

/// Collects the events of a pass.
class CNestingEvents
{
public:
    void Begin(const SyntaxParser::IMarkupPlaces& places, SFlow flow);
    void Add(const SyntaxParser::SHtmlToken& token);
    /// After the last token.
    void End();

    const std::vector<SNestingEvent>& All() const { return m_events; }
    const SFlow& Flow() const { return m_flow; }

private:
    /// Whether what lies inside of the tag is whole statements.
    bool TakeInside(SyntaxParser::SMarkupSpan tag);
    void TakeMarksUpTo(std::size_t offset);
    std::int32_t IndentOf(std::size_t begin) const;
    void AddTag(const SyntaxParser::SHtmlToken& token);

    const SyntaxParser::IMarkupPlaces* m_places = nullptr;
    SFlow m_flow;
    std::uint32_t m_nextMark = 0;
    std::vector<SNestingEvent> m_events;
    std::unordered_map<std::wstring, std::uint32_t> m_names; ///< with their flags
    bool m_lastIsBare = false;                               ///< the last start tag has no attributes
};

} // namespace Kesh::CodeAnalyzer
