#include "Components/CASavedErrors.h"

#include "Base/CommonString.h"
#include "XML/XmlXPathParser.h"

#include <QString>
#include <QVector>

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
    const QString text = QString::fromStdWString(value); // what the pieces refer to
    const QVector<QStringRef> pieces = text.splitRef(QLatin1Char(';'));
    const auto number = [&](int i) { return i < pieces.size() ? pieces[i].toInt() : 0; };
    return {{{number(0), number(1)}, {number(2), number(3)}}, number(4), number(5)};
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
    if (text.empty())
        return {}; // nothing saved yet: spares the threads that a first query starts
    XML::CXmlXPathParser root(text);
    if (root.GetString(L"/errors/@version") != Version)
        return {};
    std::vector<SSavedFileErrors> files;
    for (const std::wstring& fileElement : root.GetElements(L"/errors/errfile")) {
        XML::CXmlXPathParser element(fileElement);
        SSavedFileErrors& file = files.emplace_back();
        file.file = element.GetString(L"/errfile/@name");
        if (!lowerFiles.contains(Base::CCommonString::LowerCaseFast(file.file))) {
            files.pop_back();
            continue;
        }
        // One question for all errors of a file: a query costs more than a file of errors.
        for (const std::wstring& value : element.GetStrings(L"/errfile/error/string(@val)"))
            file.errors.push_back(ReadError(value));
    }
    return files;
}

} // namespace Kesh::CodeAnalyzer
