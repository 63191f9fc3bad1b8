#include "Components/CAProjectHandler.h"

#include "Base/CommonString.h"
#include "Base/HostComponent.h"
#include "Components/CACheckWorkers.h"
#include "Components/CAComponent.h"
#include "Components/CADocManager.h"
#include "Components/CAErrorsBar.h"
#include "Components/CAErrorsEvent.h"
#include "Components/CAErrorsManager.h"
#include "Components/CASavedErrors.h"
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

bool IsChecked(const std::wstring& file)
{
    // Anywhere in the path, so that a folder of this name is left out with all that it holds.
    for (const wchar_t* part : {L".sql", L".htm", L".html", L".css", L".ctp", L".tpl", L".inc"})
        if (file.find(part) != std::wstring::npos)
            return false;
    return QFileInfo(QString::fromStdWString(file)).size() <= MaxFileSize;
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
}

void CCAProjectHandler::Shutdown()
{
    if (m_thread)
        m_thread->Stop(nullptr);
}

void CCAProjectHandler::OnProjectParsecomplete()
{
    auto component = Base::GetHostComponent<IPMComponent>(m_application, L"IPMComponent");
    IProjectManager* pm = component->GetProjectManager();
    // A project that is parsed anew is checked anew.
    if (m_thread)
        m_thread->Stop(pm);
    RemoveErrorsOfLeavers(pm);
    try {
        LoadErrors(pm);
    } catch (...) {
        // Errors that cannot be restored are found anew.
    }
    // The restored errors of open documents are as old as the project's last close.
    if (m_docManager)
        m_docManager->CheckAllLater();
    StartThread();
}

void CCAProjectHandler::OnCloseProject(IProjectManager* pm)
{
    if (m_thread)
        m_thread->Stop(pm);
    // A document that was closed during its check keeps its errors for as long as the project has the file.
    m_workers->WaitForThreads();
    // What the threads have found but the bar has not seen yet is to be saved, and must not come after the
    // clear.
    m_errorsManager->DeliverPosted();
    SaveErrors(pm);
    m_reopenedFiles.clear();
    if (pm->IsReopening()) {
        m_reopenedFiles = pm->GetFiles();
        return;
    }
    for (const std::wstring& file : pm->GetFiles())
        m_errorsManager->RemoveErrors(file);
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
    if (!m_thread && component->GetProjectManager()->IsOpened())
        StartThread();
}

void CCAProjectHandler::StartThread()
{
    m_thread = m_application->GetThreadService()->CreateThread(this, 0);
    if (m_thread)
        m_thread->Start();
}

void CCAProjectHandler::Finished()
{
    m_thread = nullptr;
}

void CCAProjectHandler::SaveErrors(IProjectManager* pm)
{
    std::vector<SSavedFileErrors> files;
    for (const std::wstring& file : pm->GetFiles()) {
        std::vector<SCAError> errors;
        m_errorsManager->GetErrors(file, errors);
        if (!errors.empty())
            files.push_back({file, std::move(errors)});
    }
    pm->SetData(ErrorsItem, WriteSavedErrors(files));
}

void CCAProjectHandler::LoadErrors(IProjectManager* pm)
{
    const auto cache = pm->GetFilesCache();
    if (!cache || cache->files.empty())
        return;
    std::set<std::wstring> lowerFiles;
    for (const std::wstring& file : cache->files)
        lowerFiles.insert(Base::CCommonString::LowerCaseFast(file));
    for (const auto& [file, errors] : ReadSavedErrors(pm->GetData(ErrorsItem), lowerFiles))
        m_errorsManager->AddErrorsMT(file, errors);
}

void CCAProjectHandler::Run()
{
    const CProgress progress(m_application->GetMainFrame());
    const auto pmComponent = Base::GetHostComponent<IPMComponent>(m_application, L"IPMComponent");
    const auto parser = Base::GetHostComponent<IParserComponent>(m_application, L"IParserComponent");
    IProjectManager* pm = pmComponent->GetProjectManager();

    const auto cache = pm->GetFilesCache();
    const std::vector<std::wstring> files = cache && !cache->files.empty() ? cache->files : pm->GetFiles();
    for (const std::wstring& file : files) {
        WaitForDelivery();
        if (IsStopRequested())
            return;
        if (!IsChecked(file))
            continue;
        try {
            CheckFile(*parser, file);
        } catch (...) {
            // Whatever is wrong with this file, the user wants to know about the others.
        }
    }
    if (CCAErrorsBar* bar = m_component->GetErrorsBar())
        QCoreApplication::postEvent(bar, new CCAErrorsEvent(CCAErrorsEvent::ProjectFinished, L"", {}));
}

bool CCAProjectHandler::IsStopRequested() const
{
    return m_thread && m_thread->IsStopRequested();
}

void CCAProjectHandler::WaitForDelivery() const
{
    // While more events are posted than are delivered the GUI thread does nothing but deliver them, so from
    // time to time it must come to an end.
    if (CCAErrorsEvent::GetLivingCount() <= MaxUndelivered)
        return;
    while (CCAErrorsEvent::GetLivingCount() > 0 && !IsStopRequested())
        QThread::msleep(1);
}

void CCAProjectHandler::CheckFile(IParserComponent& parser, const std::wstring& file)
{
    // A document of the file that is being checked reports its errors itself.
    const CCACheckWorkers::CCheck check(*m_workers, file);
    if (!check)
        return;
    const auto document = parser.GetParsedDocument(file);
    if (!document)
        return;
    m_errorsManager->RemoveErrorsMSG(file);
    CPhpSyntaxParser phpParser(document->GetDefRegions(), m_errorsManager);
    phpParser.SteFileName(file);
    phpParser.InitParser(document);
    document->Parse(true);
}

} // namespace Kesh::CodeAnalyzer
