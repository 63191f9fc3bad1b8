#include "Report/XmlOutput.h"

#include "Report/Printable.h"

namespace Kesh::CommandLine {

CXmlOutput::CXmlOutput(COutput& output) : m_output(output), m_xml(&m_written)
{
    m_xml.setAutoFormatting(true);
    m_xml.setAutoFormattingIndent(1);
}

void CXmlOutput::Begin(const QString& root)
{
    // A writer into characters does not know as what they will be encoded.
    m_output.Write(R"(<?xml version="1.0" encoding="UTF-8"?>)");
    m_xml.writeStartElement(root);
}

void CXmlOutput::End()
{
    m_xml.writeEndDocument();
    Flush();
}

QString CXmlOutput::Text(const std::wstring& text)
{
    return QString::fromStdString(Printable(text));
}

void CXmlOutput::Flush()
{
    const QByteArray bytes = m_written.toUtf8();
    m_output.Write({bytes.constData(), static_cast<std::size_t>(bytes.size())});
    m_written.resize(0); // keeps its room
}

} // namespace Kesh::CommandLine
