#include "Base/CommonString.h"
#include "Commands.h"
#include "Files/FilePath.h"
#include "Findings/ErrorPage.h"
#include "Kesh/CodeAnalyzer/Catalog.h"
#include "Report/Printable.h"

#include <QStringList>
#include <cstdio>
#include <unistd.h>

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

/// Of those that have a page.
std::string AllCodes()
{
    std::string codes;
    for (const CodeAnalyzer::SDiagnosticKind& kind : CodeAnalyzer::Catalog)
        if (!Findings::ErrorPage(kind.code).isEmpty())
            codes += (codes.empty() ? "" : ", ") + std::to_string(kind.code);
    return codes;
}

} // namespace

int RunExplain(const SOptions& options)
{
    const std::string name =
        Base::CCommonString::ToUtf8(Base::CCommonString::Trim(Base::CCommonString::FromUtf8(options.code)));
    const auto code = Findings::CodeNamed(name);
    const QString page = code ? Findings::ErrorPage(*code) : QString();
    if (page.isEmpty()) {
        const std::string_view nearest = Findings::NearestIdentifier(name);
        std::fprintf(stderr, "code-analyzer: there is no error \"%s\"",
                     Printable(Host::PathFromBytes(name)).c_str());
        if (!nearest.empty())
            std::fprintf(stderr, "; did you mean %s?\n", std::string(nearest).c_str());
        else
            std::fprintf(stderr, "; the errors are %s\n", AllCodes().c_str());
        return ExitFailed;
    }
    Print(page, CodeAnalyzer::FindKind(*code)->identifier, WantsColor(EColor::Auto, stdout));
    return ExitClean;
}

} // namespace Kesh::CommandLine
