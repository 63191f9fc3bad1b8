#pragma once

#include "Report/Output.h"

#include <QString>
#include <QXmlStreamWriter>

namespace Kesh::CommandLine {

/// An XML writer whose text goes on to an output piece by piece.
class CXmlOutput
{
public:
    explicit CXmlOutput(COutput& output);
    CXmlOutput(const CXmlOutput&) = delete;
    CXmlOutput& operator=(const CXmlOutput&) = delete;

    void Begin(const QString& root);
    void End();
    QXmlStreamWriter& Xml() { return m_xml; }
    void Attribute(const QString& name, const QString& value) { m_xml.writeAttribute(name, value); }
    void Attribute(const QString& name, std::int64_t value) { Attribute(name, QString::number(value)); }
    /// Hands on what has been written.
    void Flush();

    /// Text for attributes and elements; characters that XML cannot hold are escaped as people know them.
    static QString Text(const std::wstring& text);

private:
    COutput& m_output;
    /// In characters: an encoder and a device for every piece would cost more than the rest.
    QString m_written;
    QXmlStreamWriter m_xml;
};

} // namespace Kesh::CommandLine
