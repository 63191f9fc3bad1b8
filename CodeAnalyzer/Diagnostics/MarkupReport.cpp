#include "Diagnostics/MarkupReport.h"

#include <algorithm>
#include <string>
#include <utility>

namespace Kesh::CodeAnalyzer {

using SyntaxParser::SMarkupSpan;

void CMarkupReport::Begin(const SyntaxParser::IMarkupPlaces& places)
{
    m_places = &places;
    m_found.clear();
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

std::vector<SDiagnostic> CMarkupReport::Take()
{
    std::ranges::stable_sort(m_found, [](const SDiagnostic& a, const SDiagnostic& b) {
        return a.error.pos.start < b.error.pos.start;
    });
    return std::exchange(m_found, {});
}

} // namespace Kesh::CodeAnalyzer
