#include "Components/CAProjectHandler.h"

#include "Base/CommonString.h"
#include "Base/HostComponent.h"
#include "Checks/CADocumentCheck.h"
#include "Components/CACheckWorkers.h"
#include "Components/CADocManager.h"
#include "Components/CAErrorsEvent.h"
#include "Components/CAErrorsStore.h"
#include "Components/ErrorsView.h"
#include "Diagnostics/DiagnosticList.h"
#include "Kesh/CodeAnalyzer/ICAComponent.h"
#include "Kesh/ProjectManager/IProjectManager.h"
#include "Kesh/SDK/IMainFrame.h"
#include "Kesh/SyntaxParser/IParserComponent.h"
#include "Markup/TemplateHalves.h"
#include "Parsers/PhpSyntaxParser.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QScopeGuard>
#include <QThread>
#include <algorithm>
#include <boost/bind/bind.hpp>
#include <boost/bind/placeholders.hpp>
#include <utility>

namespace Kesh::CodeAnalyzer {

using namespace boost::placeholders;
using ProjectManager::IPMComponent;
using ProjectManager::IProjectManager;
using SyntaxParser::IParserComponent;

namespace {

constexpr qint64 MaxFileSize = 1000000; // bytes
constexpr int MaxUndelivered = 64;      // events
constexpr int MaxUndeliveredGradually = 6;

bool IsCheckedKind(const std::wstring& file)
{
    // Anywhere in the path, so that a folder of this name is left out with all that it holds.
    for (const wchar_t* part : {L".sql", L".htm", L".html", L".css", L".ctp", L".tpl", L".inc"})
        if (file.find(part) != std::wstring::npos)
            return false;
    return true;
}

} // namespace

CCAProjectHandler::CCAProjectHandler() : m_workers(std::make_shared<CCACheckWorkers>()) {}

CCAProjectHandler::~CCAProjectHandler()
{
    Shutdown();
}

void CCAProjectHandler::Init(SDK::IApplication* application, ICAComponent* component,
                             CErrorsStore* errorsManager)
{
    m_application = application;
    m_component = component;
    m_errorsManager = errorsManager;
    m_saved.Init(errorsManager);
    IProjectManager* pm =
        Base::GetHostComponent<IPMComponent>(application, L"IPMComponent")->GetProjectManager();
    pm->GetCloseProjectSignal().connect(boost::bind(&CCAProjectHandler::OnCloseProject, this, _1));
    auto parser = Base::GetHostComponent<IParserComponent>(application, L"IParserComponent");
    parser->GetProjectParsedSignal().connect(boost::bind(&CCAProjectHandler::OnProjectParsecomplete, this));
}

void CCAProjectHandler::SetDocManager(CCADocManager* docManager)
{
    m_docManager = docManager;
    m_workers = docManager->GetWorkers();
    SetThorough(m_thorough);
}

void CCAProjectHandler::SetThorough(bool thorough)
{
    m_thorough = thorough;
    if (!m_docManager)
        return;
    if (thorough)
        m_docManager->SetClosedHandler([this](const std::wstring& file) { CheckClosedFile(file); });
    else
        m_docManager->SetClosedHandler({});
}

void CCAProjectHandler::EndRuns()
{
    m_saved.GiveUpLoading();
    DropOrders();
    m_saved.Wait();
    if (m_cancelled)
        *m_cancelled = true;
    std::unique_lock lock(m_runsMutex);
    m_ending = true;
    m_runEnded.wait(lock, [this] { return m_runs == 0; });
}

void CCAProjectHandler::Shutdown()
{
    m_saved.GiveUpLoading();
    DropOrders();
    StopThread(nullptr);
    m_saved.Wait();
}

void CCAProjectHandler::SetGradual(bool gradual)
{
    m_gradual = gradual;
    if (IErrorsView* view = GetView(); view && gradual)
        view->SetGradual();
}

void CCAProjectHandler::OnProjectParsecomplete()
{
    auto component = Base::GetHostComponent<IPMComponent>(m_application, L"IPMComponent");
    IProjectManager* pm = component->GetProjectManager();
    if (!m_thorough && !m_gradual) {
        LoadErrors(pm);
        m_projectWanted = true;
        if (!m_thread ||
            m_stopAsked) // else once it has ended: two checks of a file would list its errors twice
            StartThread();
        return;
    }
    // A project that is parsed anew is checked anew.
    StopThread(pm);
    const bool isReopened = !m_reopenedFiles.empty() && !std::exchange(m_unread, false);
    RemoveErrorsOfLeavers(pm);
    if (m_gradual && isReopened) // its errors are still there
        return BeginCheck();
    if (m_gradual && m_saved.BeginLoading(pm, GetView(), [this] { BeginCheck(); }))
        return;
    try {
        LoadErrors(pm);
    } catch (...) {
        // Errors that cannot be restored are found anew.
    }
    BeginCheck();
}

void CCAProjectHandler::BeginCheck()
{
    // The restored errors of open documents are as old as the project's last close.
    if (m_docManager)
        m_docManager->CheckAllLater();
    m_projectWanted = true;
    StartThread();
}

void CCAProjectHandler::OnCloseProject(IProjectManager* pm)
{
    m_unread = m_saved.GiveUpLoading();
    DropOrders();
    StopThread(pm);
    // Checks of documents, also of those that are closed by now, must not end between this project and the
    // next; to wait for their own end would block the window.
    m_workers->EndThreads();
    if (m_docManager)
        m_docManager->CheckCancelledLater();
    // What the threads have found but the view has not seen yet is to be saved, and must not come after the
    // clear.
    m_errorsManager->DeliverPosted();
    if (!m_unread) // what has been kept is to be kept on
        m_gradual ? m_saved.SaveInBackground(pm) : SaveErrors(pm);
    m_reopenedFiles.clear();
    if (pm->IsReopening()) {
        if (m_thorough)
            m_reopenedFiles = pm->GetFiles();
    } else if (m_thorough) {
        m_errorsManager->RemoveErrorsOf(pm->GetFiles());
    } else {
        for (const std::wstring& file : pm->GetFiles())
            m_errorsManager->RemoveErrors(file);
    }
}

void CCAProjectHandler::RemoveErrorsOfLeavers(IProjectManager* pm)
{
    for (const std::wstring& file : std::exchange(m_reopenedFiles, {}))
        if (!pm->BelongsToProject(file) && !(m_docManager && m_docManager->HasChecker(file)))
            m_errorsManager->RemoveErrors(file);
}

void CCAProjectHandler::CheckAgain()
{
    auto component = Base::GetHostComponent<IPMComponent>(m_application, L"IPMComponent");
    if ((m_thread && m_checksProject) || !component->GetProjectManager()->IsOpened())
        return;
    m_projectWanted = true;
    if (!m_thread && !m_saved.IsLoading())
        StartThread();
}

void CCAProjectHandler::Stop()
{
    DropOrders();
    StopThread(nullptr);
}

void CCAProjectHandler::CheckClosedFile(const std::wstring& file)
{
    IErrorsView* view = GetView();
    // The view does not outlive the handler, and what waits for it ends with it.
    if (view && BelongsToOpenProject(file))
        QMetaObject::invokeMethod(
            view->Receiver(), [this, file] { Enqueue(file); }, Qt::QueuedConnection);
}

IErrorsView* CCAProjectHandler::GetView() const
{
    return m_component ? m_errorsManager->GetView() : nullptr;
}

bool CCAProjectHandler::BelongsToOpenProject(const std::wstring& file)
{
    try {
        auto component = Base::GetHostComponent<IPMComponent>(m_application, L"IPMComponent");
        IProjectManager* pm = component->GetProjectManager();
        return pm->IsOpened() && pm->BelongsToProject(file);
    } catch (const Base::CException&) {
        return false;
    }
}

void CCAProjectHandler::Enqueue(const std::wstring& file)
{
    // Meanwhile another project may have taken the place of the one that had the file.
    if (!BelongsToOpenProject(file))
        return;
    {
        const std::lock_guard lock(m_queueMutex);
        if (std::find(m_queue.begin(), m_queue.end(), file) == m_queue.end())
            m_queue.push_back(file);
    }
    if (!m_thread && !m_saved.IsLoading())
        StartThread();
}

void CCAProjectHandler::DropOrders()
{
    m_projectWanted = false;
    const std::lock_guard lock(m_queueMutex);
    m_queue.clear();
}

std::wstring CCAProjectHandler::TakeFromQueue()
{
    const std::lock_guard lock(m_queueMutex);
    if (m_queue.empty())
        return {};
    std::wstring file = std::move(m_queue.front());
    m_queue.pop_front();
    return file;
}

void CCAProjectHandler::SaveErrors(IProjectManager* pm)
{
    m_saved.Save(pm);
}

void CCAProjectHandler::LoadErrors(IProjectManager* pm)
{
    m_saved.Load(pm, GetView());
}

void CCAProjectHandler::StartThread()
{
    m_checksProject = std::exchange(m_projectWanted, false);
    m_checksComplete = m_complete && m_component;
    m_hasRun = false;
    m_cancelled = std::make_shared<std::atomic<bool>>(false);
    if (m_thread)
        ++m_endsToCome;
    m_stopAsked = false;
    m_thread = m_application->GetThreadService()->CreateThread(this, 0);
    if (m_thread)
        m_thread->Start();
}

void CCAProjectHandler::StopThread(IProjectManager* pm)
{
    m_stopping = true;
    if (m_cancelled)
        *m_cancelled = true;
    if (m_thread && !std::exchange(m_stopAsked, true))
        m_thread->Stop(pm);
    m_stopping = false;
}

void CCAProjectHandler::Finished()
{
    if (m_endsToCome > 0) {
        --m_endsToCome;
        return;
    }
    m_thread = nullptr;
    const auto isQueueEmpty = [this] {
        const std::lock_guard lock(m_queueMutex);
        return m_queue.empty();
    };
    // What has come after the thread last looked. A thread that the system could not give is not asked for
    // again until there is more to do.
    if (m_hasRun && !m_stopping && (m_projectWanted || !isQueueEmpty()))
        StartThread();
}

void CCAProjectHandler::Run()
{
    {
        const std::lock_guard lock(m_runsMutex);
        if (m_ending)
            return;
        ++m_runs;
    }
    const auto endOfRun = qScopeGuard([this] {
        const std::lock_guard lock(m_runsMutex);
        --m_runs;
        m_runEnded.notify_all();
    });
    m_hasRun = true;
    // Whoever runs this without the handler's own thread wants the project checked.
    const bool checksProject = !m_thread || m_checksProject;
    const auto showProgress = [&](const wchar_t* text) {
        if (checksProject)
            m_application->GetMainFrame()->SetProgressText(text);
    };
    showProgress(L"Check project...");
    const auto endOfProgress = qScopeGuard([&] {
        if (m_thorough)
            showProgress(L"");
    });
    const auto pmComponent = Base::GetHostComponent<IPMComponent>(m_application, L"IPMComponent");
    const auto parser = Base::GetHostComponent<IParserComponent>(m_application, L"IParserComponent");
    IProjectManager* pm = pmComponent->GetProjectManager();

    const bool finished = checksProject && CheckProject(*pm, *parser);
    CheckQueue(*pm, *parser);
    if (IErrorsView* view = GetView(); view && finished)
        QCoreApplication::postEvent(view->Receiver(),
                                    new CCAErrorsEvent(CCAErrorsEvent::ProjectFinished, L"", {}));
}

bool CCAProjectHandler::CheckProject(IProjectManager& pm, IParserComponent& parser)
{
    const auto cache = pm.GetFilesCache();
    const std::vector<std::wstring> files = cache && !cache->files.empty() ? cache->files : pm.GetFiles();
    CTemplateHalves halves;
    for (const std::wstring& file : files) {
        WaitForDelivery();
        if (IsStopRequested())
            return false;
        // A document of the file that is being checked reports its errors itself.
        if (!TryCheck(parser, file, m_checksComplete, &halves))
            halves.Miss();
    }
    for (auto& [file, found] : halves.FindLonely()) {
        WaitForDelivery();
        const auto [errors, details] = Apart(std::move(found));
        m_errorsManager->AddErrors(file, errors, details);
    }
    return true;
}

void CCAProjectHandler::CheckQueue(IProjectManager& pm, IParserComponent& parser)
{
    while (!IsStopRequested()) {
        WaitForDelivery();
        const std::wstring file = TakeFromQueue();
        if (file.empty())
            return;
        // The last check of the document may still run, on a text that is not the file's any more.
        while (pm.BelongsToProject(file) && !TryCheck(parser, file, true) && !IsStopRequested())
            QThread::msleep(1);
    }
}

bool CCAProjectHandler::TryCheck(IParserComponent& parser, const std::wstring& file, bool complete,
                                 CTemplateHalves* halves)
{
    if (!complete) {
        const QFileInfo info(QString::fromStdWString(file));
        if (!IsCheckedKind(file) || info.size() > MaxFileSize) {
            // What is too large now may have had errors when it was smaller.
            if (IsCheckedKind(file) || !info.exists())
                DropErrorsUnlessOpen(file);
            return true;
        }
    }
    const CCACheckWorkers::CCheck running(*m_workers, file);
    if (!running)
        return false;
    const SCheck check = m_errorsManager->BeginCheck(file, false);
    std::optional<ECheckEnd> end = ECheckEnd::Failed;
    std::vector<SCAError> old;
    TDetails oldDetails;
    std::wstring failure;
    try {
        m_errorsManager->GetErrors(file, old);
        oldDetails = m_errorsManager->GetDetails(file);
        end =
            complete ? CheckComplete(parser, file, old, oldDetails, halves, failure) : CheckPhp(parser, file);
    } catch (const std::exception& fault) {
        failure = Base::CCommonString::FromUtf8(fault.what());
        m_errorsManager->RestoreErrors(file, old, oldDetails);
    } catch (...) {
        failure = L"the positions of regions do not fit the text";
        m_errorsManager->RestoreErrors(file, old, oldDetails);
    }
    // Whatever is wrong with this file, the user wants to know about the others.
    if (!failure.empty())
        m_errorsManager->TellFailure(file, failure);
    if (end)
        m_errorsManager->EndCheck(check, *end);
    return true;
}

bool CCAProjectHandler::IsStopRequested() const
{
    return m_ending || (m_thread && m_thread->IsStopRequested());
}

void CCAProjectHandler::WaitForDelivery() const
{
    // The GUI thread delivers all that has piled up before it looks at anything else, but not to itself, and
    // not while it waits for a thread that it has not given.
    if (!m_thorough || !m_thread || QThread::currentThread() == QCoreApplication::instance()->thread() ||
        CCAErrorsEvent::GetLivingCount() <= (m_gradual ? MaxUndeliveredGradually : MaxUndelivered))
        return;
    while (CCAErrorsEvent::GetLivingCount() > 0 && !IsStopRequested())
        QThread::msleep(1);
}

std::optional<ECheckEnd> CCAProjectHandler::CheckPhp(IParserComponent& parser, const std::wstring& file)
{
    const auto document = GetDocument(parser, file);
    if (!document)
        return {};
    CPhpSyntaxParser phpParser(document->GetDefRegions(), m_errorsManager);
    phpParser.SteFileName(file);
    phpParser.InitParser(document);
    const IGrammarCheck* grammar = m_docManager ? m_docManager->GetWanted().grammar : nullptr;
    if (grammar && grammar->IsEnabled())
        phpParser.FollowGrammar(*document, grammar);
    document->Parse(true);
    return ECheckEnd::Complete;
}

std::optional<ECheckEnd> CCAProjectHandler::CheckComplete(IParserComponent& parser, const std::wstring& file,
                                                          const std::vector<SCAError>& old,
                                                          const TDetails& oldDetails, CTemplateHalves* halves,
                                                          std::wstring& failure)
{
    const auto document = GetDocument(parser, file);
    if (!document && halves)
        halves->Miss();
    if (!document || !CCADocManager::IsCheckable(*document))
        return {};
    const auto check = CCADocumentCheck::CreateOver(m_application, document, m_errorsManager,
                                                    m_component->GetHtmlCustomItemsKeeper());
    SWantedChecks wanted = m_docManager ? m_docManager->GetWanted() : SWantedChecks{};
    wanted.halves = halves;
    check->Follow(wanted);
    check->SetDetailed(m_errorsManager->IsDetailed());
    check->SetCancelFlag(m_cancelled);
    const ECheckEnd end = check->Run();
    // Given up half-way, it leaves what was known.
    if (end != ECheckEnd::Complete) {
        m_errorsManager->RestoreErrors(file, old, oldDetails);
        if (halves)
            halves->Miss();
    }
    if (end == ECheckEnd::Failed)
        failure = check->GetFailure();
    return end;
}

boost::shared_ptr<SyntaxParser::ISPDocument> CCAProjectHandler::GetDocument(IParserComponent& parser,
                                                                            const std::wstring& file)
{
    auto document = parser.GetParsedDocument(file);
    if (!document)
        DropErrorsUnlessOpen(file);
    else if (m_errorsManager->MayHaveErrors(file))
        m_errorsManager->RemoveErrorsMSG(file);
    return document;
}

void CCAProjectHandler::DropErrorsUnlessOpen(const std::wstring& file)
{
    if (!m_thorough || !m_errorsManager->MayHaveErrors(file))
        return;
    if (!m_docManager) {
        if (!QFileInfo(QString::fromStdWString(file)).isReadable())
            m_errorsManager->RemoveErrorsMSG(file);
    } else if (IErrorsView* view = GetView()) {
        // Which documents are open is known on the GUI thread.
        QMetaObject::invokeMethod(
            view->Receiver(),
            [this, file] {
                if (!m_docManager->HasChecker(file))
                    m_errorsManager->RemoveErrors(file);
            },
            Qt::QueuedConnection);
    }
}

} // namespace Kesh::CodeAnalyzer
