#include "Markup/HtmlFacts.h"

#include "Base/CommonString.h"

#include <algorithm>
#include <iterator>
#include <string>

namespace Kesh::CodeAnalyzer {

using Base::CCommonString;

namespace {

enum EFacts : std::uint8_t { FactVoid = 1, FactObsolete = 2 };

struct SElement
{
    std::string_view name;
    std::uint8_t flags;
};

struct SAttributeValue
{
    std::string_view names; ///< of the element and the attribute, a blank between
    SValueRule rule;
};

#include "html-facts.inc"

// Empty for a name that is not ASCII, which no name of HTML is.
std::string Lower(std::wstring_view name)
{
    if (!CCommonString::IsAscii(name))
        return {};
    std::string lower(name.size(), ' ');
    std::ranges::transform(name, lower.begin(),
                           [](wchar_t c) { return static_cast<char>(CCommonString::AsciiLower(c)); });
    return lower;
}

bool HasFlag(std::wstring_view name, std::uint8_t flag)
{
    const std::string lower = Lower(name);
    const auto* found = std::ranges::lower_bound(Elements, lower, {}, &SElement::name);
    return found != std::end(Elements) && found->name == lower && (flag == 0 || found->flags & flag);
}

const SValueRule* FindRule(const std::string& names)
{
    const auto* found = std::ranges::lower_bound(AttributeValues, names, {}, &SAttributeValue::names);
    return found != std::end(AttributeValues) && found->names == names ? &found->rule : nullptr;
}

} // namespace

bool IsEqualIgnoringCase(std::wstring_view a, std::wstring_view b)
{
    return std::ranges::equal(a, b, {}, CCommonString::AsciiLower, CCommonString::AsciiLower);
}

bool IsHtmlElement(std::wstring_view name)
{
    return HasFlag(name, 0);
}

bool IsVoidElement(std::wstring_view name)
{
    return HasFlag(name, FactVoid);
}

bool IsObsoleteElement(std::wstring_view name)
{
    return HasFlag(name, FactObsolete);
}

bool IsObsoleteAttribute(std::wstring_view element, std::wstring_view attribute)
{
    return std::ranges::binary_search(ObsoleteAttributes, Lower(element) + ' ' + Lower(attribute));
}

const SValueRule* FindValueRule(std::wstring_view element, std::wstring_view attribute)
{
    const std::string lower = Lower(attribute);
    const SValueRule* own = FindRule(Lower(element) + ' ' + lower);
    return own ? own : FindRule("* " + lower);
}

} // namespace Kesh::CodeAnalyzer
