#include "Application/FileIO.h"
#include "Application/FilePath.h"
#include "Base/Exception.h"
#include "BaselineUse.h"
#include "Commands.h"
#include "ConfigurationChoice.h"
#include "Findings/Ignores.h"
#include "Paths.h"
#include "Progress.h"
#include "Report/Report.h"
#include "Session.h"
#include "SyntaxParser/SPDocument.h"
#include "SyntaxParser/SourceText.h"

#include <QCoreApplication>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <optional>
#include <unistd.h>

namespace Kesh::CommandLine {

namespace {

std::string ReadStandardInput()
{
    std::string bytes;
    char block[1 << 16];
    for (;;) {
        const ssize_t count = ::read(STDIN_FILENO, block, sizeof block);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            throw Base::CWorkError(L"standard input cannot be read", __LINE__,
                                   "apps/code-analyzer/CheckCommand");
        if (count == 0)
            return bytes;
        bytes.append(block, static_cast<std::size_t>(count));
        if (bytes.size() > Host::MaxFileBytes)
            throw Base::CWorkError(L"standard input is too long", __LINE__,
                                   "apps/code-analyzer/CheckCommand");
    }
}

/// Whatever the user names is checked; without a known ending it is taken for PHP.
std::wstring FactoryOf(const SInput& input)
{
    const std::wstring factory = SyntaxParser::FactoryForPath(input.absolute);
    return factory.empty() ? L"PHPSPDocFactory" : factory;
}

std::optional<Findings::SFileFindings> CheckInput(CSession& session, const SInput& input)
{
    const std::string bytes = input.standardInput ? ReadStandardInput() : Host::ReadFileBytes(input.absolute);
    if (SyntaxParser::LooksBinary(bytes))
        return {};
    Host::CDocumentService& documents = session.Application().Documents();
    Host::CDocument& document = documents.OpenBytes(input.absolute, bytes, FactoryOf(input));
    session.Plugin().RunCommand("CCACheckNowCmd");
    // The results travel as posted events; closing the document takes them away again.
    QCoreApplication::sendPostedEvents();
    const bool mayIgnore =
        SyntaxParser::Utf16OrderOf(bytes) || Findings::CIgnores::MayHave(std::string_view(bytes));
    Findings::SFileFindings findings = session.FindingsOf(
        document.GetPath(), {input.shown, document.GetPath(), FactoryOf(input),
                             [&] { return document.GetBuffer()->GetText(L"\n"); }, mayIgnore});
    documents.Close(document);
    QCoreApplication::sendPostedEvents();
    return findings;
}

} // namespace

int RunCheck(const SOptions& options)
{
    const Configuration::SConfiguration configuration = ConfigurationFor(options);
    CSession session(configuration);
    CReport report(options);
    CBaselineUse baseline(options, configuration);
    bool failed = false;
    const TPathError onError = [&](const std::wstring& path, const std::string& reason) {
        PrintProblem(path, reason);
        failed = true;
    };
    std::vector<SInput> inputs = CollectInputs(options, configuration, onError);
    std::sort(inputs.begin(), inputs.end(),
              [](const SInput& a, const SInput& b) { return a.shown < b.shown; });
    CProgress progress(!options.quiet);
    std::size_t checked = 0;
    for (const SInput& input : inputs) {
        progress.Show(checked, inputs.size(), input.shown);
        try {
            std::optional<Findings::SFileFindings> findings = CheckInput(session, input);
            if (!findings) {
                progress.Clear();
                PrintProblem(input.shown, "skipped: a binary file");
                continue;
            }
            baseline.Apply(*findings);
            if (!findings->findings.empty())
                progress.Clear();
            report.Add(*findings);
            ++checked;
        } catch (const Base::CWorkError& fault) {
            progress.Clear();
            onError(input.shown, fault.what());
        }
    }
    progress.Clear();
    report.Finish(checked);
    baseline.Finish();
    return failed ? ExitFailed : report.HasErrors() ? ExitErrors : ExitClean;
}

} // namespace Kesh::CommandLine
