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
        m_xml.Begin(QStringLiteral("checkstyle"));
        m_xml.Attribute(QStringLiteral("version"), QStringLiteral("8.0"));
    }

    void Add(const Findings::SFileFindings& file) override
    {
        if (file.findings.empty())
            return;
        m_xml.Xml().writeStartElement(QStringLiteral("file"));
        m_xml.Attribute(QStringLiteral("name"), CXmlOutput::Text(PlainPath(file.file)));
        for (const Findings::SFinding& finding : file.findings) {
            const auto& start = finding.error.pos.start;
            m_xml.Xml().writeEmptyElement(QStringLiteral("error"));
            m_xml.Attribute(QStringLiteral("line"), start.y + 1);
            m_xml.Attribute(QStringLiteral("column"), start.x + 1);
            m_xml.Attribute(QStringLiteral("severity"), SeverityName(finding));
            m_xml.Attribute(QStringLiteral("message"), CXmlOutput::Text(finding.message));
            m_xml.Attribute(QStringLiteral("source"),
                            QStringLiteral("code-analyzer.") + QString::number(finding.error.code));
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
