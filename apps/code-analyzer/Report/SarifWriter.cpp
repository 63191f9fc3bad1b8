#include "Findings/ErrorPage.h"
#include "Report/Fingerprint.h"
#include "Report/JsonOutput.h"
#include "Report/Writer.h"

#include <QByteArray>
#include <map>
#include <string_view>

namespace Kesh::CommandLine {

namespace {

using nlohmann::ordered_json;

std::string Uri(const std::wstring& path)
{
    std::string uri = path.starts_with(L'/') ? "file://" : "";
    for (const char c : Host::PathToBytes(path)) {
        const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                           std::string_view("/-._~").find(c) != std::string_view::npos;
        uri += plain ? std::string(1, c) : QByteArray(1, c).toPercentEncoding().toStdString();
    }
    return uri;
}

ordered_json NoLocation()
{
    return {{"physicalLocation",
             {{"artifactLocation", {{"uri", ""}}},
              {"region", {{"startLine", 0}, {"startColumn", 0}, {"endLine", 0}, {"endColumn", 0}}}}}};
}

void SetLocation(ordered_json& location, const std::string& uri, const SyntaxParser::SScheme& span)
{
    ordered_json& physical = location["physicalLocation"];
    SetText(physical["artifactLocation"]["uri"], uri);
    ordered_json& region = physical["region"];
    region["startLine"] = span.start.y + 1;
    region["startColumn"] = span.start.x + 1;
    region["endLine"] = span.end.y + 1;
    region["endColumn"] = span.end.x + 1;
}

/// What is to be said of a finding's code alone.
ordered_json RuleOf(const Findings::SFinding& finding)
{
    const CodeAnalyzer::SDiagnosticKind* kind = CodeAnalyzer::FindKind(finding.error.code);
    const bool isError = (kind ? kind->severity : finding.error.type) == CodeAnalyzer::SeverityError;
    ordered_json rule = {{"id", std::to_string(finding.error.code)},
                         {"name", IdentifierOf(finding)},
                         {"shortDescription", {{"text", Host::PathToBytes(finding.title)}}},
                         {"defaultConfiguration", {{"level", isError ? "error" : "warning"}}}};
    const QString page = Findings::ErrorPage(finding.error.code);
    if (!page.isEmpty())
        rule["help"] = {{"text", page.toStdString()}, {"markdown", page.toStdString()}};
    return rule;
}

/// Replacements of one file.
ordered_json FixOf(const CodeAnalyzer::SFix& fix, const std::string& uri)
{
    ordered_json replacements = ordered_json::array();
    for (const CodeAnalyzer::STextEdit& edit : fix.edits) {
        ordered_json location = NoLocation();
        SetLocation(location, uri, edit.span);
        replacements.push_back({{"deletedRegion", location["physicalLocation"]["region"]},
                                {"insertedContent", {{"text", Host::PathToBytes(edit.text)}}}});
    }
    return {{"artifactChanges",
             {{{"artifactLocation", {{"uri", uri}}}, {"replacements", std::move(replacements)}}}}};
}

class CSarifWriter final : public IReportWriter
{
public:
    explicit CSarifWriter(COutput& output) : m_json(output) {}

    void Begin() override
    {
        m_json.Begin("{\"$schema\":\"https://docs.oasis-open.org/sarif/sarif/v2.1.0/errata01/os/schemas/"
                     "sarif-schema-2.1.0.json\",\"version\":\"2.1.0\",\"runs\":[{\"columnKind\":"
                     "\"unicodeCodePoints\",\"results\":");
    }

    void Add(const Findings::SFileFindings& file) override
    {
        const std::string uri = Uri(PlainPath(file.file));
        CFingerprints fingerprints(uri);
        for (const Findings::SFinding& finding : file.findings) {
            const std::string code = std::to_string(finding.error.code);
            m_rules.try_emplace(finding.error.code, finding);
            SetText(m_result["ruleId"], code);
            SetText(m_result["level"], SeverityName(finding));
            SetText(m_result["message"]["text"], Host::PathToBytes(finding.message));
            SetLocation(m_result["locations"][0], uri, finding.error.pos);
            SetText(m_result["partialFingerprints"]["lineAndCode/v1"], fingerprints.Next(finding));
            for (const Findings::SRelated& place : finding.related) {
                ordered_json related = NoLocation();
                SetLocation(related, uri, place.pos);
                related["message"]["text"] = Host::PathToBytes(place.message);
                m_result["relatedLocations"].push_back(std::move(related));
            }
            for (const CodeAnalyzer::SFix& fix : finding.details.fixes)
                m_result["fixes"].push_back(FixOf(fix, uri));
            m_json.Add(m_result);
            m_result.erase("relatedLocations");
            m_result.erase("fixes");
        }
    }

    void End(const STotals& /*totals*/) override
    {
        ordered_json rules = ordered_json::array();
        for (const auto& [code, finding] : m_rules)
            rules.push_back(RuleOf(finding));
        const ordered_json driver = {
            {"name", "code-analyzer"}, {"semanticVersion", CODE_ANALYZER_VERSION}, {"rules", rules}};
        m_json.End(",\n\"tool\":{\"driver\":" + JsonText(driver) + "}}]}\n");
    }

private:
    CJsonOutput m_json;
    ordered_json m_result = {{"ruleId", ""},
                             {"level", ""},
                             {"message", {{"text", ""}}},
                             {"locations", ordered_json::array({NoLocation()})},
                             {"partialFingerprints", {{"lineAndCode/v1", ""}}}};
    std::map<std::int32_t, Findings::SFinding> m_rules; ///< by code: those that were broken, with one finding
};

} // namespace

std::unique_ptr<IReportWriter> MakeSarifWriter(COutput& output)
{
    return std::make_unique<CSarifWriter>(output);
}

} // namespace Kesh::CommandLine
