#include "Report/Writer.h"
#include "Report/XmlOutput.h"

#include <algorithm>

namespace Kesh::CommandLine {

namespace {

using Findings::SFinding;

/// A suite for each file, a failed case for each of its errors; a warning fails nothing and stands in the
/// suite's output.
class CJunitWriter final : public IReportWriter
{
public:
    explicit CJunitWriter(COutput& output) : m_xml(output) {}

    void Begin() override { m_xml.Begin(QStringLiteral("testsuites")); }

    void Add(const Findings::SFileFindings& file) override
    {
        const QString name = CXmlOutput::Text(PlainPath(file.file));
        const auto failures = std::count_if(file.findings.begin(), file.findings.end(),
                                            [](const SFinding& finding) { return finding.IsError(); });
        m_xml.Xml().writeStartElement(QStringLiteral("testsuite"));
        m_xml.Attribute(QStringLiteral("name"), name);
        m_xml.Attribute(QStringLiteral("tests"), std::max<std::ptrdiff_t>(1, failures));
        m_xml.Attribute(QStringLiteral("failures"), failures);
        m_xml.Attribute(QStringLiteral("errors"), 0);
        if (failures == 0)
            AddCase(name, QStringLiteral("syntax"), nullptr);
        QString warnings;
        for (const SFinding& finding : file.findings) {
            if (finding.IsError())
                AddCase(name, Place(finding), &finding);
            else
                warnings += Line(name, finding, CXmlOutput::Text(finding.message)) + QLatin1Char('\n');
        }
        if (!warnings.isEmpty())
            m_xml.Xml().writeTextElement(QStringLiteral("system-out"), warnings);
        m_xml.Xml().writeEndElement();
        m_xml.Flush();
    }

    void End(const STotals& /*totals*/) override { m_xml.End(); }

private:
    static QString Place(const SFinding& finding)
    {
        const auto& start = finding.error.pos.start;
        return QStringLiteral("line %1, column %2: error %3")
            .arg(start.y + 1)
            .arg(start.x + 1)
            .arg(finding.error.code);
    }

    static QString Line(const QString& file, const SFinding& finding, const QString& message)
    {
        const auto& start = finding.error.pos.start;
        return file + QLatin1Char(':') + QString::number(start.y + 1) + QLatin1Char(':') +
               QString::number(start.x + 1) + QLatin1String(": ") + QLatin1String(SeverityName(finding)) +
               QLatin1String(": ") + message;
    }

    void AddCase(const QString& file, const QString& name, const SFinding* failure)
    {
        m_xml.Xml().writeStartElement(QStringLiteral("testcase"));
        m_xml.Attribute(QStringLiteral("name"), name);
        m_xml.Attribute(QStringLiteral("classname"), file);
        if (failure) {
            const QString message = CXmlOutput::Text(failure->message);
            m_xml.Xml().writeStartElement(QStringLiteral("failure"));
            m_xml.Attribute(QStringLiteral("type"), QStringLiteral("error"));
            m_xml.Attribute(QStringLiteral("message"), message);
            m_xml.Xml().writeCharacters(Line(file, *failure, message));
            m_xml.Xml().writeEndElement();
        }
        m_xml.Xml().writeEndElement();
    }

    CXmlOutput m_xml;
};

} // namespace

std::unique_ptr<IReportWriter> MakeJunitWriter(COutput& output)
{
    return std::make_unique<CJunitWriter>(output);
}

} // namespace Kesh::CommandLine
