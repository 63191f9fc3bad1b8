#include "Markup/MarkupKind.h"

#include "Base/CommonString.h"

#include <algorithm>
#include <array>

namespace Kesh::CodeAnalyzer {

using Base::CCommonString;
using SyntaxParser::IMarkupPlaces;

namespace {

constexpr std::array<std::wstring_view, 14> XmlRoots = {
    L"channel", L"feed", L"kml",    L"opml",         L"package",          L"project",        L"rdf:rdf",
    L"rss",     L"svg",  L"urlset", L"sitemapindex", L"wsdl:definitions", L"xsl:stylesheet", L"soap:envelope",
};

bool IsNameStart(wchar_t c)
{
    return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z') || c == SyntaxParser::MarkupIsland;
}

// The first "<" that begins an element; comments may show others.
std::size_t FindFirstElement(std::wstring_view text)
{
    std::size_t i = text.find(L'<');
    while (i != std::wstring_view::npos && !(i + 1 < text.size() && IsNameStart(text[i + 1]))) {
        if (text.substr(i).starts_with(L"<!--"))
            i = text.find(L"-->", i);
        i = i == std::wstring_view::npos ? i : text.find(L'<', i + 1);
    }
    return i;
}

std::wstring ReadName(std::wstring_view text)
{
    return CCommonString::LowerCaseFast(text.substr(0, text.find_first_of(L" \t\r\n\f/>")));
}

} // namespace

bool IsXml(const IMarkupPlaces& places)
{
    const std::wstring_view text = places.Text();
    const std::size_t first = FindFirstElement(text);
    if (first == std::wstring_view::npos)
        return false;
    const std::wstring root = ReadName(text.substr(first + 1, 64));
    if (root == L"html")
        return false;
    return std::ranges::find(XmlRoots, root) != XmlRoots.end() ||
           places.Written().substr(0, first).find(L"<?xml ") != std::wstring_view::npos;
}

} // namespace Kesh::CodeAnalyzer
