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
#include <utility>

namespace Kesh::CommandLine {

namespace {

/// A project that is opened, checked and closed again.
class CProjectRun
{
public:
    CProjectRun(const SOptions& options, TProjectRules rules)
        : m_options(options),
          m_rules(std::move(rules)),
          m_baseline(options, m_rules),
          m_given(Host::PathFromBytes(options.paths.front())),
          m_folder(Host::AbsolutePath(m_given))
    {
        m_session.UseRules(m_rules);
        m_session.Plugin().ProjectCheck().SetComplete(true);
        m_session.Plugin().ProjectCheck().SetThorough(true);
        FollowFaults();
    }

    int Run()
    {
        m_files = FindFiles();
        if (!m_failed)
            Check();
        if (m_failed) // nothing has been checked, and what is kept stays as it is
            return ExitFailed;
        CReport report(m_options);
        report.Finish(AddFindings(report));
        m_session.Application().Project().Close();
        m_baseline.Finish();
        return m_failed || m_unread ? ExitFailed : report.HasErrors() ? ExitErrors : ExitClean;
    }

private:
    std::wstring Shown(const std::wstring& path) const
    {
        if (path == m_folder)
            return m_given;
        const std::wstring prefix = m_given.ends_with(L'/') ? m_given : m_given + L'/';
        return prefix + path.substr(m_folder.size() + (m_folder == L"/" ? 0 : 1));
    }

    void Fail(const std::string& problem)
    {
        PrintProblem(m_given, problem);
        m_failed = true;
    }

    void OnError(const std::wstring& path, const std::string& reason)
    {
        PrintProblem(Shown(path), reason);
        m_failed = m_failed || path == m_folder;
        m_unread = true;
    }

    void FollowFaults()
    {
        Host::CApplication& application = m_session.Application();
        application.Project().GetDataErrorSignal().connect([this](const std::wstring& reason) {
            Fail("the errors could not be kept: " + Base::CCommonString::ToUtf8(reason));
        });
        application.Threads().GetStartErrorSignal().connect(
            [this] { Fail("the check could not be started: the system has no thread to give"); });
        m_session.Plugin().Errors().GetFailedSignal().connect(
            [this](const std::wstring& file, const std::wstring& reason) { m_failures[file] = reason; });
        application.Parser().SetFileHook([this](const std::wstring&) { ++m_asked; });
    }

    /// The files that `check` would take, so that both list the same.
    std::vector<std::wstring> FindFiles()
    {
        ProjectManager::SFileQuery query = Findings::CheckedFiles(m_folder, m_rules);
        query.onError = [this](const std::wstring& path, const std::string& reason) {
            OnError(path, reason);
        };
        query.onLeadsOut = [this](const std::wstring& path) { PrintLeadsOut(Shown(path)); };
        return ProjectManager::FindFiles(m_folder, query);
    }

    void Check()
    {
        for (const std::wstring& file : m_files)
            m_baseline.Expect(file);
        Host::CApplication& application = m_session.Application();
        application.OpenProject(m_folder, m_files);
        CProgress progress(!m_options.quiet);
        QTimer ticks; // wakes the loop so that the bar moves
        ticks.start(100);
        while (application.Threads().IsRunning()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            progress.Show(std::min(m_asked.load(), m_files.size()), m_files.size(), m_given);
        }
        QCoreApplication::sendPostedEvents();
        progress.Clear();
    }

    /// How many files have been checked.
    std::size_t AddFindings(CReport& report)
    {
        std::size_t checked = 0;
        for (const std::wstring& file : m_files) {
            if (const auto failure = m_failures.find(file); failure != m_failures.end()) {
                OnError(file, "the check failed: " + Base::CCommonString::ToUtf8(failure->second));
                continue;
            }
            std::string bytes;
            try {
                bytes = Host::ReadFileBytes(file);
            } catch (const Base::CWorkError& fault) {
                OnError(file, fault.what());
                continue;
            }
            checked += AddFindings(report, file, bytes);
        }
        return checked;
    }

    bool AddFindings(CReport& report, const std::wstring& file, const std::string& bytes)
    {
        if (SyntaxParser::HoldsNoSource(bytes)) {
            PrintProblem(Shown(file), "skipped: a binary file");
            return false;
        }
        std::wstring text;
        const auto decode = [&] { return std::wstring_view(text = SyntaxParser::DecodeSource(bytes)); };
        Findings::SFileFindings findings = m_session.FindingsOf({Shown(file), file, decode});
        m_baseline.Apply(findings);
        report.Add(findings);
        return true;
    }

    const SOptions& m_options;
    TProjectRules m_rules;
    CBaselineUse m_baseline;
    std::wstring m_given; ///< the folder as the user names it
    std::wstring m_folder;
    std::vector<std::wstring> m_files;
    std::map<std::wstring, std::wstring> m_failures; ///< of checks, by file
    std::atomic<std::size_t> m_asked{0};
    bool m_failed = false;
    bool m_unread = false; ///< some paths, or unchecked; the others are checked all the same
    CSession m_session;    ///< calls back, so that it ends first
};

} // namespace

int RunProject(const SOptions& options)
{
    return CProjectRun(options, RulesFor(options)).Run();
}

} // namespace Kesh::CommandLine
