#include "Findings/ErrorPage.h"

#include "Base/CommonString.h"
#include "Base/EditDistance.h"
#include "Kesh/CodeAnalyzer/Catalog.h"
#include "Kesh/LangSupport/LangSupport.h"

#include <QFile>
#include <charconv>
#include <map>
#include <mutex>
#include <string>

namespace Kesh::Findings {

using CodeAnalyzer::SDiagnosticKind;

namespace {

struct SPage
{
    QString text;
    int line = 0; ///< on which it begins, counted from 1
};

using TPages = std::map<std::int32_t, SPage>;

TPages ReadPages(const QString& name)
{
    TPages found;
    QFile file(QStringLiteral(":/documents/") + name);
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
}

/// Read when a page is asked for, not at the start.
const TPages& PagesOf(const std::string& name)
{
    static std::mutex mutex;
    static std::map<std::string, TPages> known;
    const std::lock_guard lock(mutex);
    const auto place = known.find(name);
    return (place != known.end() ? place : known.emplace(name, ReadPages(QString::fromStdString(name))).first)
        ->second;
}

constexpr const char* EnglishPages = "errors.md";

/// Null when there is none.
const SPage* FindPage(const std::string& name, std::int32_t code)
{
    const TPages& pages = PagesOf(name);
    const auto page = pages.find(code);
    return page == pages.end() ? nullptr : &page->second;
}

} // namespace

QString ErrorPage(std::int32_t code)
{
    // A language's texts name its list.
    const std::wstring name = LangSupport::CLangSupport::LoadStr(EnglishPages);
    const SPage* page = FindPage(Base::CCommonString::ToUtf8(name), code);
    if (!page)
        page = FindPage(EnglishPages, code);
    return page ? page->text.trimmed() : QString();
}

int ErrorPageLine(std::int32_t code)
{
    const SPage* page = FindPage(EnglishPages, code);
    return page ? page->line : 0;
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
