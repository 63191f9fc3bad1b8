// What is said of a mistake that a rule has found.

#include "Base/CommonString.h"
#include "Grammar/FixEdits.h"
#include "Grammar/GrammarReporter.h"

#include <algorithm>

namespace Kesh::CodeAnalyzer {

namespace {

std::wstring VersionText(std::int32_t version)
{
    return std::to_wstring(version / 100) + L'.' + std::to_wstring(version % 100);
}

/// Whether a report's token is a name that its message speaks of by that word.
const char* PlaceOfToken(std::int32_t code)
{
    switch (code) {
    case Code::LeaveOutsideLoop:
    case Code::ModifierConflict:
    case Code::ModifierMisused:
    case Code::NoClassHere:
    case Code::WordOutOfPlace:
    case Code::WrongToken:
    case Code::OutOfPlace: return "found";
    default: return "name";
    }
}

} // namespace

void CGrammarReporter::AddRuleReports(const std::vector<SRuleReport>& reports)
{
    for (const SRuleReport& report : reports)
        AddRuleReport(report);
}

std::vector<SArgument> CGrammarReporter::ArgumentsOf(const SRuleReport& report,
                                                     const SPhpFeature& feature) const
{
    const std::int32_t since = report.code == Code::TooNew ? feature.since : feature.until;
    std::vector<SArgument> arguments = {
        {"feature", Base::CCommonString::FromUtf8(feature.text), SArgument::Key},
        {"since", VersionText(since), SArgument::Plain},
        {"version", VersionText(m_version), SArgument::Plain},
    };
    if (m_versionFrom.empty())
        arguments.push_back({"here", VersionText(m_version), SArgument::Plain});
    else
        arguments.push_back({"demander", m_versionFrom, SArgument::Plain});
    return arguments;
}

void CGrammarReporter::AddRuleReport(const SRuleReport& report)
{
    const std::uint32_t token = std::min(report.token, m_tokens.Count() - 1);
    if (report.code == Code::ModifierConflict && token > 0 && m_tokens.LeadsLine(token)) {
        // The line before has lost what its modifiers were for.
        SGrammarDiagnostic& diagnostic = Add(Code::MissingVariable, GapBehind(token - 1));
        diagnostic.stopsParse = false;
        AddFound(diagnostic, "found", token);
        return;
    }
    SGrammarDiagnostic& diagnostic = Add(report.code, m_tokens.Span(token));
    diagnostic.stopsParse = false;
    SDetails& details = diagnostic.details;
    if (report.feature) {
        details.arguments = ArgumentsOf(report, FeatureOf(*report.feature));
    } else if (!report.arguments.empty()) {
        details.arguments = report.arguments;
    } else {
        const bool isOfMethod = report.code == Code::BodyMissing || report.code == Code::BodyNotAllowed;
        AddFound(diagnostic, PlaceOfToken(report.code), isOfMethod ? report.related.token : token);
    }
    if (report.code == Code::WrongToken) {
        const std::wstring expected(TextOf(K::DoubleArrow)); // what the only rule that finds one expects
        details.arguments.push_back({"expected", expected});
        details.fixes.push_back({EFix::Replace, {{diagnostic.error.pos, expected}}});
    }
    if (report.code == Code::OutOfPlace &&
        ClassOf(m_tokens[token].kind) == SyntaxParser::EPhpTokenClass::Operator)
        OfferDollar(diagnostic, token);
    if (report.fix == EFix::Remove)
        details.fixes.push_back({EFix::Remove, {CFixEdits(m_tokens).Removal(token)}});
    for (const SRelatedToken& related : {report.related, report.other})
        if (related.token != NoToken)
            details.related.push_back({m_tokens.Span(related.token), related.message});
}

} // namespace Kesh::CodeAnalyzer
