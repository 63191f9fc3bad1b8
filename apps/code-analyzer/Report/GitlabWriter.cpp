#include "Report/Fingerprint.h"
#include "Report/JsonOutput.h"
#include "Report/Writer.h"

namespace Kesh::CommandLine {

namespace {

class CGitlabWriter final : public IReportWriter
{
public:
    explicit CGitlabWriter(COutput& output) : m_json(output) {}

    void Begin() override { m_json.Begin(); }

    void Add(const Findings::SFileFindings& file) override
    {
        const std::string name = Host::PathToBytes(PlainPath(file.file));
        CFingerprints fingerprints(name);
        nlohmann::ordered_json& location = m_issue["location"];
        SetText(location["path"], name);
        for (const Findings::SFinding& finding : file.findings) {
            const auto& [start, end] = finding.error.pos;
            SetText(m_issue["description"], Host::PathToBytes(finding.message));
            SetText(m_issue["check_name"], std::to_string(finding.error.code));
            SetText(m_issue["fingerprint"], fingerprints.Next(finding));
            SetText(m_issue["severity"], finding.IsError() ? "major" : "minor");
            location["lines"]["begin"] = start.y + 1;
            location["lines"]["end"] = end.y + 1;
            m_json.Add(m_issue);
        }
    }

    void End(const STotals& /*totals*/) override { m_json.End(); }

private:
    CJsonOutput m_json;
    nlohmann::ordered_json m_issue = {{"description", ""},
                                      {"check_name", ""},
                                      {"fingerprint", ""},
                                      {"severity", ""},
                                      {"location", {{"path", ""}, {"lines", {{"begin", 0}, {"end", 0}}}}}};
};

} // namespace

std::unique_ptr<IReportWriter> MakeGitlabWriter(COutput& output)
{
    return std::make_unique<CGitlabWriter>(output);
}

} // namespace Kesh::CommandLine
