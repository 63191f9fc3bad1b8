#include "Findings/Describe.h"

#include "Findings/Ignores.h"
#include "Findings/MistypedIgnores.h"

#include <algorithm>
#include <utility>

namespace Kesh::Findings {

namespace {

using CodeAnalyzer::SCAError;
using CodeAnalyzer::SDiagnostic;

bool Precedes(const SFinding& a, const SFinding& b)
{
    return a.error.pos.start == b.error.pos.start ? a.error.code < b.error.code
                                                  : a.error.pos.start < b.error.pos.start;
}

/// A comment that ignores nothing: of the host's own.
SDiagnostic UnusedDiagnostic(const CIgnores::SUnused& unused)
{
    SDiagnostic diagnostic{{unused.span, CodeAnalyzer::Code::UnusedIgnore, CodeAnalyzer::SeverityWarning},
                           {}};
    std::wstring codes;
    for (const std::int32_t code : unused.codes)
        codes += (codes.empty() ? L"" : L", ") + std::to_wstring(code);
    if (!codes.empty())
        diagnostic.details.arguments.push_back({"codes", codes, CodeAnalyzer::SArgument::Plain});
    if (unused.whole)
        diagnostic.details.fixes.push_back({CodeAnalyzer::EFix::Remove, {{unused.span, {}}}});
    return diagnostic;
}

SDiagnostic MistypedDiagnostic(const SMistypedIgnore& mistyped, std::wstring_view text,
                               const CTextLines& lines)
{
    const SyntaxParser::SScheme span{lines.Position(mistyped.begin), lines.Position(mistyped.end)};
    SDiagnostic diagnostic{{span, CodeAnalyzer::Code::MistypedIgnore, CodeAnalyzer::SeverityWarning}, {}};
    const std::wstring meant(mistyped.meant);
    diagnostic.details.arguments = {{"found",
                                     std::wstring(text.substr(mistyped.begin, mistyped.end - mistyped.begin)),
                                     CodeAnalyzer::SArgument::Source},
                                    {"nearest", meant, CodeAnalyzer::SArgument::Source}};
    diagnostic.details.fixes.push_back({CodeAnalyzer::EFix::Replace, {{span, meant}}});
    return diagnostic;
}

SFinding MakeFinding(SDiagnostic diagnostic, const CTextLines& lines, CodeAnalyzer::IDiagnosticTexts& texts)
{
    SFinding finding;
    finding.error = diagnostic.error;
    finding.line = lines.Excerpt(finding.error.pos.start);
    finding.text = lines.Span(finding.error.pos).substr(0, MaxTextLength);
    finding.title = texts.GetTitle(finding.error.code);
    finding.message = texts.GetMessage(diagnostic);
    for (const CodeAnalyzer::SRelatedPlace& place : diagnostic.details.related)
        finding.related.push_back({place.pos, texts.GetMessage(place)});
    finding.details = std::move(diagnostic.details);
    return finding;
}

/// Only what tells findings apart.
SFinding BriefFinding(SDiagnostic diagnostic, const CTextLines& lines)
{
    SFinding finding;
    finding.error = diagnostic.error;
    finding.line = lines.Excerpt(finding.error.pos.start);
    finding.details = std::move(diagnostic.details);
    return finding;
}

void Silence(std::vector<SDiagnostic>& diagnostics, std::wstring_view text, const CTextLines& lines)
{
    CIgnores ignores(text, lines);
    ignores.Silence(diagnostics);
    for (const CIgnores::SUnused& unused : ignores.Unused())
        diagnostics.push_back(UnusedDiagnostic(unused));
    for (const SMistypedIgnore& mistyped : FindMistypedIgnores(text))
        diagnostics.push_back(MistypedDiagnostic(mistyped, text, lines));
}

} // namespace

SFileFindings CDescriber::Describe(const SCheckedFile& file, std::vector<SDiagnostic> diagnostics,
                                   const SRules& rules) const
{
    SFileFindings described{file.shown, file.path, {}, {}};
    if (!file.named && rules.settings.Excludes(file.path))
        return described;
    if (!diagnostics.empty() || file.mayIgnore)
        Fill(described, file, std::move(diagnostics), rules);
    if (rules.baseline)
        rules.baseline->Filter(described);
    return described;
}

void CDescriber::Fill(SFileFindings& described, const SCheckedFile& file,
                      std::vector<SDiagnostic> diagnostics, const SRules& rules) const
{
    const std::wstring_view text = file.text();
    const bool ignores = MayMeanToIgnore(text);
    if (diagnostics.empty() && !ignores)
        return;
    const CTextLines lines(text);
    if (ignores)
        Silence(diagnostics, text, lines);
    described.findings.reserve(diagnostics.size());
    for (SDiagnostic& diagnostic : diagnostics) {
        diagnostic.error.type = rules.LevelOf(diagnostic.error, file.path);
        if (diagnostic.error.type == 0)
            continue;
        described.findings.push_back(m_detail == EDetail::Brief
                                         ? BriefFinding(std::move(diagnostic), lines)
                                         : MakeFinding(std::move(diagnostic), lines, m_texts));
    }
    // They come nearly sorted, and are large to move.
    if (!std::is_sorted(described.findings.begin(), described.findings.end(), Precedes))
        std::stable_sort(described.findings.begin(), described.findings.end(), Precedes);
}

std::vector<SFinding> MakeFindings(std::vector<SDiagnostic> diagnostics, std::wstring_view text,
                                   CodeAnalyzer::IDiagnosticTexts& texts)
{
    const CTextLines lines(text);
    std::vector<SFinding> findings;
    for (SDiagnostic& diagnostic : diagnostics)
        findings.push_back(MakeFinding(std::move(diagnostic), lines, texts));
    return findings;
}

} // namespace Kesh::Findings
