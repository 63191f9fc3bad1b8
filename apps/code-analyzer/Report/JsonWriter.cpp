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
        SetText(m_record["file"], Host::PathToBytes(file.file));
        for (const Findings::SFinding& finding : file.findings) {
            const auto& [start, end] = finding.error.pos;
            m_record["startLine"] = start.y + 1;
            m_record["startColumn"] = start.x + 1;
            m_record["endLine"] = end.y + 1;
            m_record["endColumn"] = end.x + 1;
            m_record["code"] = finding.error.code;
            SetText(m_record["identifier"], IdentifierOf(finding));
            SetText(m_record["severity"], SeverityName(finding));
            SetText(m_record["message"], Host::PathToBytes(finding.message));
            SetText(m_record["text"], Host::PathToBytes(finding.text));
            nlohmann::ordered_json& arguments = m_record["arguments"] = nlohmann::ordered_json::object();
            for (const CodeAnalyzer::SArgument& argument : finding.details.arguments)
                arguments[argument.name] = Host::PathToBytes(argument.value);
            m_json.Add(m_record);
        }
    }

    void End(const STotals& /*totals*/) override { m_json.End(); }

private:
    CJsonOutput m_json;
    nlohmann::ordered_json m_record = {{"file", ""},
                                       {"startLine", 0},
                                       {"startColumn", 0},
                                       {"endLine", 0},
                                       {"endColumn", 0},
                                       {"code", 0},
                                       {"identifier", ""},
                                       {"severity", ""},
                                       {"message", ""},
                                       {"text", ""},
                                       {"arguments", nlohmann::ordered_json::object()}};
};

} // namespace

std::unique_ptr<IReportWriter> MakeJsonWriter(COutput& output)
{
    return std::make_unique<CJsonWriter>(output);
}

} // namespace Kesh::CommandLine
