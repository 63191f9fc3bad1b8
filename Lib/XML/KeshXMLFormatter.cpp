#include "XML/KeshXMLFormatter.h"

namespace Kesh::XML {

CKeshXMLFormatter::CKeshXMLFormatter(const QXmlQuery& query, QBuffer* buffer)
    : QXmlFormatter(query, buffer), m_buffer(buffer)
{
}

void CKeshXMLFormatter::startElement(const QXmlName& name)
{
    ++m_depth;
    QXmlFormatter::startElement(name);
}

void CKeshXMLFormatter::endElement()
{
    QXmlFormatter::endElement();
    if (--m_depth != 0)
        return;
    m_buffer->close();
    m_elements.push_back(QString::fromUtf8(m_buffer->data()).trimmed().toStdWString());
    m_buffer->open(QIODevice::WriteOnly | QIODevice::Truncate);
}

} // namespace Kesh::XML
