#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

namespace Kesh::SyntaxParser {

/// The tags that nest by rules of their own.
enum class ETag : std::uint8_t {
    Other,
    A,
    Body,
    Button,
    Cell,       // td, th
    Definition, // dd, dt
    Head,
    Html,
    ListItem,
    Math,
    Nobr,
    OptGroup,
    Option,
    Paragraph,
    Plaintext,
    Row,
    RubyBase,
    RubyContainer, // rtc
    RubyText,      // rp, rt
    Script,
    Style,
    Svg,
    Table,
    TableHead, // caption, colgroup
    TablePart, // tbody, thead, tfoot
    Template,
    Count
};

/// What HTML says about a tag; bits of STagName::flags.
enum ETagFlags : std::uint32_t {
    TagHtml = 1u << 0,          ///< HTML has such a tag, today or once
    TagVoid = 1u << 1,          ///< has no content and no end tag
    TagRaw = 1u << 2,           ///< the content is text up to the end tag
    TagSpecial = 1u << 3,       ///< an end tag of an ordinary element does not reach past it
    TagFormatting = 1u << 4,    ///< its end tag leaves the blocks inside it open
    TagScope = 1u << 5,         ///< no end tag reaches past it, but those of table parts
    TagEndsParagraph = 1u << 6, ///< its start tag ends an open p
    TagHeading = 1u << 7,       ///< its start tag ends an open heading
    TagInHead = 1u << 8,        ///< may stand in head; any other start tag ends head
    TagLeavesForeign = 1u << 9, ///< its start tag ends open svg and math
    TagListScope = 1u << 10,    ///< a list item's end tag does not reach past it
    TagItemInside = 1u << 13,   ///< a list item's start tag reaches past it, special as it is
    TagSvgHolder = 1u << 11,    ///< holds HTML, in svg
    TagMathHolder = 1u << 12    ///< holds HTML, in math
};

/// A tag name of one document.
struct STagName
{
    std::wstring name; ///< lower case; of a name that PHP helps to make, the part before the PHP
    ETag tag = ETag::Other;
    std::uint32_t flags = 0;
    std::size_t open = 0; ///< how many elements of this name are open
};

/// The tag names seen in one document, each found by one look-up.
class CTagNames
{
public:
    /// `name` as written; the result is valid as long as this object.
    STagName& Get(std::wstring_view name);

private:
    std::unordered_map<std::wstring, STagName> m_names;
    std::wstring m_lower;
};

/// What HTML says about a tag; `lower` is in lower case. Any thread.
std::uint32_t GetTagFlags(std::wstring_view lower);

/// Whether a name is one that authors of custom elements may choose. `lower` is in lower case.
bool IsCustomElementName(std::wstring_view lower);

} // namespace Kesh::SyntaxParser
