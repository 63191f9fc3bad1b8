#include "Components/CASavedErrors.h"

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

std::wstring Attribute(const QXmlStreamReader& reader, const char* name)
{
    return reader.attributes().value(QString(), QLatin1String(name)).toString().toStdWString();
}

/// Without the line feed that may stand at either end.
std::wstring WithoutLineFeeds(std::wstring text)
{
    if (text.ends_with(L'\n'))
        text.pop_back();
    if (text.starts_with(L'\n'))
        text.erase(0, 1);
    return text;
}

/// White space of any kind is a blank in an attribute, unless it was written as a reference.
std::wstring FileName(std::wstring attribute)
{
    std::replace_if(
        attribute.begin(), attribute.end(), [](wchar_t c) { return c == L'\t' || c == L'\n' || c == L'\r'; },
        L' ');
    return attribute;
}

} // namespace

std::wstring WriteSavedErrors(const std::vector<SSavedFileErrors>& files)
{
    std::wstring text = std::wstring(L"<errors version=\"") + Version + L"\">\n";
    for (const auto& [file, errors] : files) {
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
    if (!FindElement(reader, "errors") || WithoutLineFeeds(Attribute(reader, "version")) != Version)
        return {};
    std::vector<SSavedFileErrors> files;
    while (FindElement(reader, "errfile")) {
        SSavedFileErrors file{FileName(Attribute(reader, "name")), {}};
        while (FindElement(reader, "error")) {
            file.errors.push_back(ReadError(Attribute(reader, "val")));
            reader.skipCurrentElement();
        }
        if (lowerFiles.contains(Base::CCommonString::LowerCaseFast(file.file)))
            files.push_back(std::move(file));
    }
    return files;
}

} // namespace Kesh::CodeAnalyzer
