#include "SyntaxParser/HtmlTags.h"

#include "Base/CommonString.h"

#include <algorithm>
#include <array>

namespace Kesh::SyntaxParser {

namespace {

struct STagFacts
{
    ETag tag = ETag::Other;
    std::uint32_t flags = 0;
};

using TFacts = std::unordered_map<std::wstring_view, STagFacts>;

struct SGroup
{
    std::uint32_t flags;
    std::wstring_view names; ///< parted by single blanks
};

// A name may stand in several groups. Every name but the holders' is TagHtml.
constexpr SGroup Groups[] = {
    {TagHtml, L"abbr acronym audio bdi bdo canvas cite data datalist del dfn element ins kbd label legend "
              L"map mark meter noscript optgroup option output picture progress q rb rp rt rtc samp slot "
              L"spacer span sub sup time var video big blink multicol shadow content dialog"},
    {TagVoid, L"area base basefont bgsound br col embed frame hr image img input keygen link meta param "
              L"source track wbr"},
    {TagRaw, L"iframe noembed noframes script style textarea title xmp"},
    {TagSpecial, L"address applet area article aside base basefont bgsound blockquote body br button caption "
                 L"center col colgroup dd details dir div dl dt embed fieldset figcaption figure footer form "
                 L"frame frameset h1 h2 h3 h4 h5 h6 head header hgroup hr html iframe img input keygen li "
                 L"link listing main marquee menu meta nav noembed noframes noscript object ol p param "
                 L"plaintext pre script search section select source style summary table tbody td template "
                 L"textarea tfoot th thead title tr track ul wbr xmp"},
    {TagFormatting, L"a b big code em font i nobr s small strike strong tt u"},
    {TagScope, L"applet caption html marquee object select table td template th"},
    {TagEndsParagraph,
     L"address article aside blockquote center dd details dialog dir div dl dt fieldset "
     L"figcaption figure footer form h1 h2 h3 h4 h5 h6 header hgroup hr li listing main menu "
     L"nav ol p plaintext pre search section summary table ul xmp"},
    {TagHeading, L"h1 h2 h3 h4 h5 h6"},
    {TagInHead, L"base basefont bgsound head link meta noframes noscript script style template title"},
    {TagLeavesForeign, L"b big blockquote body br center code dd div dl dt em embed h1 h2 h3 h4 h5 h6 head "
                       L"hr i img li listing menu meta nobr ol p pre ruby s small span strong strike sub "
                       L"sup table tt u ul var"},
    {TagListScope, L"ol ul"},
    {TagItemInside, L"address div p"},
    {TagSvgHolder, L"foreignobject desc title"},
    {TagMathHolder, L"annotation-xml mi mn mo ms mtext"},
};

constexpr std::pair<std::wstring_view, ETag> Tags[] = {
    {L"a", ETag::A},
    {L"body", ETag::Body},
    {L"button", ETag::Button},
    {L"caption", ETag::TableHead},
    {L"colgroup", ETag::TableHead},
    {L"dd", ETag::Definition},
    {L"dt", ETag::Definition},
    {L"head", ETag::Head},
    {L"html", ETag::Html},
    {L"li", ETag::ListItem},
    {L"math", ETag::Math},
    {L"nobr", ETag::Nobr},
    {L"optgroup", ETag::OptGroup},
    {L"option", ETag::Option},
    {L"p", ETag::Paragraph},
    {L"plaintext", ETag::Plaintext},
    {L"rb", ETag::RubyBase},
    {L"rp", ETag::RubyText},
    {L"rt", ETag::RubyText},
    {L"rtc", ETag::RubyContainer},
    {L"script", ETag::Script},
    {L"style", ETag::Style},
    {L"svg", ETag::Svg},
    {L"table", ETag::Table},
    {L"tbody", ETag::TablePart},
    {L"td", ETag::Cell},
    {L"template", ETag::Template},
    {L"tfoot", ETag::TablePart},
    {L"th", ETag::Cell},
    {L"thead", ETag::TablePart},
    {L"tr", ETag::Row},
};

TFacts MakeFacts()
{
    constexpr std::uint32_t holders = TagSvgHolder | TagMathHolder;
    TFacts facts;
    for (const SGroup& group : Groups) {
        for (std::size_t begin = 0; begin < group.names.size();) {
            const std::size_t end = std::min(group.names.find(L' ', begin), group.names.size());
            facts[group.names.substr(begin, end - begin)].flags |=
                group.flags & holders ? group.flags : group.flags | TagHtml;
            begin = end + 1;
        }
    }
    for (const auto& [name, tag] : Tags)
        facts[name].tag = tag;
    return facts;
}

// Null for a name that HTML has not.
const STagFacts* FindFacts(std::wstring_view lower)
{
    static const TFacts facts = MakeFacts();
    const auto known = facts.find(lower);
    return known == facts.end() ? nullptr : &known->second;
}

} // namespace

STagName& CTagNames::Get(std::wstring_view name)
{
    m_lower = Base::CCommonString::LowerCaseFast(name);
    const auto [place, isNew] = m_names.try_emplace(m_lower);
    STagName& result = place->second;
    if (isNew) {
        result.name = m_lower;
        if (const STagFacts* known = FindFacts(m_lower)) {
            result.tag = known->tag;
            result.flags = known->flags;
        }
    }
    return result;
}

std::uint32_t GetTagFlags(std::wstring_view lower)
{
    const STagFacts* known = FindFacts(lower);
    return known ? known->flags : 0;
}

bool IsCustomElementName(std::wstring_view lower)
{
    static constexpr std::array<std::wstring_view, 8> reserved = {
        L"annotation-xml", L"color-profile", L"font-face",     L"font-face-format",
        L"font-face-name", L"font-face-src", L"font-face-uri", L"missing-glyph",
    };
    return !lower.empty() && lower.front() >= L'a' && lower.front() <= L'z' &&
           lower.find(L'-') != std::wstring_view::npos &&
           std::find(reserved.begin(), reserved.end(), lower) == reserved.end();
}

} // namespace Kesh::SyntaxParser
