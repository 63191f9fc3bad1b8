#include "Markup/HtmlElements.h"
#include "Markup/HtmlNesting.h"

#include "Base/CommonString.h"

#include <map>

namespace Kesh::CodeAnalyzer {

namespace {

constexpr std::size_t MostHalves = 32; ///< what has more of them is no part of a document

} // namespace

// What the file, as a part of a document, leaves to others, and what its functions may print.
void CHtmlNesting::FindHalves(const SVerdict& verdict)
{
    const SLeftOver& root = verdict.scopes.front();
    const bool isPart = !root.unknown && !IsWhole() && root.open.size() + root.closed.size() <= MostHalves;
    const auto add = [&](std::uint32_t tag, bool opens, bool isHalf) {
        const SNestingEvent& event = Event(tag);
        if (isHalf && IsCertain(tag) && !(event.flags & (ElementOptionalEnd | ElementPhrase)))
            m_halves.halves.push_back({*event.lower, opens, m_report.Places().SpanOf(event.span)});
        else
            (opens ? m_halves.mayOpen : m_halves.mayClose).insert(*event.lower);
    };
    bool unknown = false;
    for (const SLeftOver& scope : verdict.scopes) {
        unknown = unknown || scope.unknown;
        for (const std::uint32_t tag : scope.open)
            add(tag, true, isPart && &scope == &root);
        for (const std::uint32_t tag : scope.closed)
            add(tag, false, isPart && &scope == &root);
    }
    if (!unknown)
        return;
    std::map<std::wstring_view, int> balance; // start tags less end tags
    for (const SNestingEvent& event : m_events.All())
        if (event.lower)
            balance[*event.lower] += event.kind == SNestingEvent::Open ? 1 : -1;
    for (const auto& [name, count] : balance)
        if (count != 0)
            (count > 0 ? m_halves.mayOpen : m_halves.mayClose).emplace(name);
}

// Strings with tags may be printed elsewhere.
void CHtmlNesting::AddUnprinted()
{
    const std::wstring_view text = m_report.Places().Text();
    const std::wstring_view written = m_report.Places().Written();
    for (std::size_t i = written.find(L'<'); i != std::wstring_view::npos; i = written.find(L'<', i + 1)) {
        if (text[i] != SyntaxParser::MarkupIsland || i + 1 == written.size())
            continue;
        const bool closes = written[i + 1] == L'/';
        const std::size_t begin = i + (closes ? 2 : 1);
        std::size_t end = begin;
        while (end < written.size() && ((written[end] | 0x20) >= L'a' && (written[end] | 0x20) <= L'z'))
            ++end;
        while (end > begin && end < written.size() && written[end] >= L'0' && written[end] <= L'9')
            ++end;
        if (end > begin)
            (closes ? m_halves.mayClose : m_halves.mayOpen)
                .insert(Base::CCommonString::LowerCaseFast(
                    written.substr(begin, std::min<std::size_t>(end - begin, 32))));
    }
}

} // namespace Kesh::CodeAnalyzer
