#include "Report/XmlOutput.h"

#include "Report/Printable.h"

namespace Kesh::CommandLine {

CXmlOutput::CXmlOutput(COutput& output) : m_output(output)
{
    m_buffer.open(QIODevice::WriteOnly);
    m_xml.setDevice(&m_buffer);
    m_xml.setAutoFormatting(true);
    m_xml.setAutoFormattingIndent(1);
}

void CXmlOutput::Begin(const char* root)
{
    m_xml.writeStartDocument();
    m_xml.writeStartElement(root);
}

void CXmlOutput::End()
{
    m_xml.writeEndDocument();
    Flush();
}

void CXmlOutput::Attribute(const char* name, const std::wstring& value)
{
    m_xml.writeAttribute(QLatin1String(name), QString::fromStdString(Printable(value)));
}

void CXmlOutput::Flush()
{
    m_output.Write({m_buffer.data().constData(), static_cast<std::size_t>(m_buffer.data().size())});
    m_buffer.buffer().clear();
    m_buffer.seek(0);
}

} // namespace Kesh::CommandLine
