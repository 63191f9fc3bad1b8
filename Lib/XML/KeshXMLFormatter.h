#pragma once

#include <QBuffer>
#include <QXmlFormatter>
#include <string>
#include <vector>

namespace Kesh::XML {

/// Writes what a query yields and keeps each top-level element as a text of its own.
class CKeshXMLFormatter : public QXmlFormatter
{
public:
    /// `buffer` is open for writing and, like the query, outlives the formatter.
    CKeshXMLFormatter(const QXmlQuery& query, QBuffer* buffer);

    void startElement(const QXmlName& name) override;
    void endElement() override;

    const std::vector<std::wstring>& GetElements() const { return m_elements; }

private:
    QBuffer* m_buffer;
    int m_depth = 0;
    std::vector<std::wstring> m_elements;
};

} // namespace Kesh::XML
