#include "Base/CommonString.h"

#include <QString>
#include <algorithm>

namespace Kesh::Base {

namespace {

bool IsAscii(std::wstring_view text)
{
    return std::all_of(text.begin(), text.end(), [](wchar_t c) { return static_cast<char32_t>(c) < 0x80; });
}

wchar_t AsciiLower(wchar_t c)
{
    return c >= L'A' && c <= L'Z' ? c + (L'a' - L'A') : c;
}

bool IsClassicSpace(wchar_t c)
{
    return c == L' ' || (c >= L'\t' && c <= L'\r');
}

} // namespace

std::wstring CCommonString::LowerCaseFast(std::wstring_view text)
{
    if (IsAscii(text)) {
        std::wstring lower(text);
        std::transform(lower.begin(), lower.end(), lower.begin(), AsciiLower);
        return lower;
    }
    return QString::fromWCharArray(text.data(), static_cast<int>(text.size())).toLower().toStdWString();
}

int CCommonString::CompareNoCase(std::wstring_view a, std::wstring_view b)
{
    return LowerCaseFast(a).compare(LowerCaseFast(b));
}

std::wstring_view CCommonString::Trim(std::wstring_view text)
{
    while (!text.empty() && IsClassicSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && IsClassicSpace(text.back()))
        text.remove_suffix(1);
    return text;
}

bool CCommonString::LowersTo(std::wstring_view text, std::wstring_view lower)
{
    if (!IsAscii(text))
        return LowerCaseFast(text) == lower;
    return text.size() == lower.size() && std::equal(text.begin(), text.end(), lower.begin(),
                                                     [](wchar_t t, wchar_t l) { return AsciiLower(t) == l; });
}

std::wstring CCommonString::FromUtf8(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<int>(text.size())).toStdWString();
}

std::string CCommonString::ToUtf8(std::wstring_view text)
{
    return QString::fromWCharArray(text.data(), static_cast<int>(text.size())).toUtf8().toStdString();
}

} // namespace Kesh::Base
