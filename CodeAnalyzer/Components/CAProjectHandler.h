#pragma once

#include "Components/CACheckWorkers.h"
#include "Components/CASavedErrors.h"
#include "Kesh/CodeAnalyzer/Check.h"
#include "Kesh/CodeAnalyzer/IProjectCheck.h"
#include "Kesh/SDK/IApplication.h"
#include "Kesh/SDK/IServices.h"

#include <atomic>
#include <boost/shared_ptr.hpp>
#include <boost/signals2/trackable.hpp>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace Kesh::ProjectManager {
class IProjectManager;
} // namespace Kesh::ProjectManager
namespace Kesh::SyntaxParser {
class IParserComponent;
class ISPDocument;
} // namespace Kesh::SyntaxParser

namespace Kesh::CodeAnalyzer {

class CCADocManager;
class CErrorsStore;
class CTemplateHalves;
class ICAComponent;
class IErrorsView;

/// Checks the files of the open project in the background, and keeps their errors with the project. GUI
/// thread, unless said otherwise.
class CCAProjectHandler : public SDK::IThread, public IProjectCheck, public boost::signals2::trackable
{
public:
    CCAProjectHandler();
    /// Shuts down.
    ~CCAProjectHandler();
    CCAProjectHandler(const CCAProjectHandler&) = delete;
    CCAProjectHandler& operator=(const CCAProjectHandler&) = delete;

    /// Nothing is owned, here and below. Raises Base::CCriticalError "Bad sweak pointer" without
    /// "IPMComponent" or "IParserComponent".
    void Init(SDK::IApplication* application, ICAComponent* component, CErrorsStore* errorsManager);
    /// Whose checks must not run beside those of the project.
    void SetDocManager(CCADocManager* docManager);
    /// Ends what runs, and all that still comes to run: nobody uses the view of the errors afterwards. The
    /// host's threads are left to the destructor.
    void EndRuns();
    /// Ends a check that runs.
    void Shutdown();

    void OnProjectParsecomplete();
    void OnCloseProject(ProjectManager::IProjectManager* pm);
    /// Checks the open project once more, unless such a check runs.
    void CheckAgain();
    void SetComplete(bool complete) override { m_complete = complete; }
    void SetGradual(bool gradual) override;
    void SetThorough(bool thorough) override;
    void Stop() override;
    /// A document has been closed whose errors may not be those of the file: checks the project's file from
    /// disk, in all its languages, once the host has forgotten the document.
    void CheckClosedFile(const std::wstring& file);

    void SaveErrors(ProjectManager::IProjectManager* pm);
    void LoadErrors(ProjectManager::IProjectManager* pm);

    /// The handler is a member of the component.
    void Free() override {}
    /// Worker thread. Raises Base::CCriticalError when the host's components are gone.
    void Run() override;
    void Finished() override;
    int GetPriority() override { return 1; }
    std::wstring GetThreadName() override { return L"CCAProjectHandler"; }

private:
    /// Null when there is none.
    IErrorsView* GetView() const;
    bool BelongsToOpenProject(const std::wstring& file);
    /// What follows once the saved errors are there.
    void BeginCheck();
    /// Of files that the project had before it was opened again and has no more.
    void RemoveErrorsOfLeavers(ProjectManager::IProjectManager* pm);

    void StartThread();
    void StopThread(ProjectManager::IProjectManager* pm);
    void Enqueue(const std::wstring& file);
    /// Forgets what the thread has not come to.
    void DropOrders();

    // What follows, in the worker thread.
    bool IsStopRequested() const;
    /// Lets the GUI thread catch up when it is far behind.
    void WaitForDelivery() const;
    /// False when it was asked to stop before the last file.
    bool CheckProject(ProjectManager::IProjectManager& pm, SyntaxParser::IParserComponent& parser);
    void CheckQueue(ProjectManager::IProjectManager& pm, SyntaxParser::IParserComponent& parser);
    /// The empty path when the queue is empty. Any thread.
    std::wstring TakeFromQueue();
    /// `complete`: in all its languages. `halves`: where its tags with partners elsewhere are collected, or
    /// null. False when another check of the file runs.
    bool TryCheck(SyntaxParser::IParserComponent& parser, const std::wstring& file, bool complete,
                  CTemplateHalves* halves = nullptr);
    /// Null when there is nothing to check, here and below.
    std::optional<ECheckEnd> CheckPhp(SyntaxParser::IParserComponent& parser, const std::wstring& file);
    /// `failure` receives why it has failed. `old` are the file's errors before.
    std::optional<ECheckEnd> CheckComplete(SyntaxParser::IParserComponent& parser, const std::wstring& file,
                                           const std::vector<SCAError>& old, const TDetails& oldDetails,
                                           CTemplateHalves* halves, std::wstring& failure);
    /// The document to be checked, the file's old errors removed; null when the file is open or cannot be
    /// read.
    boost::shared_ptr<SyntaxParser::ISPDocument> GetDocument(SyntaxParser::IParserComponent& parser,
                                                             const std::wstring& file);
    /// Removes the errors of a file that there is no checking any more, if the host wants it.
    void DropErrorsUnlessOpen(const std::wstring& file);

    SDK::IApplication* m_application = nullptr;
    CErrorsStore* m_errorsManager = nullptr;
    ICAComponent* m_component = nullptr;
    SDK::IThreadObject* m_thread = nullptr; ///< set before it starts, null again once it has ended
    CCADocManager* m_docManager = nullptr;
    std::shared_ptr<CCACheckWorkers> m_workers;
    bool m_complete = false;             ///< what the host wants
    bool m_gradual = false;              ///< the same
    std::atomic<bool> m_thorough{false}; ///< the same
    bool m_unread = false;               ///< the project was closed before it was
    bool m_checksComplete = false;       ///< what the thread does; set before it starts
    TCancelFlag m_cancelled;             ///< of the thread that runs; set before it starts
    bool m_projectWanted = false;        ///< the next thread checks the whole project
    bool m_checksProject = false;        ///< the thread does, else only the queue; set before it starts
    std::atomic<bool> m_hasRun{false};   ///< the last thread has begun its work
    bool m_stopping = false;             ///< no thread follows the one that ends
    bool m_stopAsked = false;            ///< of the thread that runs
    int m_endsToCome = 0;                ///< of threads that another has taken the place of
    std::mutex m_runsMutex;
    std::condition_variable m_runEnded;
    int m_runs = 0; ///< of Run(), whichever thread does it; guarded by the mutex
    std::atomic<bool> m_ending{false};
    std::mutex m_queueMutex;
    std::deque<std::wstring> m_queue;          ///< files to be checked besides; guarded by the mutex
    std::vector<std::wstring> m_reopenedFiles; ///< while the project is away to come back at once
    CSavedErrors m_saved;
};

} // namespace Kesh::CodeAnalyzer
