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
        for (const Findings::SFinding& finding : file.findings) {
            const auto& [start, end] = finding.error.pos;
            nlohmann::ordered_json object;
            object["description"] = Host::PathToBytes(FullMessage(finding));
            object["check_name"] = std::to_string(finding.error.code);
            object["fingerprint"] = fingerprints.Next(finding);
            object["severity"] = finding.IsError() ? "major" : "minor";
            object["location"]["path"] = name;
            object["location"]["lines"]["begin"] = start.y + 1;
            object["location"]["lines"]["end"] = end.y + 1;
            m_json.Add(object);
        }
    }

    void End(const STotals& /*totals*/) override { m_json.End(); }

private:
    CJsonOutput m_json;
};

} // namespace

std::unique_ptr<IReportWriter> MakeGitlabWriter(COutput& output)
{
    return std::make_unique<CGitlabWriter>(output);
}

} // namespace Kesh::CommandLine
