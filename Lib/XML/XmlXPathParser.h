#pragma once

#include <QString>
#include <QXmlQuery>
#include <memory>
#include <string>
#include <vector>

namespace Kesh::XML {

/// Answers XPath questions about one XML text; bad XML answers everything with nothing. One thread at a time.
class CXmlXPathParser
{
public:
    explicit CXmlXPathParser(const std::wstring& xml);
    ~CXmlXPathParser();

    /// The string value of what `xpath` finds, as it is written in XML.
    std::wstring GetString(const std::wstring& xpath);
    /// The complete text of each element that `xpath` finds, in document order.
    std::vector<std::wstring> GetElements(const std::wstring& xpath);

private:
    class CSilence;

    std::unique_ptr<CSilence> m_silence;
    QXmlQuery m_query;
    bool m_focused;
};

} // namespace Kesh::XML
