#include "Report/JsonOutput.h"
#include "Report/Writer.h"

namespace Kesh::CommandLine {

namespace {

class CJsonWriter final : public IReportWriter
{
public:
    explicit CJsonWriter(COutput& output) : m_json(output) {}

    void Begin() override { m_json.Begin(); }

    void Add(const Findings::SFileFindings& file) override
    {
        const std::string name = Host::PathToBytes(file.file);
        for (const Findings::SFinding& finding : file.findings) {
            const auto& [start, end] = finding.error.pos;
            nlohmann::ordered_json object;
            object["file"] = name;
            object["startLine"] = start.y + 1;
            object["startColumn"] = start.x + 1;
            object["endLine"] = end.y + 1;
            object["endColumn"] = end.x + 1;
            object["code"] = finding.error.code;
            object["severity"] = SeverityName(finding);
            object["message"] = Host::PathToBytes(finding.message);
            object["text"] = Host::PathToBytes(finding.text);
            m_json.Add(object);
        }
    }

    void End(const STotals& /*totals*/) override { m_json.End(); }

private:
    CJsonOutput m_json;
};

} // namespace

std::unique_ptr<IReportWriter> MakeJsonWriter(COutput& output)
{
    return std::make_unique<CJsonWriter>(output);
}

} // namespace Kesh::CommandLine
