#pragma once

#include <array>
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
    static std::wstring_view Trim(std::wstring_view text)
    {
        while (!text.empty() && IsClassicSpace(text.front()))
            text.remove_prefix(1);
        while (!text.empty() && IsClassicSpace(text.back()))
            text.remove_suffix(1);
        return text;
    }
    /// Whether LowerCaseFast(text) == lower, without making a string for ASCII text.
    static bool LowersTo(std::wstring_view text, std::wstring_view lower)
    {
        if (text.empty() || lower.empty())
            return text.size() == lower.size();
        // An ASCII letter never lowers to anything but itself: the first one settles most calls.
        const bool differs =
            static_cast<char32_t>(text.front()) < 0x80 && AsciiLower(text.front()) != lower.front();
        return !differs && WholeLowersTo(text, lower);
    }

    static std::wstring FromUtf8(std::string_view text);
    static std::string ToUtf8(std::wstring_view text);

    static bool IsAscii(std::wstring_view text)
    {
        for (const wchar_t c : text)
            if (static_cast<char32_t>(c) >= 0x80)
                return false;
        return true;
    }
    static wchar_t AsciiLower(wchar_t c) { return c >= L'A' && c <= L'Z' ? c + (L'a' - L'A') : c; }

private:
    static bool WholeLowersTo(std::wstring_view text, std::wstring_view lower);
    static bool IsClassicSpace(wchar_t c) { return c == L' ' || (c >= L'\t' && c <= L'\r'); }
};

/// A name as LowerCaseFast() gives it, looked at without a copy on the heap: most names are short and ASCII.
class CLowerCase
{
public:
    explicit CLowerCase(std::wstring_view text)
    {
        if (text.size() > m_short.size() || !CCommonString::IsAscii(text)) {
            m_long = CCommonString::LowerCaseFast(text);
            m_view = m_long;
            return;
        }
        for (std::size_t i = 0; i < text.size(); ++i)
            m_short[i] = CCommonString::AsciiLower(text[i]);
        m_view = {m_short.data(), text.size()};
    }
    CLowerCase(const CLowerCase&) = delete;
    CLowerCase& operator=(const CLowerCase&) = delete;

    std::wstring_view View() const { return m_view; }

private:
    std::array<wchar_t, 48> m_short;
    std::wstring m_long;
    std::wstring_view m_view;
};

} // namespace Kesh::Base
