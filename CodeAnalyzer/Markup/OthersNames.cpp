#include "Markup/OthersNames.h"

#include "Base/CommonString.h"
#include "Styles/VendorNames.h"

#include <algorithm>
#include <array>
#include <string>

namespace Kesh::CodeAnalyzer {

bool IsPrefixed(std::wstring_view tag)
{
    const std::size_t colon = tag.find(L':');
    return colon != std::wstring_view::npos && colon != 0 && colon + 1 != tag.size();
}

bool IsVendorAttribute(std::wstring_view name)
{
    static constexpr std::array<std::wstring_view, 8> beginnings{L"webkit", L"moz", L"-webkit-",  L"-moz-",
                                                                 L"-ms-",   L"ms-", L"x-webkit-", L"xmlns:"};
    const std::wstring lower = Base::CCommonString::LowerCaseFast(name);
    return std::ranges::any_of(beginnings, [&](std::wstring_view beginning) {
        return lower.starts_with(beginning) && lower.size() > beginning.size();
    });
}

bool IsVendorProperty(std::wstring_view name)
{
    const std::wstring lower = Base::CCommonString::LowerCaseFast(name);
    return lower.starts_with(L"mso-") ||
           (lower.starts_with(L'-') && lower.find(L'-', 1) != std::wstring::npos &&
            IsVendorName(Base::CCommonString::ToUtf8(lower)));
}

} // namespace Kesh::CodeAnalyzer
