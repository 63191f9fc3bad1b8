#include "Findings/Describe.h"

#include "Findings/NameErrors.h"

#include <algorithm>

namespace Kesh::Findings {

namespace {

bool Precedes(const CodeAnalyzer::SCAError& a, const CodeAnalyzer::SCAError& b)
{
    return a.pos.start == b.pos.start ? a.code < b.code : a.pos.start < b.pos.start;
}

} // namespace

std::wstring NameOf(const SFinding& finding)
{
    std::wstring name = finding.text;
    name.erase(0, name.find_first_not_of(L"</"));
    return name;
}

std::wstring TagAround(const CTextLines& lines, std::wstring_view text,
                       const SyntaxParser::CIterator& position)
{
    // An attribute's tag is near; what is farther away than this is a quirk of broken markup.
    constexpr std::size_t Reach = 4096;
    const std::size_t at = lines.Offset(position);
    const std::size_t from = at > Reach ? at - Reach : 0;
    const std::wstring_view before = text.substr(from, at - from);
    for (std::size_t open = before.rfind(L'<'); open != std::wstring_view::npos && open + 1 < before.size();
         open = open ? before.rfind(L'<', open - 1) : std::wstring_view::npos) {
        const wchar_t first = before[open + 1];
        if ((first >= L'a' && first <= L'z') || (first >= L'A' && first <= L'Z')) {
            const std::wstring_view name = before.substr(open + 1);
            return std::wstring(name.substr(0, name.find_first_of(L" \t\n/>")));
        }
    }
    return {};
}

SFileFindings CDescriber::Describe(const SCheckedFile& file, std::vector<CodeAnalyzer::SCAError> errors)
{
    SFileFindings described{file.shown, {}};
    if (errors.empty())
        return described;
    std::stable_sort(errors.begin(), errors.end(), Precedes);
    const std::wstring text = file.text();
    const CTextLines lines(text);
    for (const CodeAnalyzer::SCAError& error : errors) {
        SFinding& finding = described.findings.emplace_back();
        finding.error = error;
        finding.message = m_errors.GetErrorDescription(error);
        finding.line = lines.Excerpt(error.pos.start);
        finding.text = lines.Span(error.pos).substr(0, MaxTextLength);
        if (!IsNameError(error.code))
            continue;
        const std::wstring name = NameOf(finding);
        const std::wstring tag =
            error.code == UnknownAttribute ? TagAround(lines, text, error.pos.start) : std::wstring();
        finding.detail = L" '" + name + L"'";
        if (const std::wstring& nearest = m_nearest.Find(error.code, name, tag); !nearest.empty())
            finding.detail += L", did you mean '" + nearest + L"'?";
    }
    return described;
}

} // namespace Kesh::Findings
