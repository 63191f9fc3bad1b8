#include "Findings/ErrorPage.h"

#include "Base/EditDistance.h"
#include "Kesh/CodeAnalyzer/Catalog.h"

#include <QFile>
#include <charconv>
#include <map>
#include <string>

namespace Kesh::Findings {

using CodeAnalyzer::SDiagnosticKind;

namespace {

const QString& Pages()
{
    static const QString pages = [] {
        QFile file(QStringLiteral(":/documents/errors.md"));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }();
    return pages;
}

/// -1: there is no page.
int BeginOf(std::int32_t code)
{
    return Pages().indexOf(QStringLiteral("\n## %1\n").arg(code));
}

} // namespace

QString ErrorPage(std::int32_t code)
{
    const QString& pages = Pages();
    const int begin = BeginOf(code);
    if (begin < 0)
        return {};
    const int end = pages.indexOf(QStringLiteral("\n## "), begin + 1);
    return pages.mid(begin, end < 0 ? -1 : end - begin).trimmed();
}

int ErrorPageLine(std::int32_t code)
{
    // Asked for each diagnostic.
    static const std::map<std::int32_t, int> lines = [] {
        std::map<std::int32_t, int> found;
        int line = 0;
        for (const QStringView text : QStringView(Pages()).split(u'\n')) {
            ++line;
            if (text.startsWith(QStringLiteral("## ")))
                found[text.mid(3).toInt()] = line;
        }
        return found;
    }();
    const auto place = lines.find(code);
    return place == lines.end() ? 0 : place->second;
}

std::optional<std::int32_t> CodeNamed(std::string_view name)
{
    std::int32_t code = 0;
    const auto [end, fault] = std::from_chars(name.data(), name.data() + name.size(), code);
    if (fault == std::errc() && end == name.data() + name.size() && CodeAnalyzer::FindKind(code))
        return code;
    for (const SDiagnosticKind& kind : CodeAnalyzer::Catalog)
        if (name == kind.identifier)
            return kind.code;
    return {};
}

std::string_view NearestIdentifier(std::string_view name)
{
    const std::wstring wanted(name.begin(), name.end());
    Base::CNearestText nearest(wanted);
    std::vector<std::wstring> identifiers;
    for (const SDiagnosticKind& kind : CodeAnalyzer::Catalog)
        identifiers.emplace_back(kind.identifier, kind.identifier + std::string_view(kind.identifier).size());
    for (const std::wstring& identifier : identifiers)
        nearest.Offer(identifier);
    for (std::size_t i = 0; i < identifiers.size(); ++i)
        if (nearest.Get() == identifiers[i])
            return CodeAnalyzer::Catalog[i].identifier;
    return {};
}

} // namespace Kesh::Findings
