#include "Components/CASavedErrorsText.h"

#include "Base/CommonString.h"
#include "XML/XmlLimits.h"

#include <QString>
#include <QStringList>
#include <QXmlStreamReader>
#include <algorithm>
#include <utility>

namespace Kesh::CodeAnalyzer {

namespace {

constexpr const wchar_t* Version = L"5.3";

void AppendNumber(std::wstring& text, std::int64_t number)
{
    text += std::to_wstring(static_cast<std::int32_t>(number));
    text += L';';
}

SCAError ReadError(const std::wstring& value)
{
    const QStringList pieces = QString::fromStdWString(value).split(QLatin1Char(';'));
    const auto number = [&](int i) { return i < pieces.size() ? pieces[i].toInt() : 0; };
    return {{{number(0), number(1)}, {number(2), number(3)}}, number(4), number(5)};
}

/// The next of the elements with this name inside the one that is being read; false at its end.
bool FindElement(QXmlStreamReader& reader, const char* name)
{
    while (reader.readNextStartElement()) {
        if (reader.namespaceUri().isEmpty() && reader.name() == QLatin1String(name))
            return true;
        reader.skipCurrentElement();
    }
    return false;
}

/// What an XPath query for the value of an attribute gives as one text, see CXmlXPathParser::GetString().
std::wstring QueriedText(const QString& value)
{
    if (std::all_of(value.begin(), value.end(), [](QChar c) { return c.isSpace(); }))
        return {};
    QString text;
    text.reserve(value.size());
    for (const QChar c : value) {
        if (c == QLatin1Char('&'))
            text += QLatin1String("&amp;");
        else if (c == QLatin1Char('<'))
            text += QLatin1String("&lt;");
        else if (c == QLatin1Char('>'))
            text += QLatin1String("&gt;");
        else
            text += c;
    }
    // It comes as bytes, where a byte order mark is none of the text; its own line feed at the end is gone.
    if (text.startsWith(QChar(QChar::ByteOrderMark)))
        text.remove(0, 1);
    if (text.startsWith(QLatin1Char('\n')))
        text.remove(0, 1);
    return text.toStdWString();
}

QString Attribute(const QXmlStreamReader& reader, const char* name)
{
    return reader.attributes().value(QString(), QLatin1String(name)).toString();
}

/// The value of an attribute in an element that has been taken out as a text of its own: in it, white space
/// that was written as a reference stands for itself, and is read as blanks.
QString TakenOut(QString value)
{
    value.replace(QLatin1String("\r\n"), QLatin1String(" "));
    for (QChar& c : value)
        if (c == QLatin1Char('\t') || c == QLatin1Char('\n') || c == QLatin1Char('\r'))
            c = QLatin1Char(' ');
    return value;
}

} // namespace

std::wstring WriteSavedErrors(const std::vector<SSavedFileErrors>& files)
{
    std::wstring text = std::wstring(L"<errors version=\"") + Version + L"\">\n";
    for (const auto& [file, errors, details] : files) {
        text += L"<errfile name=\"" + file + L"\">\n";
        for (const auto& [pos, code, type] : errors) {
            text += L"\t<error val=\"";
            for (const std::int64_t number : {pos.start.x, pos.start.y, pos.end.x, pos.end.y})
                AppendNumber(text, number);
            AppendNumber(text, code);
            AppendNumber(text, type);
            text += L"\"/>\n";
        }
        text += L"</errfile>\n";
    }
    return text + L"</errors>\n";
}

std::vector<SSavedFileErrors> ReadSavedErrors(const std::wstring& text,
                                              const std::set<std::wstring>& lowerFiles)
{
    const QString xml = QString::fromStdWString(text);
    if (text.empty() || !XML::IsHarmless(xml))
        return {};
    QXmlStreamReader reader(xml.toUtf8());
    if (!FindElement(reader, "errors") || QueriedText(Attribute(reader, "version")) != Version)
        return {};
    std::vector<SSavedFileErrors> files;
    while (FindElement(reader, "errfile")) {
        SSavedFileErrors file{QueriedText(TakenOut(Attribute(reader, "name"))), {}};
        while (FindElement(reader, "error")) {
            file.errors.push_back(ReadError(QueriedText(TakenOut(Attribute(reader, "val")))));
            reader.skipCurrentElement();
        }
        if (lowerFiles.contains(Base::CCommonString::LowerCaseFast(file.file)))
            files.push_back(std::move(file));
    }
    return files;
}

} // namespace Kesh::CodeAnalyzer
