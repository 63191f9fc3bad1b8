#include "QuickFixes/QuickFix.h"

#include "Findings/Describe.h"
#include "Findings/NameErrors.h"
#include "QuickFixes/IgnoreComment.h"
#include "QuickFixes/PhpPlaces.h"

#include <algorithm>
#include <utility>

namespace Kesh::QuickFixes {

namespace {

using EKind = SQuickFix::EKind;
using Findings::SFinding;

void AddMending(const SFinding& finding, std::vector<SQuickFix>& fixes)
{
    if (!finding.details)
        return;
    const CodeAnalyzer::SErrorDetails& details = *finding.details;
    if (!details.insertion.empty())
        fixes.push_back({EKind::Mend,
                         L"Insert '" + details.insertion + L"'",
                         {{{details.insertAt, details.insertAt}, details.insertion}},
                         {},
                         {},
                         finding.error.code});
    if (details.removable)
        fixes.push_back({EKind::Mend,
                         L"Remove '" + finding.text + L"'",
                         {{finding.error.pos, {}}},
                         {},
                         {},
                         finding.error.code});
}

const char* ListOf(std::int32_t code)
{
    switch (code) {
    case Findings::UnknownAttribute: return "attributes";
    case Findings::UnknownProperty: return "properties";
    default: return "tags";
    }
}

/// The name's own span: that of a tag begins with "<".
SyntaxParser::SScheme NameSpan(const SFinding& finding, const std::wstring& name)
{
    SyntaxParser::SScheme span = finding.error.pos;
    const auto front = static_cast<std::int64_t>(finding.text.size() - name.size());
    if (span.start.y == span.end.y)
        span.start.x += front;
    return span;
}

/// The end tag of an element goes the way of its start tag.
void RenameEndTag(const SFinding& finding, const std::wstring& name, const SFileText& file, SQuickFix& fix)
{
    constexpr std::size_t Reach = 1 << 16;
    const std::size_t from = file.lines.Offset(finding.error.pos.end);
    const std::wstring_view behind = file.text.substr(from, Reach);
    const std::size_t at = behind.find(L"</" + name + L">");
    if (at == std::wstring_view::npos || behind.substr(0, at).find(L'<' + name) != std::wstring_view::npos)
        return;
    fix.edits.push_back(
        {{file.lines.Position(from + at + 2), file.lines.Position(from + at + 2 + name.size())},
         finding.nearest});
}

void AddNameFixes(const SFinding& finding, const SFileText& file, std::vector<SQuickFix>& fixes)
{
    const std::wstring name = Findings::NameOf(finding);
    if (name.empty())
        return;
    if (!finding.nearest.empty()) {
        SQuickFix fix{EKind::Mend,
                      L"Replace by '" + finding.nearest + L"'",
                      {{NameSpan(finding, name), finding.nearest}},
                      {},
                      {},
                      finding.error.code};
        if (finding.error.code == Findings::UnknownTag)
            RenameEndTag(finding, name, file, fix);
        fixes.push_back(std::move(fix));
    }
    fixes.push_back({EKind::AddOwnName,
                     L"Add '" + name + L"' to the project's own names",
                     {},
                     name,
                     ListOf(finding.error.code),
                     finding.error.code});
}

/// The comment around a place of a line; npos for both when it does not begin and end there.
std::pair<std::size_t, std::size_t> CommentAround(std::wstring_view line, std::size_t at)
{
    constexpr std::pair<std::wstring_view, std::wstring_view> Styles[] = {
        {L"<!--", L"-->"}, {L"/*", L"*/"}, {L"//", L"?>"}, {L"#", L"?>"}};
    const std::size_t none = std::wstring_view::npos;
    const std::size_t word = line.substr(0, at).find_last_not_of(L" \t*");
    for (const auto& [open, close] : Styles) {
        const std::size_t start = line.rfind(open, at);
        if (start == none || word == none || start + open.size() <= word)
            continue;
        const std::size_t end = line.find(close, at);
        if (close == L"?>")
            return {start, std::min(end, line.size())};
        return end == none ? std::pair(none, none) : std::pair(start, end + close.size());
    }
    return {none, none};
}

/// A comment that ignores nothing goes with the blanks in front of it, and with its line when it is alone
/// there.
void AddRemovalOfComment(const SFinding& finding, const SFileText& file, std::vector<SQuickFix>& fixes)
{
    const auto [column, line] = finding.error.pos.start;
    const std::wstring_view text = file.lines.Line(line);
    auto [start, end] = CommentAround(text, static_cast<std::size_t>(column));
    if (start == std::wstring_view::npos || !finding.details || !finding.details->removable)
        return;
    while (start > 0 && (text[start - 1] == L' ' || text[start - 1] == L'\t'))
        --start;
    const bool alone = start == 0 && end == text.size();
    const auto columnOf = [](std::size_t at) { return static_cast<std::int64_t>(at); };
    const SyntaxParser::SScheme span =
        alone ? SyntaxParser::SScheme{{0, line}, {0, line + 1}}
              : SyntaxParser::SScheme{{columnOf(start), line}, {columnOf(end), line}};
    fixes.push_back({EKind::Mend,
                     alone ? L"Remove this line" : L"Remove this comment",
                     {{span, {}}},
                     {},
                     {},
                     finding.error.code});
}

} // namespace

std::vector<SQuickFix> FixesFor(const SFinding& finding, const SFileText& file)
{
    std::vector<SQuickFix> fixes;
    const std::int32_t code = finding.error.code;
    if (code == Findings::UnusedIgnore) {
        AddRemovalOfComment(finding, file, fixes);
        return fixes;
    }
    if (Findings::IsNameError(code))
        AddNameFixes(finding, file, fixes);
    else
        AddMending(finding, fixes);
    const std::wstring number = std::to_wstring(code);
    if (const auto edit = IgnoreComment(finding, file))
        fixes.push_back({EKind::IgnoreHere, L"Ignore error " + number + L" here", {*edit}, {}, {}, code});
    fixes.push_back({EKind::IgnoreCode, L"Ignore error " + number + L" in this project", {}, {}, {}, code});
    return fixes;
}

} // namespace Kesh::QuickFixes
