#pragma once

#include "Report/Output.h"

#include <QBuffer>
#include <QXmlStreamWriter>

namespace Kesh::CommandLine {

/// An XML writer whose text goes on to an output piece by piece.
class CXmlOutput
{
public:
    explicit CXmlOutput(COutput& output);

    void Begin(const char* root);
    void End();
    QXmlStreamWriter& Xml() { return m_xml; }
    /// An attribute; characters that XML cannot hold are escaped as people know them.
    void Attribute(const char* name, const std::wstring& value);
    /// Hands on what has been written.
    void Flush();

private:
    COutput& m_output;
    QBuffer m_buffer;
    QXmlStreamWriter m_xml;
};

} // namespace Kesh::CommandLine
