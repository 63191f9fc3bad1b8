#include "XML/XmlXPathParser.h"

#include "XML/KeshXMLFormatter.h"
#include "XML/XmlLimits.h"

#include <QAbstractMessageHandler>
#include <QBuffer>

namespace Kesh::XML {

/// Without a handler of its own the query prints what it dislikes.
class CXmlXPathParser::CSilence : public QAbstractMessageHandler
{
protected:
    void handleMessage(QtMsgType, const QString&, const QUrl&, const QSourceLocation&) override {}
};

CXmlXPathParser::CXmlXPathParser(const std::wstring& xml) : m_silence(std::make_unique<CSilence>())
{
    m_query.setMessageHandler(m_silence.get());
    const QString text = QString::fromStdWString(xml);
    m_focused = IsHarmless(text) && m_query.setFocus(text);
}

CXmlXPathParser::~CXmlXPathParser() = default;

std::wstring CXmlXPathParser::GetString(const std::wstring& xpath)
{
    const std::vector<std::wstring> strings = GetStrings(xpath + L"/string()");
    std::wstring text = strings.empty() ? std::wstring() : strings.front();
    if (text.ends_with(L'\n'))
        text.pop_back();
    if (text.starts_with(L'\n'))
        text.erase(0, 1);
    return text;
}

std::vector<std::wstring> CXmlXPathParser::GetStrings(const std::wstring& xpath)
{
    if (!m_focused)
        return {};
    m_query.setQuery(QString::fromStdWString(xpath));
    QStringList strings;
    if (!m_query.isValid() || !m_query.evaluateTo(&strings))
        return {};
    std::vector<std::wstring> wide;
    for (const QString& text : strings)
        wide.push_back(text.toStdWString());
    return wide;
}

std::vector<std::wstring> CXmlXPathParser::GetElements(const std::wstring& xpath)
{
    if (!m_focused)
        return {};
    m_query.setQuery(QString::fromStdWString(xpath));
    if (!m_query.isValid())
        return {};
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    CKeshXMLFormatter formatter(m_query, &buffer);
    m_query.evaluateTo(&formatter);
    return formatter.GetElements();
}

} // namespace Kesh::XML
