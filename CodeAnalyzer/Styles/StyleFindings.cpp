#include "Styles/StyleFindings.h"

#include "Base/EditDistance.h"

#include <deque>
#include <utility>

namespace Kesh::CodeAnalyzer {

namespace {

constexpr std::size_t LongestShown = 60;

std::wstring Widened(std::string_view text)
{
    return {text.begin(), text.end()};
}

} // namespace

void CStyleFindings::Report(std::int32_t code, STokens at, std::initializer_list<SPlain> plain, SDetails more,
                            std::int32_t severity)
{
    const SMarkupSpan span = m_text.SpanOf(at);
    Fill(more, span, plain);
    Add(code, span, std::move(more), severity);
}

void CStyleFindings::Missing(std::int32_t code, TTokenIndex before, const wchar_t* insert,
                             std::initializer_list<SPlain> plain, SDetails more)
{
    const SMarkupSpan span = m_text.EndBefore(before);
    const TTokenIndex found = m_text.SkipBlanks(before);
    if (found < m_text.Size())
        Fill(more, m_text[found].span, plain);
    else
        Fill(more, {}, plain);
    more.fixes.push_back(m_report.Fix(EFix::Insert, span, insert));
    m_report.Add(code, span, std::move(more));
}

void CStyleFindings::Unknown(std::int32_t code, SMarkupSpan name, std::string_view nearest,
                             std::initializer_list<SPlain> plain, std::int32_t severity)
{
    SDetails details;
    Fill(details, name, plain);
    if (!nearest.empty()) {
        details.arguments.push_back({"nearest", Widened(nearest)});
        details.fixes.push_back(m_report.Fix(EFix::Rename, name, Widened(nearest)));
    }
    Add(code, name, std::move(details), severity);
}

void CStyleFindings::Add(std::int32_t code, SMarkupSpan span, SDetails details, std::int32_t severity)
{
    if (severity == OfKind)
        m_report.Add(code, span, std::move(details));
    else
        m_report.Add(code, severity, span, std::move(details));
}

void CStyleFindings::Fill(SDetails& details, SMarkupSpan found, std::initializer_list<SPlain> plain) const
{
    if (!found.IsEmpty()) {
        details.arguments.push_back(m_report.Source("found", found));
        std::wstring& text = details.arguments.back().value;
        text.resize(std::min(text.find_first_of(L"\n\r"), text.size()));
        if (text.size() > LongestShown)
            text = text.substr(0, LongestShown) + L"...";
    }
    for (const SPlain& argument : plain)
        if (!argument.value.empty())
            details.arguments.push_back({argument.name, Widened(argument.value)});
}

struct CNearestName::SNames
{
    explicit SNames(std::string_view wanted) : text(Widened(wanted)), nearest(text) {}

    std::wstring text;
    std::deque<std::wstring> offered;
    Base::CNearestText nearest;
};

CNearestName::CNearestName(std::string_view wanted) : m_names(std::make_unique<SNames>(wanted)) {}
CNearestName::~CNearestName() = default;

void CNearestName::Offer(std::string_view name)
{
    m_names->nearest.Offer(m_names->offered.emplace_back(Widened(name)));
}

std::string CNearestName::Get() const
{
    const std::wstring_view nearest = m_names->nearest.Get();
    std::string name;
    for (const wchar_t c : nearest)
        name += static_cast<char>(c);
    return name;
}

} // namespace Kesh::CodeAnalyzer
