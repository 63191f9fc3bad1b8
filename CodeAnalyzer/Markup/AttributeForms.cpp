#include "Markup/AttributeForms.h"

#include <algorithm>

namespace Kesh::CodeAnalyzer {

namespace {

constexpr std::size_t None = std::wstring_view::npos;

std::size_t SkipDigits(std::wstring_view text, std::size_t at)
{
    return std::min(text.find_first_not_of(L"0123456789", at), text.size());
}

bool IsWhole(std::wstring_view text)
{
    return !text.empty() && SkipDigits(text, 0) == text.size();
}

// Digits with a point among them, and, of a number, an exponent.
bool IsFloat(std::wstring_view text, bool hasExponent)
{
    const std::size_t point = SkipDigits(text, 0);
    std::size_t end = point;
    if (end < text.size() && text[end] == L'.')
        end = SkipDigits(text, end + 1);
    if (end == 0 || text[end - 1] == L'.')
        return false;
    if (hasExponent && end < text.size() && (text[end] == L'e' || text[end] == L'E')) {
        const std::wstring_view exponent = text.substr(end + 1);
        return IsWhole(exponent.substr(exponent.starts_with(L'-') || exponent.starts_with(L'+') ? 1 : 0));
    }
    return end == text.size();
}

std::wstring_view TrimSpaces(std::wstring_view text)
{
    const std::size_t begin = text.find_first_not_of(L" \t\r\n\f");
    return begin == None ? L"" : text.substr(begin, text.find_last_not_of(L" \t\r\n\f") + 1 - begin);
}

bool IsSchemeWithoutHost(std::wstring_view scheme)
{
    return !IsEqualIgnoringCase(scheme, L"http") && !IsEqualIgnoringCase(scheme, L"https");
}

const wchar_t* FindHostFault(std::wstring_view host)
{
    host = host.substr(std::min(host.rfind(L'@') + 1, host.size()));
    if (host.empty())
        return L"the host is missing";
    if (host.find_first_of(L" <>^|%\\") != None)
        return L"the host has a character that no host can have";
    const std::size_t port = host.starts_with(L'[') ? host.find(L"]:") : host.find(L':');
    if (port == None)
        return nullptr;
    const std::wstring_view digits = host.substr(port + (host[port] == L']' ? 2 : 1));
    return digits.empty() || IsWhole(digits) ? nullptr : L"the port is no number";
}

} // namespace

bool IsNumber(std::wstring_view value, EValueForm form)
{
    const bool isNegative = value.starts_with(L'-');
    switch (form) {
    case EValueForm::Count: return IsWhole(value);
    case EValueForm::Integer: return IsWhole(value.substr(isNegative ? 1 : 0));
    case EValueForm::Number: return IsFloat(value.substr(isNegative ? 1 : 0), true);
    default: return IsFloat(value.substr(0, value.size() - (value.ends_with(L'%') ? 1 : 0)), false);
    }
}

const wchar_t* FindUrlFault(std::wstring_view url)
{
    url = TrimSpaces(url);
    const std::size_t colon = url.find_first_of(L":/?# ");
    if (colon == None || url[colon] != L':' || IsSchemeWithoutHost(url.substr(0, colon)))
        return nullptr;
    const std::wstring_view rest = url.substr(colon + 1);
    if (rest.starts_with(L"\\"))
        return L"expected '//' after the scheme";
    if (!rest.starts_with(L"//"))
        return L"expected '//' after the scheme";
    const std::wstring_view afterSlashes = rest.substr(2);
    return FindHostFault(afterSlashes.substr(0, afterSlashes.find_first_of(L"/?#")));
}

} // namespace Kesh::CodeAnalyzer
