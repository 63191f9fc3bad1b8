#pragma once

#include <QString>
#include <QXmlQuery>
#include <memory>
#include <string>
#include <vector>

namespace Kesh::XML {

/// Answers XPath questions about one XML text; bad XML, and XML that no text of ours looks like (nested
/// deeply, with crowds of attributes, with a DTD), answers everything with nothing. The first one in a
/// process starts the threads of Qt's network, which its query might want: what every user runs does without
/// it. One thread at a time.
class CXmlXPathParser
{
public:
    explicit CXmlXPathParser(const std::wstring& xml);
    ~CXmlXPathParser();

    /// The string value of the first thing that `xpath` finds, without a line feed at either end.
    std::wstring GetString(const std::wstring& xpath);
    /// The strings that `xpath` yields, in document order; for questions asked of many elements at once.
    std::vector<std::wstring> GetStrings(const std::wstring& xpath);
    /// The complete text of each element that `xpath` finds, in document order.
    std::vector<std::wstring> GetElements(const std::wstring& xpath);

private:
    class CSilence;

    std::unique_ptr<CSilence> m_silence;
    QXmlQuery m_query;
    bool m_focused;
};

} // namespace Kesh::XML
