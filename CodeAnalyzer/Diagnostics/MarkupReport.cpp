#include "Diagnostics/MarkupReport.h"

#include <algorithm>
#include <string>
#include <utility>

namespace Kesh::CodeAnalyzer {

using SyntaxParser::SMarkupSpan;

namespace {

/// How far to look for the end of a broken tag.
constexpr std::size_t MaxBroken = 2000;

} // namespace

void CMarkupReport::Begin(const SyntaxParser::IMarkupPlaces& places)
{
    m_places = &places;
    m_found.clear();
    m_broken.clear();
}

void CMarkupReport::Add(std::int32_t code, SMarkupSpan span, SDetails details)
{
    Add(code, FindKind(code)->severity, span, std::move(details));
}

void CMarkupReport::Add(std::int32_t code, std::int32_t severity, SMarkupSpan span, SDetails details)
{
    m_found.push_back({{m_places->SpanOf(span), code, severity}, std::move(details)});
}

SArgument CMarkupReport::Source(std::string name, SMarkupSpan span) const
{
    return {std::move(name), std::wstring(m_places->Written().substr(span.begin, span.end - span.begin))};
}

SRelatedPlace CMarkupReport::Related(SMarkupSpan span, std::string message) const
{
    return {m_places->SpanOf(span), std::move(message)};
}

SFix CMarkupReport::Fix(EFix kind, SMarkupSpan span, std::wstring text) const
{
    return {kind, {{m_places->SpanOf(span), std::move(text)}}};
}

void CMarkupReport::Break(std::size_t begin, std::size_t end, wchar_t stop)
{
    const std::wstring_view text = m_places->Text();
    const std::size_t limit = std::min(end + MaxBroken, text.size());
    const std::size_t first = text.substr(0, limit).find(stop, end);
    m_broken.push_back(m_places->SpanOf({begin, std::min(text.substr(0, limit).find(L'>', first), limit)}));
}

void CMarkupReport::Break(SMarkupSpan tag)
{
    m_broken.push_back(m_places->SpanOf(tag));
}

bool CMarkupReport::IsBroken(SyntaxParser::CIterator place) const
{
    const auto next = std::upper_bound(
        m_broken.begin(), m_broken.end(), place,
        [](SyntaxParser::CIterator p, const SyntaxParser::SScheme& span) { return p < span.start; });
    return next != m_broken.begin() && place < (next - 1)->end;
}

std::vector<SDiagnostic> CMarkupReport::Take()
{
    std::ranges::stable_sort(m_found, [](const SDiagnostic& a, const SDiagnostic& b) {
        return a.error.pos.start < b.error.pos.start;
    });
    return std::exchange(m_found, {});
}

} // namespace Kesh::CodeAnalyzer
