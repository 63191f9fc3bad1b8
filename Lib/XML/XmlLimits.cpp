#include "XML/XmlLimits.h"

#include <QBuffer>
#include <QXmlStreamReader>

namespace Kesh::XML {

namespace {

constexpr int MaxDepth = 64;
constexpr int MaxAttributes = 64;

/// Whether any tag has so many attributes that the reader, which compares each with each, would take long.
bool HasCrowdedTag(const QString& xml)
{
    int attributes = 0;
    QChar last;
    for (const QChar c : xml) {
        if (c == QLatin1Char('<'))
            attributes = 0;
        else if ((c == QLatin1Char('"') || c == QLatin1Char('\'')) && last == QLatin1Char('='))
            ++attributes;
        if (attributes > MaxAttributes)
            return true;
        if (!c.isSpace())
            last = c;
    }
    return false;
}

} // namespace

bool IsHarmless(const QString& xml)
{
    if (HasCrowdedTag(xml))
        return false;
    // As bytes, which is how a query reads it.
    QBuffer buffer;
    buffer.setData(xml.toUtf8());
    buffer.open(QIODevice::ReadOnly);
    QXmlStreamReader reader(&buffer);
    for (int depth = 0; !reader.atEnd();) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement:
            if (++depth > MaxDepth)
                return false;
            break;
        case QXmlStreamReader::EndElement: --depth; break;
        case QXmlStreamReader::DTD: return false; // may add attributes to every tag
        default: break;
        }
    }
    return !reader.hasError();
}

} // namespace Kesh::XML
