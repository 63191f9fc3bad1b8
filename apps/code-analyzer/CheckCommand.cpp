#include "Application/FileIO.h"
#include "Application/FilePath.h"
#include "Base/Exception.h"
#include "Commands.h"
#include "Paths.h"
#include "Progress.h"
#include "Report.h"
#include "Session.h"
#include "SyntaxParser/SPDocument.h"

#include <QCoreApplication>
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

std::vector<SRecord> CheckInput(CSession& session, const SInput& input)
{
    Host::CDocument& document = OpenInput(session, input);
    session.Plugin().RunCommand("CCACheckNowCmd");
    // The results travel as posted events; closing the document takes them away again.
    QCoreApplication::sendPostedEvents();
    std::vector<SRecord> records = session.RecordsOf(document.GetPath(), input.shown);
    session.Application().Documents().Close(document);
    QCoreApplication::sendPostedEvents();
    return records;
}

} // namespace

int RunCheck(const SOptions& options)
{
    CSession session;
    CReport report(options, stdout);
    bool failed = false;
    const TPathError onError = [&](const std::wstring& path, const std::string& reason) {
        PrintProblem(path, reason);
        failed = true;
    };
    const std::vector<SInput> inputs = CollectInputs(options, onError);
    CProgress progress(!options.quiet);
    std::size_t checked = 0;
    for (const SInput& input : inputs) {
        progress.Show(checked, inputs.size(), input.shown);
        try {
            std::vector<SRecord> records = CheckInput(session, input);
            if (!records.empty())
                progress.Clear();
            report.Add(std::move(records));
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
