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
    if (!m_focused)
        return {};
    m_query.setQuery(QString::fromStdWString(xpath) + QLatin1String("/string()"));
    QString text;
    if (!m_query.isValid() || !m_query.evaluateTo(&text))
        return {};
    if (text.endsWith(QLatin1Char('\n')))
        text.chop(1);
    if (text.startsWith(QLatin1Char('\n')))
        text.remove(0, 1);
    return text.toStdWString();
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
