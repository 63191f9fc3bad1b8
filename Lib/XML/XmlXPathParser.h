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

    /// The string values of all that `xpath` finds as one text, as Qt writes it: joined by blanks, those of
    /// nothing but white space left out, "&", "<" and ">" as references; without one line feed at each end.
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
