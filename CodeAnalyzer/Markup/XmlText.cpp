#include "Markup/XmlText.h"

#include <algorithm>
#include <array>

namespace Kesh::CodeAnalyzer {

namespace {

/// What no HTML document holds outside of strings that are not printed.
constexpr std::array<std::wstring_view, 12> Signs = {L"rss",    L"feed",          L"rdf:",           L"opml",
                                                     L"urlset", L"sitemapindex",  L"channel",        L"?xml",
                                                     L"xsl:",   L"soap:Envelope", L"methodResponse", L"rsd"};

} // namespace

bool IsXml(const SyntaxParser::IMarkupPlaces& places)
{
    const std::wstring_view text = places.Text();
    const auto isHtml = [&](std::size_t begin) {
        const std::wstring_view rest = text.substr(begin, 600);
        return rest.find(L"<html") != std::wstring_view::npos ||
               rest.find(L"<!DOCTYPE html") != std::wstring_view::npos;
    };
    for (std::size_t i = text.find(L'<'); i != std::wstring_view::npos; i = text.find(L'<', i + 1)) {
        const std::wstring_view rest = text.substr(i + 1, 16);
        for (const std::wstring_view sign : Signs)
            if (rest.starts_with(sign))
                return !isHtml(i); // XHTML begins as XML does
    }
    // An XML declaration may be PHP to the scanner, or be printed in pieces.
    const std::wstring_view written = places.Written();
    const std::size_t declaration = written.find(L"<?xml");
    return declaration != std::wstring_view::npos && !isHtml(declaration);
}

} // namespace Kesh::CodeAnalyzer
