#include "Markup/HtmlElements.h"

#include "Markup/HtmlFacts.h"

#include <algorithm>
#include <unordered_map>

namespace Kesh::CodeAnalyzer {

namespace {

struct SGroup
{
    std::uint32_t flags;
    std::wstring_view names; ///< parted by single blanks
};

constexpr SGroup Groups[] = {
    {ElementOptionalEnd,
     L"body colgroup dd dt head html li optgroup option p rb rp rt rtc tbody td tfoot th thead "
     L"tr"},
    {ElementEndsParagraph,
     L"address article aside blockquote center dd details dialog dir div dl dt fieldset "
     L"figcaption figure footer form h1 h2 h3 h4 h5 h6 header hgroup hr li listing main menu "
     L"nav ol p plaintext pre search section summary table ul xmp"},
    {ElementScope, L"applet button caption html marquee object select table td template th"},
    {ElementHeading, L"h1 h2 h3 h4 h5 h6"},
    {ElementTablePart, L"table tbody tfoot thead tr"},
    {ElementInTable, L"caption col colgroup form input script style tbody td template tfoot th thead tr"},
    {ElementForeign, L"math svg"},
    {ElementAlone, L"a button form"},
    {ElementRoot, L"body html"},
    {ElementPlain, L"br hr img input wbr"},
    {ElementPhrase,
     L"a abbr b bdi bdo big button cite code data del dfn em font h1 h2 h3 h4 h5 h6 i ins kbd label legend "
     L"mark meter output progress q s samp select small span strike strong sub summary sup time tt u var"},
};

using TFlags = std::unordered_map<std::wstring_view, std::uint32_t>;

TFlags MakeFlags()
{
    TFlags flags;
    for (const SGroup& group : Groups)
        for (std::size_t begin = 0; begin < group.names.size();) {
            const std::size_t end = std::min(group.names.find(L' ', begin), group.names.size());
            flags[group.names.substr(begin, end - begin)] |= group.flags;
            begin = end + 1;
        }
    return flags;
}

struct SEnds
{
    std::wstring_view element;
    std::wstring_view next; ///< parted by single blanks, and around
};

constexpr SEnds Ends[] = {
    {L"li", L" li "},
    {L"dd", L" dd dt "},
    {L"dt", L" dd dt "},
    {L"option", L" option optgroup hr "},
    {L"optgroup", L" optgroup hr "},
    {L"td", L" td th tr tbody tfoot thead "},
    {L"th", L" td th tr tbody tfoot thead "},
    {L"tr", L" tr tbody tfoot thead "},
    {L"tbody", L" tbody tfoot thead "},
    {L"thead", L" tbody tfoot thead "},
    {L"tfoot", L" tbody tfoot thead "},
    {L"colgroup", L" colgroup tbody tfoot thead tr td th "},
    {L"rb", L" rb rt rp rtc "},
    {L"rt", L" rb rt rp rtc "},
    {L"rp", L" rb rt rp rtc "},
    {L"rtc", L" rb rtc "},
    {L"head", L" body "},
};

} // namespace

std::uint32_t ElementFlags(std::wstring_view lower)
{
    static const TFlags flags = MakeFlags();
    const auto found = flags.find(lower);
    std::uint32_t result = found == flags.end() ? 0 : found->second;
    if (IsHtmlElement(lower))
        result |= ElementKnown;
    if (IsVoidElement(lower))
        result |= ElementVoid;
    return result;
}

bool IsEndedBy(std::wstring_view element, std::wstring_view next)
{
    for (const SEnds& ends : Ends)
        if (ends.element == element) {
            const std::size_t place = ends.next.find(next);
            return place != std::wstring_view::npos && ends.next[place - 1] == L' ' &&
                   ends.next[place + next.size()] == L' ';
        }
    return false;
}

} // namespace Kesh::CodeAnalyzer
