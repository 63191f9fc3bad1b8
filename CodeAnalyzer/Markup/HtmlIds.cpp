#include "Markup/HtmlIds.h"

#include "Markup/HtmlFacts.h"
#include "Markup/MarkupKind.h"
#include "Markup/OthersNames.h"
#include "Markup/TemplateFlow.h"

#include <algorithm>
#include <map>
#include <unordered_map>
#include <utility>

namespace Kesh::CodeAnalyzer {

using SyntaxParser::EHtmlTokenKind;
using SyntaxParser::SHtmlAttribute;
using SyntaxParser::SHtmlToken;

namespace {

/// Those of scripts and template engines that fill ids in.
constexpr std::wstring_view Placeholders = L"{}$%[]<>'\"+ \xFFFD";
/// Branches inside of one another that are looked at.
constexpr std::size_t MaxDepth = 100;

bool IsOneOf(std::wstring_view name, std::initializer_list<std::wstring_view> names)
{
    return std::ranges::any_of(names, [&](auto other) { return IsEqualIgnoringCase(name, other); });
}

bool IsInert(std::wstring_view element)
{
    return IsOneOf(element, {L"template", L"noscript", L"noframes"});
}

/// Whether an attribute is one of those by which frameworks show one of several elements.
bool Chooses(std::wstring_view attribute)
{
    return IsOneOf(attribute, {L"v-if", L"v-else", L"v-else-if", L"*ngif", L"*ngswitchcase", L"ng-if",
                               L"ng-switch-when", L"n:if", L"n:else", L"tal:condition", L"py:if", L"th:if"});
}

/// The branches of a template, and where in them the places of a text are that are asked for in order.
class CBranches
{
public:
    explicit CBranches(SFlow flow) : m_flow(std::move(flow)) {}

    /// Goes on to a place.
    void GoTo(std::size_t offset)
    {
        for (; m_next < m_flow.marks.size() && m_flow.marks[m_next].offset <= offset; ++m_next)
            Take(m_flow.marks[m_next].kind);
    }
    /// Calls with the branches that the place lies in, the innermost first, up to its function, and with how
    /// many times it was left there before; until the answer is true.
    template <typename TVisit> void ForEachAround(const TVisit& visit) const
    {
        std::size_t count = 0;
        for (auto branch = m_open.rbegin(); branch != m_open.rend() && count < MaxDepth; ++branch, ++count)
            if (visit(*branch, m_exits[*branch]) || m_isScope[*branch])
                return;
    }

private:
    void Take(SFlowMark::EKind kind)
    {
        switch (kind) {
        case SFlowMark::ScopeBegin:
        case SFlowMark::BranchBegin:
            m_open.push_back(m_exits.size());
            m_exits.push_back(0);
            m_isScope.push_back(kind == SFlowMark::ScopeBegin);
            return;
        case SFlowMark::ScopeEnd:
        case SFlowMark::BranchEnd:
            if (m_open.size() > 1)
                m_open.pop_back();
            return;
        case SFlowMark::Exit: ++m_exits[m_open.back()]; return;
        default: return;
        }
    }

    SFlow m_flow;
    std::size_t m_next = 0;
    std::vector<std::size_t> m_open{0};  ///< by number; the first is the whole text
    std::vector<std::size_t> m_exits{0}; ///< of each branch
    std::vector<bool> m_isScope{true};
};

} // namespace

void CHtmlIds::Begin()
{
    m_ids.clear();
    m_inert = 0;
    m_isChosen = m_report.Places().HasPlaceholders();
}

void CHtmlIds::AddHtml(const SHtmlToken& token)
{
    if (token.kind == EHtmlTokenKind::EndTag) {
        if (m_inert != 0 && IsInert(m_report.Places().Text(token.name)))
            --m_inert;
        return;
    }
    if (token.kind != EHtmlTokenKind::StartTag || m_isChosen)
        return;
    m_isChosen = IsPrefixed(m_report.Places().Text(token.name));
    for (const SHtmlAttribute& attribute : token.attributes) {
        const std::wstring_view name = m_report.Places().Text(attribute.name);
        if (IsEqualIgnoringCase(name, L"id") && m_inert == 0)
            AddId(attribute);
        m_isChosen = m_isChosen || Chooses(name);
    }
    m_inert += !token.selfClosing && IsInert(m_report.Places().Text(token.name)) ? 1 : 0;
}

void CHtmlIds::AddId(const SHtmlAttribute& attribute)
{
    const std::wstring_view text = m_report.Places().Text(attribute.value);
    if (!text.empty() && text.find_first_of(Placeholders) == std::wstring_view::npos &&
        !m_report.Places().IsTouched(attribute.span))
        m_ids.push_back({text, attribute.value});
}

bool CHtmlIds::KeepRepeated()
{
    std::unordered_map<std::wstring_view, std::size_t> counts;
    for (const SId& id : m_ids)
        ++counts[id.text];
    if (counts.size() == m_ids.size())
        return false;
    std::erase_if(m_ids, [&](const SId& id) { return counts[id.text] == 1; });
    return true;
}

void CHtmlIds::End()
{
    if (m_isChosen || m_ids.size() < 2 || m_report.Places().IsCancelled() || !KeepRepeated() ||
        IsXml(m_report.Places()))
        return;
    SFlow flow = FindFlow(m_tokens.All(), m_report.Places());
    if (!flow.sound)
        return;
    struct SGiven
    {
        const SId* id;
        std::size_t exits; ///< of the branch, before it
    };
    CBranches branches(std::move(flow));
    std::map<std::pair<std::wstring_view, std::size_t>, SGiven> given; ///< by id and branch
    for (const SId& id : m_ids) {
        branches.GoTo(id.span.begin);
        const SId* first = nullptr;
        bool isInnermost = true;
        branches.ForEachAround([&](std::size_t branch, std::size_t exits) {
            const auto known = given.find({id.text, branch});
            if (known != given.end() && known->second.exits == exits)
                first = known->second.id;
            else if (isInnermost)
                given.insert_or_assign({id.text, branch}, SGiven{&id, exits});
            isInnermost = false;
            return first != nullptr;
        });
        if (first)
            Tell(*first, id);
    }
}

void CHtmlIds::Tell(const SId& first, const SId& second)
{
    m_report.Add(Code::DuplicateId, second.span,
                 {{m_report.Source("value", second.span)},
                  {m_report.Related(first.span, "The first one is here")},
                  {}});
}

} // namespace Kesh::CodeAnalyzer
