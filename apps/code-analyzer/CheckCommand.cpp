#include "Application/FileIO.h"
#include "Application/FilePath.h"
#include "Base/Exception.h"
#include "Commands.h"
#include "Paths.h"
#include "Progress.h"
#include "Report/Report.h"
#include "Session.h"
#include "SyntaxParser/SPDocument.h"

#include <QCoreApplication>
#include <algorithm>
#include <cerrno>
#include <cstring>
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

Host::CDocument& OpenInput(CSession& session, const SInput& input)
{
    // Whatever the user names is checked; without a known ending it is taken for PHP.
    const std::wstring factory =
        SyntaxParser::FactoryForPath(input.absolute).empty() ? L"PHPSPDocFactory" : std::wstring();
    Host::CDocumentService& documents = session.Application().Documents();
    return input.standardInput ? documents.OpenBytes(input.absolute, ReadStandardInput(), factory)
                               : documents.OpenFile(input.absolute, factory);
}

Findings::SFileFindings CheckInput(CSession& session, const SInput& input)
{
    Host::CDocument& document = OpenInput(session, input);
    session.Plugin().RunCommand("CCACheckNowCmd");
    // The results travel as posted events; closing the document takes them away again.
    QCoreApplication::sendPostedEvents();
    Findings::SFileFindings findings = session.FindingsOf(
        document.GetPath(), {input.shown, [&] { return document.GetBuffer()->GetText(L"\n"); }});
    session.Application().Documents().Close(document);
    QCoreApplication::sendPostedEvents();
    return findings;
}

} // namespace

int RunCheck(const SOptions& options)
{
    CSession session;
    CReport report(options);
    bool failed = false;
    const TPathError onError = [&](const std::wstring& path, const std::string& reason) {
        PrintProblem(path, reason);
        failed = true;
    };
    std::vector<SInput> inputs = CollectInputs(options, onError);
    std::sort(inputs.begin(), inputs.end(),
              [](const SInput& a, const SInput& b) { return a.shown < b.shown; });
    CProgress progress(!options.quiet);
    std::size_t checked = 0;
    for (const SInput& input : inputs) {
        progress.Show(checked, inputs.size(), input.shown);
        try {
            const Findings::SFileFindings findings = CheckInput(session, input);
            if (!findings.findings.empty())
                progress.Clear();
            report.Add(findings);
            ++checked;
        } catch (const Base::CWorkError& fault) {
            progress.Clear();
            onError(input.shown, fault.what());
        }
    }
    progress.Clear();
    report.Finish(checked);
    return failed ? ExitFailed : report.HasErrors() ? ExitErrors : ExitClean;
}

} // namespace Kesh::CommandLine
