#include "Base/CommonString.h"

#include <QString>
#include <algorithm>

namespace Kesh::Base {

std::wstring CCommonString::LowerCaseFast(std::wstring_view text)
{
    if (IsAscii(text)) {
        std::wstring lower(text);
        std::transform(lower.begin(), lower.end(), lower.begin(), AsciiLower);
        return lower;
    }
    return QString::fromWCharArray(text.data(), static_cast<int>(text.size())).toLower().toStdWString();
}

bool CCommonString::WholeLowersTo(std::wstring_view text, std::wstring_view lower)
{
    bool equal = text.size() == lower.size();
    for (std::size_t i = 0; i < text.size(); ++i) {
        const wchar_t c = text[i];
        if (static_cast<char32_t>(c) >= 0x80)
            return LowerCaseFast(text) == lower;
        if (equal && AsciiLower(c) != lower[i])
            equal = false;
    }
    return equal;
}

int CCommonString::CompareNoCase(std::wstring_view a, std::wstring_view b)
{
    return LowerCaseFast(a).compare(LowerCaseFast(b));
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
