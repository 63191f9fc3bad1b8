#include "Application/FileIO.h"
#include "Application/FilePath.h"
#include "Base/CommonString.h"
#include "Base/Exception.h"
#include "Commands.h"
#include "ConfigurationChoice.h"
#include "Progress.h"
#include "ProjectManager/ProjectManager.h"
#include "Report/Report.h"
#include "Session.h"
#include "SyntaxParser/ParserComponent.h"
#include "SyntaxParser/SPDocument.h"
#include "SyntaxParser/SourceText.h"

#include <QCoreApplication>
#include <QTimer>
#include <atomic>

namespace Kesh::CommandLine {

namespace {

/// The file's text as the check has seen it; empty when the file has gone meanwhile.
std::wstring TextOf(const std::wstring& file)
{
    try {
        return SyntaxParser::DecodeSource(Host::ReadFileBytes(file));
    } catch (const Base::CWorkError&) {
        return {};
    }
}

} // namespace

int RunProject(const SOptions& options)
{
    const Configuration::SConfiguration configuration = ConfigurationFor(options);
    CSession session(configuration);
    Host::CApplication& application = session.Application();
    ProjectManager::CProjectManager& project = application.Project();
    const std::wstring given = Host::PathFromBytes(options.paths.front());
    const std::wstring folder = Host::AbsolutePath(given);
    bool failed = false;
    const auto fail = [&](const std::string& problem) {
        PrintProblem(given, problem);
        failed = true;
    };
    project.GetDataErrorSignal().connect([&](const std::wstring& reason) {
        fail("the errors could not be kept: " + Base::CCommonString::ToUtf8(reason));
    });
    application.Threads().GetStartErrorSignal().connect(
        [&] { fail("the check could not be started: the system has no thread to give"); });

    std::atomic<std::size_t> asked{0};
    application.Parser().SetFileHook([&](const std::wstring&) { ++asked; });
    try {
        application.OpenProject(folder);
    } catch (const Base::CWorkError& fault) {
        PrintProblem(given, fault.what());
        return ExitFailed;
    }
    ProjectManager::IProjectManager& manager = *project.GetProjectManager();
    const std::vector<std::wstring> files = manager.GetFiles();

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
    const std::wstring prefix = given.ends_with(L'/') ? given : given + L'/';
    for (const std::wstring& file : files) {
        if (configuration.Excludes(file))
            continue;
        const std::wstring shown = prefix + file.substr(folder.size() + (folder == L"/" ? 0 : 1));
        report.Add(session.FindingsOf(
            file, {shown, file, SyntaxParser::FactoryForPath(file), [&] { return TextOf(file); }}));
    }
    report.Finish(files.size());
    project.Close();
    return failed ? ExitFailed : report.HasErrors() ? ExitErrors : ExitClean;
}

} // namespace Kesh::CommandLine
