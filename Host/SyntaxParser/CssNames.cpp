#include "SyntaxParser/CssNames.h"

#include <algorithm>
#include <iterator>

namespace Kesh::SyntaxParser {

namespace {

template <class TNames> bool IsOneOf(std::wstring_view name, const TNames& names)
{
    return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

// "-webkit-keyframes" is "keyframes".
std::wstring_view WithoutVendor(std::wstring_view name)
{
    if (!name.starts_with(L'-'))
        return name;
    const std::size_t end = name.find(L'-', 1);
    return end == std::wstring_view::npos ? name : name.substr(end + 1);
}

int HexDigit(wchar_t c)
{
    if (c >= L'0' && c <= L'9')
        return c - L'0';
    const wchar_t lower = c | 0x20;
    return c < 0x80 && lower >= L'a' && lower <= L'f' ? lower - L'a' + 10 : -1;
}

bool IsCharacter(std::uint32_t code)
{
    return code != 0 && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
}

} // namespace

ECssBlock BlockOfRule(ECssBlock outer)
{
    return outer == ECssBlock::Foreign ? ECssBlock::Foreign : ECssBlock::Style;
}

ECssBlock BlockOfAtRule(std::wstring_view name, ECssBlock outer)
{
    // They hold what may stand around them.
    static constexpr std::wstring_view conditions[] = {L"container",      L"document", L"else",
                                                       L"layer",          L"media",    L"scope",
                                                       L"starting-style", L"supports", L"when"};
    static constexpr std::wstring_view descriptors[] = {
        L"color-profile", L"counter-style", L"font-face", L"font-palette-values", L"function", L"nest",
        L"page",          L"position-try",  L"property",  L"view-transition",     L"viewport",
    };
    static constexpr std::wstring_view marginSides[] = {L"bottom-", L"left-", L"right-", L"top-"};

    name = WithoutVendor(name);
    if (name == L"keyframes")
        return ECssBlock::Keyframes;
    if (IsOneOf(name, conditions))
        return outer;
    const bool margin = std::any_of(std::begin(marginSides), std::end(marginSides),
                                    [&](std::wstring_view side) { return name.starts_with(side); });
    return margin || IsOneOf(name, descriptors) ? ECssBlock::Style : ECssBlock::Foreign;
}

bool TakesSelectors(std::wstring_view pseudo)
{
    static constexpr std::wstring_view names[] = {L"any", L"current", L"has", L"host",    L"host-context",
                                                  L"is",  L"matches", L"not", L"slotted", L"where"};
    return IsOneOf(WithoutVendor(pseudo), names);
}

std::wstring UnescapeCss(std::wstring_view written)
{
    std::wstring name;
    for (std::size_t i = 0; i < written.size();) {
        if (written[i] != L'\\' || i + 1 == written.size()) {
            name += written[i++];
            continue;
        }
        std::uint32_t code = 0;
        std::size_t digits = 0;
        for (++i; digits < 6 && i < written.size() && HexDigit(written[i]) >= 0; ++digits)
            code = code * 16 + static_cast<std::uint32_t>(HexDigit(written[i++]));
        if (digits == 0)
            name += written[i++];
        else
            name += IsCharacter(code) ? static_cast<wchar_t>(code) : L'\xFFFD';
        if (digits != 0 && i < written.size() &&
            (written[i] == L' ' || (written[i] >= L'\t' && written[i] <= L'\r')))
            ++i;
    }
    return name;
}

} // namespace Kesh::SyntaxParser
