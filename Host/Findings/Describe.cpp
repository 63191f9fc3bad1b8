#include "Findings/Describe.h"

#include "Findings/Ignores.h"
#include "Findings/NameErrors.h"

#include <algorithm>

namespace Kesh::Findings {

namespace {

using CodeAnalyzer::SCAError;

bool Precedes(const SFinding& a, const SFinding& b)
{
    return a.error.pos.start == b.error.pos.start ? a.error.code < b.error.code
                                                  : a.error.pos.start < b.error.pos.start;
}

SFinding UnusedFinding(const CIgnores::SUnused& unused)
{
    SFinding finding;
    finding.error = {unused.span, UnusedIgnore, CodeAnalyzer::SeverityWarning};
    finding.message = L"Ignore comment ignores nothing";
    const wchar_t* separator = L": ";
    for (const std::int32_t code : unused.codes) {
        finding.detail += separator + std::to_wstring(code);
        separator = L", ";
    }
    if (unused.whole) {
        finding.details.emplace().error = finding.error;
        finding.details->removable = true;
    }
    return finding;
}

/// What was found, unless the message names it already.
std::wstring DetailOf(const CodeAnalyzer::SErrorDetails& details, const std::wstring& message)
{
    constexpr std::size_t Longest = 60;
    const std::wstring& subject = details.subject;
    if (subject.empty() || message.find(subject) != std::wstring::npos)
        return {};
    return L": " + (subject.size() > Longest ? subject.substr(0, Longest) + L"..." : subject);
}

bool SameRecord(const SCAError& a, const SCAError& b)
{
    return a.pos == b.pos && a.code == b.code;
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

SFileFindings CDescriber::Describe(const SCheckedFile& file, std::vector<SCAError> errors)
{
    SFileFindings described{file.shown, file.path, {}};
    if (errors.empty() && !file.mayIgnore)
        return described;
    const std::wstring text = file.text();
    const bool ignores = CIgnores::MayHave(std::wstring_view(text));
    if (errors.empty() && !ignores)
        return described;
    const CTextLines lines(text);
    if (ignores)
        Silence(errors, file, text, lines, described);
    described.findings.reserve(described.findings.size() + errors.size());
    for (SCAError& error : errors) {
        if (!ApplyLevel(error, file))
            continue;
        SFinding& finding = described.findings.emplace_back();
        finding.error = error;
        finding.message = m_sources.messageOf(error);
    }
    for (SFinding& finding : described.findings) {
        finding.line = lines.Excerpt(finding.error.pos.start);
        finding.text = lines.Span(finding.error.pos).substr(0, MaxTextLength);
        if (!m_sources.brief && IsNameError(finding.error.code))
            AddNames(finding, text, lines);
    }
    // They come nearly sorted, and are large to move.
    if (!std::is_sorted(described.findings.begin(), described.findings.end(), Precedes))
        std::stable_sort(described.findings.begin(), described.findings.end(), Precedes);
    AddDetails(described, file, text);
    return described;
}

void CDescriber::Silence(std::vector<SCAError>& errors, const SCheckedFile& file, std::wstring_view text,
                         const CTextLines& lines, SFileFindings& described) const
{
    CIgnores ignores(text, lines);
    ignores.Silence(errors);
    for (const CIgnores::SUnused& unused : ignores.Unused()) {
        SFinding finding = UnusedFinding(unused);
        if (ApplyLevel(finding.error, file))
            described.findings.push_back(std::move(finding));
    }
}

bool CDescriber::ApplyLevel(SCAError& error, const SCheckedFile& file) const
{
    using Configuration::ELevel;
    if (!m_sources.configuration)
        return true;
    const auto level = m_sources.configuration->LevelOf(error.code, file.path);
    if (level && *level != ELevel::Off)
        error.type = *level == ELevel::Error ? CodeAnalyzer::SeverityError : CodeAnalyzer::SeverityWarning;
    return level != ELevel::Off;
}

void CDescriber::AddNames(SFinding& finding, std::wstring_view text, const CTextLines& lines)
{
    const std::wstring name = NameOf(finding);
    const std::wstring tag = finding.error.code == UnknownAttribute
                                 ? TagAround(lines, text, finding.error.pos.start)
                                 : std::wstring();
    finding.detail = L" '" + name + L"'";
    finding.nearest = m_nearest.Find(finding.error.code, name, tag);
    if (!finding.nearest.empty())
        finding.detail += L", did you mean '" + finding.nearest + L"'?";
}

void CDescriber::AddDetails(SFileFindings& described, const SCheckedFile& file,
                            const std::wstring& text) const
{
    const auto isPhp = [](const SFinding& finding) {
        return !IsNameError(finding.error.code) && finding.error.code != UnusedIgnore;
    };
    if (!m_sources.details || std::none_of(described.findings.begin(), described.findings.end(), isPhp))
        return;
    std::vector<SCAError> errors;
    for (const SFinding& finding : described.findings)
        errors.push_back(finding.error);
    auto details = m_sources.details->GetDetails(file.path, file.factory, text, errors);
    // They come in the order of the findings.
    auto finding = described.findings.begin();
    for (CodeAnalyzer::SErrorDetails& found : details) {
        finding = std::find_if(finding, described.findings.end(), [&](const SFinding& candidate) {
            return SameRecord(candidate.error, found.error);
        });
        if (finding == described.findings.end())
            break;
        finding->detail = DetailOf(found, finding->message);
        finding->details = std::move(found);
        ++finding;
    }
}

} // namespace Kesh::Findings
