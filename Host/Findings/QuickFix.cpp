#include "Findings/QuickFix.h"

#include "Base/CommonString.h"
#include "Findings/IgnoreComment.h"
#include "Findings/PhpPlaces.h"
#include "Kesh/LangSupport/LangSupport.h"

#include <algorithm>
#include <utility>

namespace Kesh::Findings {

namespace {

using EKind = SQuickFix::EKind;

const char* SentenceOf(CodeAnalyzer::EFix kind)
{
    switch (kind) {
    case CodeAnalyzer::EFix::Insert: return "Insert '{what}'";
    case CodeAnalyzer::EFix::Remove: return "Remove '{what}'";
    default: return "Replace by '{what}'";
    }
}

void AddKnownFixes(const SFinding& finding, std::vector<SQuickFix>& fixes)
{
    for (const CodeAnalyzer::SFix& known : finding.details.fixes) {
        SQuickFix& fix = fixes.emplace_back();
        fix.sentence = SentenceOf(known.kind);
        fix.what = known.kind == CodeAnalyzer::EFix::Remove
                       ? finding.text
                       : std::wstring(Base::CCommonString::Trim(known.edits.front().text));
        fix.edits = known.edits;
        fix.code = finding.error.code;
        fix.isGuess = known.kind == CodeAnalyzer::EFix::Rename;
    }
}

const char* ListOf(std::int32_t code)
{
    switch (code) {
    case CodeAnalyzer::Code::UnknownAttribute: return "attributes";
    case CodeAnalyzer::Code::UnknownProperty: return "properties";
    default: return "tags";
    }
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
        {{file.lines.Position(from + at + 2), file.lines.Position(from + at + 2 + name.size())}, fix.what});
}

void AddOwnName(const SFinding& finding, std::vector<SQuickFix>& fixes)
{
    const std::wstring* name = finding.details.Find("name");
    if (!name || name->empty() || !CodeAnalyzer::IsNameError(finding.error.code))
        return;
    SQuickFix& own = fixes.emplace_back();
    own.kind = EKind::AddOwnName;
    own.sentence = "Add '{what}' to the project's own names";
    own.what = own.name = *name;
    own.list = ListOf(finding.error.code);
    own.code = finding.error.code;
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
    if (start == std::wstring_view::npos || finding.details.fixes.empty())
        return;
    while (start > 0 && (text[start - 1] == L' ' || text[start - 1] == L'\t'))
        --start;
    const bool alone = start == 0 && end == text.size();
    const auto columnOf = [](std::size_t at) { return static_cast<std::int64_t>(at); };
    const SyntaxParser::SScheme span =
        alone ? SyntaxParser::SScheme{{0, line}, {0, line + 1}}
              : SyntaxParser::SScheme{{columnOf(start), line}, {columnOf(end), line}};
    SQuickFix& fix = fixes.emplace_back();
    fix.sentence = alone ? "Remove this line" : "Remove this comment";
    fix.edits = {{span, {}}};
    fix.code = finding.error.code;
}

} // namespace

std::wstring SQuickFix::Title() const
{
    std::wstring title = LangSupport::CLangSupport::LoadStr(sentence);
    constexpr std::wstring_view place = L"{what}";
    if (const std::size_t at = title.find(place); at != std::wstring::npos)
        title.replace(at, place.size(), what);
    return title;
}

std::vector<SQuickFix> EditsFor(const SFinding& finding, const SFileText& file)
{
    std::vector<SQuickFix> fixes;
    if (finding.error.code == CodeAnalyzer::Code::UnusedIgnore)
        AddRemovalOfComment(finding, file, fixes);
    else
        AddKnownFixes(finding, fixes);
    const std::wstring* name = finding.details.Find("name");
    if (name && finding.error.code == CodeAnalyzer::Code::UnknownTag)
        for (SQuickFix& fix : fixes)
            RenameEndTag(finding, *name, file, fix);
    return fixes;
}

std::vector<SQuickFix> FixesFor(const SFinding& finding, const SFileText& file)
{
    std::vector<SQuickFix> fixes = EditsFor(finding, file);
    const std::int32_t code = finding.error.code;
    if (IsHostsOwn(code))
        return fixes; // what ignores must not be ignored
    AddOwnName(finding, fixes);
    const std::wstring number = std::to_wstring(code);
    if (const auto edit = IgnoreComment(finding, file))
        fixes.push_back({EKind::IgnoreHere, "Ignore error {what} here", number, {*edit}, {}, {}, code});
    fixes.push_back({EKind::IgnoreCode, "Ignore error {what} in this project", number, {}, {}, {}, code});
    return fixes;
}

} // namespace Kesh::Findings
