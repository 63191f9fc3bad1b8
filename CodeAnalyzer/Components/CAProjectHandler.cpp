#include "Components/CAProjectHandler.h"

#include "Base/CommonString.h"
#include "Base/HostComponent.h"
#include "Checks/CADocumentCheck.h"
#include "Checks/CAGrammarCheck.h"
#include "Components/CACheckWorkers.h"
#include "Components/CAComponent.h"
#include "Components/CADocManager.h"
#include "Components/CAErrorsBar.h"
#include "Components/CAErrorsEvent.h"
#include "Components/CAErrorsManager.h"
#include "Kesh/ProjectManager/IProjectManager.h"
#include "Kesh/SDK/IMainFrame.h"
#include "Kesh/SyntaxParser/IParserComponent.h"
#include "Parsers/PhpSyntaxParser.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QThread>
#include <algorithm>
#include <boost/bind/bind.hpp>
#include <boost/bind/placeholders.hpp>
#include <functional>
#include <optional>
#include <set>
#include <utility>

namespace Kesh::CodeAnalyzer {

using namespace boost::placeholders;
using ProjectManager::IPMComponent;
using ProjectManager::IProjectManager;
using SyntaxParser::IParserComponent;

namespace {

constexpr const wchar_t* ErrorsItem = L"errors";
constexpr qint64 MaxFileSize = 1000000; // bytes
constexpr int MaxUndelivered = 64;      // events
constexpr int MaxUndeliveredGradually = 6;

/// Shows what goes on for as long as it does.
class CProgress
{
public:
    explicit CProgress(SDK::IMainFrame* frame) : m_frame(frame)
    {
        m_frame->SetProgressText(L"Check project...");
    }
    ~CProgress() { m_frame->SetProgressText(L""); }
    CProgress(const CProgress&) = delete;
    CProgress& operator=(const CProgress&) = delete;

private:
    SDK::IMainFrame* m_frame;
};

bool IsCheckedKind(const std::wstring& file)
{
    // Anywhere in the path, so that a folder of this name is left out with all that it holds.
    for (const wchar_t* part : {L".sql", L".htm", L".html", L".css", L".ctp", L".tpl", L".inc"})
        if (file.find(part) != std::wstring::npos)
            return false;
    return true;
}

/// The saved errors of the project's files. Any thread.
std::vector<SSavedFileErrors> ReadErrors(const ProjectManager::SProjectFilesCache* cache,
                                         const std::function<std::wstring()>& getText)
{
    if (!cache || cache->files.empty())
        return {};
    std::set<std::wstring> lowerFiles;
    for (const std::wstring& file : cache->files)
        lowerFiles.insert(Base::CCommonString::LowerCaseFast(file));
    return ReadSavedErrors(getText(), lowerFiles);
}

} // namespace

CCAProjectHandler::CCAProjectHandler() : m_workers(std::make_shared<CCACheckWorkers>()) {}

CCAProjectHandler::~CCAProjectHandler()
{
    Shutdown();
}

void CCAProjectHandler::Init(SDK::IApplication* application, CCAComponent* component,
                             CCAErrorsManager* errorsManager)
{
    m_application = application;
    m_component = component;
    m_errorsManager = errorsManager;
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
    docManager->SetClosedHandler([this](const std::wstring& file) { CheckClosedFile(file); });
}

void CCAProjectHandler::Shutdown()
{
    GiveUpRestoring();
    DropOrders();
    StopThread(nullptr);
    m_background.Wait();
}

void CCAProjectHandler::SetGradual(bool gradual)
{
    m_gradual = gradual;
    if (CCAErrorsBar* bar = GetBar(); bar && gradual)
        bar->SetGradual();
}

void CCAProjectHandler::OnProjectParsecomplete()
{
    auto component = Base::GetHostComponent<IPMComponent>(m_application, L"IPMComponent");
    IProjectManager* pm = component->GetProjectManager();
    // A project that is parsed anew is checked anew.
    StopThread(pm);
    const bool isReopened = !m_reopenedFiles.empty() && !std::exchange(m_unread, false);
    RemoveErrorsOfLeavers(pm);
    if (m_gradual && isReopened) // its errors are still there
        return BeginCheck();
    if (m_gradual && BeginRestoring(pm))
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

bool CCAProjectHandler::BeginRestoring(IProjectManager* pm)
{
    const boost::shared_ptr<ProjectManager::IProjectData> data = pm->GetProjectData();
    CCAErrorsBar* bar = GetBar();
    if (!data || !bar)
        return false;
    GiveUpRestoring();
    m_restoring = std::make_shared<SRestoring>();
    m_background.Run([this, bar, data, cache = pm->GetFilesCache(), restoring = m_restoring] {
        if (restoring->isGivenUp)
            return;
        try {
            restoring->files = ReadErrors(cache.get(), [&] { return data->GetData(ErrorsItem); });
        } catch (...) {
            // Errors that cannot be restored are found anew.
        }
        QMetaObject::invokeMethod(
            bar, [this, restoring] { EndRestoring(restoring); }, Qt::QueuedConnection);
    });
    return true;
}

bool CCAProjectHandler::GiveUpRestoring()
{
    if (m_restoring)
        m_restoring->isGivenUp = true;
    return std::exchange(m_restoring, nullptr) != nullptr;
}

void CCAProjectHandler::EndRestoring(const std::shared_ptr<SRestoring>& restoring)
{
    if (m_restoring != restoring)
        return;
    m_restoring.reset();
    // A document that was open before has been checked meanwhile, or is about to be.
    for (const auto& [file, errors] : restoring->files)
        if (!m_errorsManager->MayHaveErrors(file))
            m_errorsManager->AddErrorsGradually(file, errors);
    BeginCheck();
}

void CCAProjectHandler::OnCloseProject(IProjectManager* pm)
{
    m_unread = GiveUpRestoring();
    DropOrders();
    StopThread(pm);
    // Checks of documents, also of those that are closed by now, must not end between this project and the
    // next; to wait for their own end would block the window.
    m_workers->EndThreads();
    if (m_docManager)
        m_docManager->CheckCancelledLater();
    // What the threads have found but the bar has not seen yet is to be saved, and must not come after the
    // clear.
    m_errorsManager->DeliverPosted();
    if (!m_unread) // what has been kept is to be kept on
        KeepErrors(pm);
    m_reopenedFiles.clear();
    if (pm->IsReopening()) {
        m_reopenedFiles = pm->GetFiles();
        return;
    }
    m_errorsManager->RemoveErrorsOf(pm->GetFiles());
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
    if (!m_thread && !m_restoring)
        StartThread();
}

void CCAProjectHandler::Stop()
{
    DropOrders();
    StopThread(nullptr);
}

void CCAProjectHandler::CheckClosedFile(const std::wstring& file)
{
    CCAErrorsBar* bar = GetBar();
    // The bar does not outlive the handler, and what waits for it ends with it.
    if (bar && BelongsToOpenProject(file))
        QMetaObject::invokeMethod(
            bar, [this, file] { Enqueue(file); }, Qt::QueuedConnection);
}

CCAErrorsBar* CCAProjectHandler::GetBar() const
{
    return m_component ? m_component->GetErrorsBar() : nullptr;
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
    if (!m_thread && !m_restoring)
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

void CCAProjectHandler::StartThread()
{
    m_checksProject = std::exchange(m_projectWanted, false);
    m_checksComplete = m_complete && m_component;
    m_hasRun = false;
    m_cancelled = std::make_shared<std::atomic<bool>>(false);
    m_thread = m_application->GetThreadService()->CreateThread(this, 0);
    if (m_thread)
        m_thread->Start();
}

void CCAProjectHandler::StopThread(IProjectManager* pm)
{
    m_stopping = true;
    if (m_cancelled)
        *m_cancelled = true;
    if (m_thread)
        m_thread->Stop(pm);
    m_stopping = false;
}

void CCAProjectHandler::Finished()
{
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

std::vector<SSavedFileErrors> CCAProjectHandler::GetErrors(IProjectManager* pm)
{
    std::vector<SSavedFileErrors> files;
    for (const std::wstring& file : pm->GetFiles()) {
        std::vector<SCAError> errors;
        m_errorsManager->GetErrors(file, errors);
        if (!errors.empty())
            files.push_back({file, std::move(errors)});
    }
    return files;
}

void CCAProjectHandler::SaveErrors(IProjectManager* pm)
{
    pm->SetData(ErrorsItem, WriteSavedErrors(GetErrors(pm)));
}

void CCAProjectHandler::KeepErrors(IProjectManager* pm)
{
    const auto data = m_gradual ? pm->GetProjectData() : nullptr;
    if (!data)
        return SaveErrors(pm);
    const auto files = std::make_shared<std::vector<SSavedFileErrors>>(GetErrors(pm));
    m_background.Run([data, files] {
        try {
            data->SetData(ErrorsItem, WriteSavedErrors(*files));
        } catch (...) {
            // As much as the host lets one know of a text that it could not keep.
        }
    });
}

void CCAProjectHandler::LoadErrors(IProjectManager* pm)
{
    const auto cache = pm->GetFilesCache();
    for (const auto& [file, errors] : ReadErrors(cache.get(), [&] { return pm->GetData(ErrorsItem); }))
        m_errorsManager->AddErrorsMT(file, errors);
}

void CCAProjectHandler::Run()
{
    m_hasRun = true;
    // Whoever runs this without the handler's own thread wants the project checked.
    const bool checksProject = !m_thread || m_checksProject;
    std::optional<CProgress> progress;
    if (checksProject)
        progress.emplace(m_application->GetMainFrame());
    const auto pmComponent = Base::GetHostComponent<IPMComponent>(m_application, L"IPMComponent");
    const auto parser = Base::GetHostComponent<IParserComponent>(m_application, L"IParserComponent");
    IProjectManager* pm = pmComponent->GetProjectManager();

    const bool finished = checksProject && CheckProject(*pm, *parser);
    CheckQueue(*pm, *parser);
    if (CCAErrorsBar* bar = GetBar(); bar && finished)
        QCoreApplication::postEvent(bar, new CCAErrorsEvent(CCAErrorsEvent::ProjectFinished, L"", {}));
}

bool CCAProjectHandler::CheckProject(IProjectManager& pm, IParserComponent& parser)
{
    const auto cache = pm.GetFilesCache();
    const std::vector<std::wstring> files = cache && !cache->files.empty() ? cache->files : pm.GetFiles();
    for (const std::wstring& file : files) {
        WaitForDelivery();
        if (IsStopRequested())
            return false;
        // A document of the file that is being checked reports its errors itself.
        m_checksComplete ? TryCheckClosed(parser, file) : TryCheck(parser, file);
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
        while (pm.BelongsToProject(file) && !TryCheckClosed(parser, file) && !IsStopRequested())
            QThread::msleep(1);
    }
}

bool CCAProjectHandler::TryCheck(IParserComponent& parser, const std::wstring& file)
{
    try {
        const QFileInfo info(QString::fromStdWString(file));
        if (IsCheckedKind(file) && info.size() <= MaxFileSize)
            return CheckFile(parser, file);
        // What is too large now may have had errors when it was smaller.
        if (IsCheckedKind(file) || !info.exists())
            DropErrorsUnlessOpen(file);
    } catch (...) {
        // Whatever is wrong with this file, the user wants to know about the others.
    }
    return true;
}

bool CCAProjectHandler::TryCheckClosed(IParserComponent& parser, const std::wstring& file)
{
    try {
        return CheckClosed(parser, file);
    } catch (...) {
        return true;
    }
}

bool CCAProjectHandler::IsStopRequested() const
{
    return m_thread && m_thread->IsStopRequested();
}

void CCAProjectHandler::WaitForDelivery() const
{
    // The GUI thread delivers all that has piled up before it looks at anything else, but not to itself.
    if (QThread::currentThread() == QCoreApplication::instance()->thread() ||
        CCAErrorsEvent::GetLivingCount() <= (m_gradual ? MaxUndeliveredGradually : MaxUndelivered))
        return;
    while (CCAErrorsEvent::GetLivingCount() > 0 && !IsStopRequested())
        QThread::msleep(1);
}

bool CCAProjectHandler::CheckFile(IParserComponent& parser, const std::wstring& file)
{
    const CCACheckWorkers::CCheck check(*m_workers, file);
    if (!check)
        return false;
    const auto document = GetDocument(parser, file);
    if (!document)
        return true;
    CPhpSyntaxParser phpParser(document->GetDefRegions(), m_errorsManager);
    phpParser.SteFileName(file);
    phpParser.InitParser(document);
    phpParser.FollowGrammar(*document, m_docManager ? m_docManager->GetGrammarCheck() : nullptr);
    document->Parse(true);
    return true;
}

bool CCAProjectHandler::CheckClosed(IParserComponent& parser, const std::wstring& file)
{
    const CCACheckWorkers::CCheck check(*m_workers, file);
    if (!check)
        return false;
    std::vector<SCAError> old;
    m_errorsManager->GetErrors(file, old);
    const auto document = GetDocument(parser, file);
    if (!document || !CCADocManager::IsCheckable(*document))
        return true;
    const auto complete = CCADocumentCheck::CreateOver(m_application, document, m_errorsManager,
                                                       m_component->GetHtmlCustomItemsKeeper());
    complete->FollowGrammar(m_docManager ? m_docManager->GetGrammarCheck() : nullptr);
    complete->SetDetailed(m_errorsManager->IsDetailed());
    complete->SetCancelFlag(m_cancelled);
    // Given up half-way, it leaves what was known.
    if (!complete->Run())
        m_errorsManager->AddErrors(file, old);
    return true;
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
    if (!m_errorsManager->MayHaveErrors(file))
        return;
    if (!m_docManager) {
        if (!QFileInfo(QString::fromStdWString(file)).isReadable())
            m_errorsManager->RemoveErrorsMSG(file);
    } else if (CCAErrorsBar* bar = GetBar()) {
        // Which documents are open is known on the GUI thread.
        QMetaObject::invokeMethod(
            bar,
            [this, file] {
                if (!m_docManager->HasChecker(file))
                    m_errorsManager->RemoveErrors(file);
            },
            Qt::QueuedConnection);
    }
}

} // namespace Kesh::CodeAnalyzer
