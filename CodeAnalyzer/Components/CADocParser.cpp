#include "Components/CADocParser.h"

#include "Base/HostComponent.h"
#include "Checks/CADocumentCheck.h"
#include "Components/CACheckWorkers.h"
#include "Components/CADocParserThread.h"
#include "Components/CAErrorsStore.h"
#include "Kesh/ProjectManager/IProjectManager.h"
#include "Kesh/SDK/IServices.h"

#include <mutex>

namespace Kesh::CodeAnalyzer {

/// Stands between the buffer's change signal, emitted on the GUI thread, and a checker that may die in its
/// worker thread: the lock makes the checker's end wait for a slot that runs, and later ones find no checker.
class CCADocParser::CChangeReceiver
{
public:
    explicit CChangeReceiver(CCADocParser* checker) : m_checker(checker) {}

    void OnChange(Editor::IDocBuffer::IChangeContext* context)
    {
        std::lock_guard lock(m_mutex);
        if (m_checker)
            m_checker->OnTextChange(context);
    }

    void Detach()
    {
        std::lock_guard lock(m_mutex);
        m_checker = nullptr;
    }

private:
    std::mutex m_mutex;
    CCADocParser* m_checker;
};

CCADocParser::CCADocParser(SDK::IApplication* application, SyntaxParser::ISPDocument* source,
                           SyntaxParser::CDefRegions* defs, CErrorsStore* errorsManager,
                           CHtmlCustomItemsKeeper* customItems)
    : m_errorsManager(errorsManager),
      m_application(application),
      m_workers(std::make_shared<CCACheckWorkers>())
{
    if (!source)
        return;
    m_sourceAddress = source;
    m_source = source->weak_from_this();
    m_isShared = !m_source.expired();
    m_filePath = source->GetFilePath();
    m_check = CCADocumentCheck::Create(application, *source, defs, errorsManager, customItems, this);
    if (!m_check)
        return;
    if (Editor::IDocBuffer* buffer = source->GetBuffer()) {
        m_receiver = std::make_shared<CChangeReceiver>(this);
        auto onChange = [receiver = m_receiver.get()](Editor::IDocBuffer::IChangeContext* context) {
            receiver->OnChange(context);
        };
        m_changeConnection = buffer->GetChangeSignal().connect(
            Editor::IDocBuffer::ChangeSignal::slot_type(onChange).track_foreign(m_receiver));
    }
    CheckLater();
}

CCADocParser::~CCADocParser()
{
    // Only a check that nothing keeps alive can still run.
    while (m_busy)
        QThread::msleep(1);
    if (m_receiver)
        m_receiver->Detach();
    m_changeConnection.disconnect();
    if (m_check) {
        m_application->GetTimerService()->StopTimer(this);
        m_check->ReleaseMarkupCheckers();
    }
    DropErrorsOutsideProject();
    m_valid = 0;
}

void CCADocParser::InitPtr(boost::shared_ptr<CCADocParser> self)
{
    m_self = std::move(self);
}

void CCADocParser::DestroyPtr()
{
    m_self.reset();
    m_closed = true;
}

void CCADocParser::Follow(const SWantedChecks& wanted)
{
    if (m_check)
        m_check->Follow(wanted);
}

void CCADocParser::SetWorkers(std::shared_ptr<CCACheckWorkers> workers)
{
    m_workers = std::move(workers);
}

void CCADocParser::OnTextChange(Editor::IDocBuffer::IChangeContext* /*context*/)
{
    m_edited = true;
    CheckLater();
}

void CCADocParser::OnTimer()
{
    if (!BeginCheck())
        return;
    auto* thread = new CCADocParserThread(this);
    QObject::connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    m_workers->AddThread(thread, m_check->GetCancelFlag());
    thread->start();
    if (!thread->isRunning() && !thread->isFinished()) {
        // The system has no thread to give: try again later.
        delete thread;
        EndCheck();
        CheckLater();
    }
}

void CCADocParser::CheckNow()
{
    if (!BeginCheck())
        return;
    RunCheck();
    EndCheck();
}

void CCADocParser::CheckLater()
{
    if (!m_check)
        return;
    m_checkDue = true;
    m_application->GetTimerService()->StartTimer(this);
}

bool CCADocParser::BeginCheck()
{
    // When the document is closed the checker may be dying in its worker thread.
    if (m_closed || !m_check)
        return false;
    if (m_busy) {
        CheckLater();
        return false;
    }
    const boost::shared_ptr<SyntaxParser::ISPDocument> source = LockSource();
    if (!source)
        return false;
    const std::wstring path = source->GetFilePath();
    if (!m_workers->BeginCheck(path)) {
        CheckLater();
        return false;
    }
    // What the last check has posted must not arrive behind the removal.
    m_errorsManager->DeliverPosted();
    m_oldErrors.clear();
    m_errorsManager->GetErrors(path, m_oldErrors);
    m_oldDetails = m_errorsManager->GetDetails(path);
    m_errorsManager->RemoveErrors(path);
    m_busy = 1;
    m_checkDue = false;
    m_application->GetTimerService()->StopTimer(this);
    m_check->SetDetailed(m_errorsManager->IsDetailed());
    m_told = m_errorsManager->BeginCheck(path, true);
    m_check->TakeSnapshot(*source, path);
    m_keepAlive = m_self;
    m_checkedSource = source;
    m_filePath = path;
    return true;
}

void CCADocParser::ParseInThread()
{
    RunCheck();
    EndCheck();
}

void CCADocParser::RunCheck()
{
    const ECheckEnd end = m_check->Run();
    if (end != ECheckEnd::Complete)
        m_errorsManager->RestoreErrors(m_filePath, m_oldErrors, m_oldDetails);
    if (end == ECheckEnd::Failed)
        m_errorsManager->TellFailure(m_filePath, m_check->GetFailure());
    m_errorsManager->EndCheck(m_told, end);
}

bool CCADocParser::WasCancelled() const
{
    return m_check && m_check->GetEnd() == ECheckEnd::GivenUp;
}

void CCADocParser::EndCheck()
{
    // Once busy is clear the GUI thread may begin the next check, so everything is taken out before.
    const std::wstring path = m_filePath;
    const std::shared_ptr<CCACheckWorkers> workers = m_workers;
    boost::shared_ptr<CCADocParser> keepAlive;
    keepAlive.swap(m_keepAlive);
    m_checkedSource.reset();
    m_busy = 0;
    // The checker ends here when its document was closed meanwhile, and posts the removal of its errors:
    // only then may another check of the file begin.
    keepAlive.reset();
    workers->EndCheck(path);
}

bool CCADocParser::IsDocument(SyntaxParser::ISPDocument* document) const
{
    return document && document == m_sourceAddress;
}

bool CCADocParser::IsDocument(SDK::IDocument* document) const
{
    const boost::shared_ptr<SyntaxParser::ISPDocument> source = HoldSource();
    return document && source && source->GetDocument() == document;
}

std::wstring CCADocParser::GetFilePath() const
{
    try {
        const boost::shared_ptr<SyntaxParser::ISPDocument> source = LockSource();
        if (!source)
            throw Base::CAccessViolation(108, "CodeAnalyzer/Components/CCADocManager");
        return source->GetFilePath();
    } catch (const Base::CAccessViolation&) {
        return {};
    }
}

boost::shared_ptr<SyntaxParser::ISPDocument> CCADocParser::HoldSource() const
{
    boost::shared_ptr<SyntaxParser::ISPDocument> source = m_source.lock();
    if (!m_isShared && m_sourceAddress)
        source.reset(m_sourceAddress, [](SyntaxParser::ISPDocument*) {});
    return source;
}

boost::shared_ptr<SyntaxParser::ISPDocument> CCADocParser::LockSource() const
{
    boost::shared_ptr<SyntaxParser::ISPDocument> source = HoldSource();
    if (source && source->Valid != 10)
        source.reset();
    return source;
}

void CCADocParser::DropErrorsOutsideProject()
{
    try {
        auto component = Base::GetHostComponent<ProjectManager::IPMComponent>(m_application, L"IPMComponent");
        ProjectManager::IProjectManager* pm = component->GetProjectManager();
        if (pm->IsOpened() && pm->BelongsToProject(m_filePath))
            return;
    } catch (const Base::CException&) {
        // Without a project manager no file belongs to a project.
    }
    m_errorsManager->RemoveErrorsMSG(m_filePath);
}

} // namespace Kesh::CodeAnalyzer
