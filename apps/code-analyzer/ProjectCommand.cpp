#include "Application/ParserComponent.h"
#include "Base/CommonString.h"
#include "Base/Exception.h"
#include "BaselineUse.h"
#include "Commands.h"
#include "Files/FileIO.h"
#include "Files/FilePath.h"
#include "Findings/CheckedFiles.h"
#include "Paths.h"
#include "Progress.h"
#include "ProjectManager/ProjectManager.h"
#include "Report/Report.h"
#include "RulesChoice.h"
#include "Session.h"
#include "SyntaxParser/SPDocument.h"
#include "SyntaxParser/SourceText.h"

#include <QCoreApplication>
#include <QTimer>
#include <atomic>
#include <map>

namespace Kesh::CommandLine {

namespace {

/// The files that `check` would take, so that both list the same.
std::vector<std::wstring> FilesOf(const std::wstring& folder, const TProjectRules& rules,
                                  const TPathError& onError,
                                  const std::function<void(const std::wstring&)>& onLeadsOut)
{
    ProjectManager::SFileQuery query = Findings::CheckedFiles(folder, rules);
    query.onError = onError;
    query.onLeadsOut = onLeadsOut;
    return ProjectManager::FindFiles(folder, query);
}

} // namespace

int RunProject(const SOptions& options)
{
    const TProjectRules rules = RulesFor(options);
    CBaselineUse baseline(options, rules);
    CSession session;
    session.UseRules(rules, rules->For(FirstPlace(options))->settings);
    session.Plugin().ProjectCheck().SetComplete(true);
    session.Plugin().ProjectCheck().SetThorough(true);
    Host::CApplication& application = session.Application();
    ProjectManager::CProjectManager& project = application.Project();
    const std::wstring given = Host::PathFromBytes(options.paths.front());
    const std::wstring folder = Host::AbsolutePath(given);
    bool failed = false;
    const auto fail = [&](const std::string& problem) {
        PrintProblem(given, problem);
        failed = true;
    };
    const std::wstring prefix = given.ends_with(L'/') ? given : given + L'/';
    const auto shownPath = [&](const std::wstring& path) {
        return path == folder ? given : prefix + path.substr(folder.size() + (folder == L"/" ? 0 : 1));
    };
    bool unread = false; // some paths, or unchecked; the others are checked all the same
    const TPathError onError = [&](const std::wstring& path, const std::string& reason) {
        PrintProblem(shownPath(path), reason);
        failed = failed || path == folder;
        unread = true;
    };
    project.GetDataErrorSignal().connect([&](const std::wstring& reason) {
        fail("the errors could not be kept: " + Base::CCommonString::ToUtf8(reason));
    });
    application.Threads().GetStartErrorSignal().connect(
        [&] { fail("the check could not be started: the system has no thread to give"); });

    std::map<std::wstring, std::wstring> failures; ///< of checks, by file
    session.Plugin().Errors().GetFailedSignal().connect(
        [&](const std::wstring& file, const std::wstring& reason) { failures[file] = reason; });

    std::atomic<std::size_t> asked{0};
    application.Parser().SetFileHook([&](const std::wstring&) { ++asked; });
    const std::vector<std::wstring> files =
        FilesOf(folder, rules, onError, [&](const std::wstring& path) { PrintLeadsOut(shownPath(path)); });
    if (failed)
        return ExitFailed;
    for (const std::wstring& file : files)
        baseline.Expect(file);
    application.OpenProject(folder, files);

    CProgress progress(!options.quiet);
    QTimer ticks; // wakes the loop so that the bar moves
    ticks.start(100);
    while (application.Threads().IsRunning()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        progress.Show(std::min(asked.load(), files.size()), files.size(), given);
    }
    QCoreApplication::sendPostedEvents();
    progress.Clear();
    if (failed) // nothing has been checked, and what is kept stays as it is
        return ExitFailed;

    CReport report(options);
    std::size_t checked = 0;
    std::string bytes;
    for (const std::wstring& file : files) {
        if (const auto failure = failures.find(file); failure != failures.end()) {
            onError(file, "the check failed: " + Base::CCommonString::ToUtf8(failure->second));
            continue;
        }
        try {
            bytes = Host::ReadFileBytes(file);
        } catch (const Base::CWorkError& fault) {
            onError(file, fault.what());
            continue;
        }
        if (SyntaxParser::HoldsNoSource(bytes)) {
            PrintProblem(shownPath(file), "skipped: a binary file");
            continue;
        }
        Findings::SFileFindings findings =
            session.FindingsOf({shownPath(file), file, [&] { return SyntaxParser::DecodeSource(bytes); }});
        baseline.Apply(findings);
        report.Add(findings);
        ++checked;
    }
    report.Finish(checked);
    project.Close();
    baseline.Finish();
    return failed || unread ? ExitFailed : report.HasErrors() ? ExitErrors : ExitClean;
}

} // namespace Kesh::CommandLine
