#include "Report/Writer.h"
#include "Report/XmlOutput.h"

namespace Kesh::CommandLine {

namespace {

class CCheckstyleWriter final : public IReportWriter
{
public:
    explicit CCheckstyleWriter(COutput& output) : m_xml(output) {}

    void Begin() override
    {
        m_xml.Begin("checkstyle");
        m_xml.Attribute("version", L"8.0");
    }

    void Add(const Findings::SFileFindings& file) override
    {
        if (file.findings.empty())
            return;
        m_xml.Xml().writeStartElement("file");
        m_xml.Attribute("name", PlainPath(file.file));
        for (const Findings::SFinding& finding : file.findings) {
            const auto& start = finding.error.pos.start;
            m_xml.Xml().writeEmptyElement("error");
            m_xml.Attribute("line", std::to_wstring(start.y + 1));
            m_xml.Attribute("column", std::to_wstring(start.x + 1));
            m_xml.Attribute("severity", finding.IsError() ? L"error" : L"warning");
            m_xml.Attribute("message", FullMessage(finding));
            m_xml.Attribute("source", L"code-analyzer." + std::to_wstring(finding.error.code));
        }
        m_xml.Xml().writeEndElement();
        m_xml.Flush();
    }

    void End(const STotals& /*totals*/) override { m_xml.End(); }

private:
    CXmlOutput m_xml;
};

} // namespace

std::unique_ptr<IReportWriter> MakeCheckstyleWriter(COutput& output)
{
    return std::make_unique<CCheckstyleWriter>(output);
}

} // namespace Kesh::CommandLine
