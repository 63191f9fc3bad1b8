#pragma once

#include <string>
#include <string_view>

namespace Kesh::Base {

/// Helpers for wide strings, one UTF-32 code point per character. Any thread.
class CCommonString
{
public:
    /// The whole string in Unicode lower case; its length may change.
    static std::wstring LowerCaseFast(std::wstring_view text);
    /// Compares without regard to case: below 0, 0 or above 0, like std::wstring::compare.
    static int CompareNoCase(std::wstring_view a, std::wstring_view b);
    /// Without the classic locale's white space at both ends.
    static std::wstring_view Trim(std::wstring_view text);
    /// Whether LowerCaseFast(text) == lower, without making a string for ASCII text.
    static bool LowersTo(std::wstring_view text, std::wstring_view lower);

    /// Numbers and narrow texts.
    static std::wstring FromUtf8(std::string_view text);
    static std::string ToUtf8(std::wstring_view text);
};

} // namespace Kesh::Base
