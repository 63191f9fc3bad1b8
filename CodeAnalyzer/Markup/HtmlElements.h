#pragma once

#include <cstdint>
#include <string_view>

namespace Kesh::CodeAnalyzer {

/// What nesting depends on; bits.
enum ENestingFlags : std::uint32_t {
    ElementKnown = 1u << 0,
    ElementVoid = 1u << 1,          ///< has no content and no end tag
    ElementOptionalEnd = 1u << 2,   ///< its end tag may be left out
    ElementEndsParagraph = 1u << 3, ///< its start tag ends an open p
    ElementScope = 1u << 4,         ///< no paragraph reaches into it, nor any link or button
    ElementHeading = 1u << 5,
    ElementTablePart = 1u << 6, ///< takes no text: table, its parts and rows
    ElementInTable = 1u << 7,   ///< may stand in those all the same
    ElementForeign = 1u << 8,   ///< has rules of its own inside: svg, math
    ElementAlone = 1u << 9,     ///< must not stand in another of its kind
    ElementRoot = 1u << 10,     ///< html and body
    ElementPlain = 1u << 11,    ///< no XML has one of the name with content
    ElementPhrase = 1u << 12    ///< a piece of text or one control: nobody closes it in another file
};

/// The flags of an element; 0 for a name that HTML does not know. `lower` is in lower case.
std::uint32_t ElementFlags(std::wstring_view lower);

/// Whether the start tag of `next` ends an open `element` whose end tag is optional.
bool IsEndedBy(std::wstring_view element, std::wstring_view next);

} // namespace Kesh::CodeAnalyzer
