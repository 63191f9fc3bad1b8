#include "Report/Printable.h"
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

    void Begin() override { m_xml.Begin("testsuites"); }

    void Add(const Findings::SFileFindings& file) override
    {
        const std::wstring name = PlainPath(file.file);
        const auto failures = std::count_if(file.findings.begin(), file.findings.end(),
                                            [](const SFinding& finding) { return finding.IsError(); });
        m_xml.Xml().writeStartElement("testsuite");
        m_xml.Attribute("name", name);
        m_xml.Attribute("tests", std::to_wstring(std::max<std::ptrdiff_t>(1, failures)));
        m_xml.Attribute("failures", std::to_wstring(failures));
        m_xml.Attribute("errors", L"0");
        if (failures == 0)
            AddCase(name, L"syntax", nullptr);
        std::string warnings;
        for (const SFinding& finding : file.findings) {
            if (finding.IsError())
                AddCase(name, Place(finding), &finding);
            else
                warnings += Line(name, finding) + '\n';
        }
        if (!warnings.empty())
            m_xml.Xml().writeTextElement("system-out", QString::fromStdString(warnings));
        m_xml.Xml().writeEndElement();
        m_xml.Flush();
    }

    void End(const STotals& /*totals*/) override { m_xml.End(); }

private:
    static std::wstring Place(const SFinding& finding)
    {
        const auto& start = finding.error.pos.start;
        return L"line " + std::to_wstring(start.y + 1) + L", column " + std::to_wstring(start.x + 1) +
               L": error " + std::to_wstring(finding.error.code);
    }

    static std::string Line(const std::wstring& file, const SFinding& finding)
    {
        const auto& start = finding.error.pos.start;
        return Printable(file) + ':' + std::to_string(start.y + 1) + ':' + std::to_string(start.x + 1) +
               ": " + SeverityName(finding) + ": " + Printable(FullMessage(finding));
    }

    void AddCase(const std::wstring& file, const std::wstring& name, const SFinding* failure)
    {
        m_xml.Xml().writeStartElement("testcase");
        m_xml.Attribute("name", name);
        m_xml.Attribute("classname", file);
        if (failure) {
            m_xml.Xml().writeStartElement("failure");
            m_xml.Attribute("type", L"error");
            m_xml.Attribute("message", FullMessage(*failure));
            m_xml.Xml().writeCharacters(QString::fromStdString(Line(file, *failure)));
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
