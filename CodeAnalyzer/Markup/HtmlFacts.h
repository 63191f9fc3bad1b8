#pragma once

#include <cstdint>
#include <string_view>

namespace Kesh::CodeAnalyzer {

/// What the values of an attribute look like.
enum class EValueForm : std::uint8_t {
    Keyword,
    KeywordOrNothing,
    Keywords,          ///< any of them, between blanks
    NoMistypedKeyword, ///< anything, but what is nearly a keyword
    Boolean,
    Integer,
    Count, ///< an integer not below 0
    Number,
    Dimension,
    Id,
    Target,
    Url
};

struct SValueRule
{
    EValueForm form;
    std::string_view keywords; ///< in lower case, between blanks
};

// What the standard says. Names may be of any case; any thread.

bool IsEqualIgnoringCase(std::wstring_view a, std::wstring_view b);
bool IsHtmlElement(std::wstring_view name);
bool IsVoidElement(std::wstring_view name);
bool IsObsoleteElement(std::wstring_view name);
bool IsObsoleteAttribute(std::wstring_view element, std::wstring_view attribute);
/// Null: the value is free.
const SValueRule* FindValueRule(std::wstring_view element, std::wstring_view attribute);

} // namespace Kesh::CodeAnalyzer
