#include "Components/CASavedErrors.h"

#include "Base/CommonString.h"
#include "XML/XmlXPathParser.h"

#include <QString>
#include <QStringList>
#include <algorithm>
#include <iterator>
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
    if (text.empty())
        return {}; // nothing saved yet: spares the threads that a first query starts
    XML::CXmlXPathParser root(text);
    if (root.GetString(L"/errors/@version") != Version)
        return {};
    // A few questions for all files together: a query costs more than a file of errors.
    const std::vector<std::wstring> names = root.GetStrings(L"/errors/errfile/string(@name)");
    const std::vector<std::wstring> counts = root.GetStrings(L"/errors/errfile/string(count(error))");
    const std::vector<std::wstring> values = root.GetStrings(L"/errors/errfile/error/string(@val)");
    std::vector<SSavedFileErrors> files;
    std::size_t first = 0;
    for (std::size_t i = 0; i < std::min(names.size(), counts.size()); ++i) {
        const std::size_t end = std::min(values.size(), first + std::stoul(counts[i]));
        std::wstring name = FileName(names[i]);
        if (lowerFiles.contains(Base::CCommonString::LowerCaseFast(name))) {
            SSavedFileErrors& file = files.emplace_back();
            file.file = std::move(name);
            std::transform(values.begin() + first, values.begin() + end, std::back_inserter(file.errors),
                           ReadError);
        }
        first = end;
    }
    return files;
}

} // namespace Kesh::CodeAnalyzer
