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

struct SPage
{
    QString text;
    int line = 0; ///< on which it begins, counted from 1
};

const std::map<std::int32_t, SPage>& Pages()
{
    static const std::map<std::int32_t, SPage> pages = [] {
        std::map<std::int32_t, SPage> found;
        QFile file(QStringLiteral(":/documents/errors.md"));
        const QString whole = file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
        SPage* page = nullptr;
        int line = 0;
        for (const QString& text : whole.split(u'\n')) {
            ++line;
            if (text.startsWith(QStringLiteral("## ")))
                page = &(found[text.mid(3).toInt()] = {{}, line});
            if (page)
                page->text += text + u'\n';
        }
        return found;
    }();
    return pages;
}

} // namespace

QString ErrorPage(std::int32_t code)
{
    const auto page = Pages().find(code);
    return page == Pages().end() ? QString() : page->second.text.trimmed();
}

int ErrorPageLine(std::int32_t code)
{
    const auto page = Pages().find(code);
    return page == Pages().end() ? 0 : page->second.line;
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
