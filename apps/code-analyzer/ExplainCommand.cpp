#include "Base/CommonString.h"
#include "Commands.h"
#include "Files/FilePath.h"
#include "Findings/ErrorPage.h"
#include "Kesh/CodeAnalyzer/Catalog.h"
#include "Report/Printable.h"

#include <QStringList>
#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>
#include <vector>

namespace Kesh::CommandLine {

namespace {

/// Markdown as a terminal shows it.
void Print(const QString& page, const char* identifier, bool colored)
{
    const QString bold = colored ? "\x1B[1m" : "";
    const QString plain = colored ? "\x1B[0m" : "";
    bool code = false;
    QString text;
    for (const QString& line : page.split('\n')) {
        if (line.startsWith("```"))
            code = !code;
        else if (code)
            text += "    " + line + '\n';
        else if (line.startsWith("## "))
            text += bold + "Error " + line.mid(3) + plain + " (" + identifier + ")\n";
        else
            text += QString(line).remove("**") + '\n';
    }
    const std::string bytes = text.trimmed().toStdString() + '\n';
    std::fwrite(bytes.data(), 1, bytes.size(), stdout);
}

/// Of those that have a page, the nearest to a number, with their identifiers; else what else there is to
/// give.
std::string NearestTo(const std::string& name)
{
    if (const std::string_view nearest = Findings::NearestIdentifier(name); !nearest.empty())
        return "did you mean " + std::string(nearest) + "?";
    std::int32_t wanted = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), wanted);
    if (error != std::errc() || end != name.data() + name.size())
        return "\"code-analyzer explain\" lists all";
    constexpr std::size_t Count = 3;
    std::vector<const CodeAnalyzer::SDiagnosticKind*> kinds;
    for (const CodeAnalyzer::SDiagnosticKind& kind : CodeAnalyzer::Catalog)
        if (!Findings::ErrorPage(kind.code).isEmpty())
            kinds.push_back(&kind);
    std::ranges::stable_sort(kinds, {}, [wanted](const CodeAnalyzer::SDiagnosticKind* kind) {
        return std::abs(std::int64_t{kind->code} - wanted);
    });
    std::string nearest;
    for (std::size_t i = 0; i < std::min(Count, kinds.size()); ++i)
        nearest += (i == 0 ? "the nearest are " : ", ") + std::to_string(kinds[i]->code) + " (" +
                   kinds[i]->identifier + ')';
    return nearest;
}

void List()
{
    for (const CodeAnalyzer::SDiagnosticKind& kind : CodeAnalyzer::Catalog)
        if (!Findings::ErrorPage(kind.code).isEmpty())
            std::printf("%4d  %-36s  %s\n", static_cast<int>(kind.code), kind.identifier, kind.title);
}

} // namespace

int RunExplain(const SOptions& options)
{
    if (options.code.empty()) {
        List();
        return ExitClean;
    }
    const std::string name =
        Base::CCommonString::ToUtf8(Base::CCommonString::Trim(Base::CCommonString::FromUtf8(options.code)));
    const auto code = Findings::CodeNamed(name);
    const QString page = code ? Findings::ErrorPage(*code) : QString();
    if (page.isEmpty()) {
        std::fprintf(stderr, "code-analyzer: there is no error \"%s\"; %s\n",
                     Printable(Host::PathFromBytes(name)).c_str(), NearestTo(name).c_str());
        return ExitFailed;
    }
    Print(page, CodeAnalyzer::FindKind(*code)->identifier, WantsColor(EColor::Auto, stdout));
    return ExitClean;
}

} // namespace Kesh::CommandLine
