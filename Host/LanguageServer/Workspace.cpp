#include "LanguageServer/Workspace.h"

#include "Application/Application.h"
#include "Application/ParserComponent.h"
#include "Base/Exception.h"
#include "Files/Fault.h"
#include "Findings/CheckedFiles.h"
#include "ProjectManager/ProjectManager.h"

#include <algorithm>

namespace Kesh::LanguageServer {

namespace {

constexpr int SoonDelay = 500;     ///< milliseconds
constexpr int ProgressDelay = 150; ///< between two reports

} // namespace

CWorkspace::CWorkspace(Host::CApplication& application, CConnection& connection,
                       const CProjectSettings& settings, std::function<void()> onFound)
    : m_application(application),
      m_connection(connection),
      m_settings(settings),
      m_onFound(std::move(onFound))
{
    m_soon.setSingleShot(true);
    m_soon.setInterval(SoonDelay);
    QObject::connect(&m_soon, &QTimer::timeout, &m_context, [this] { CheckAll(); });
    m_progress.setInterval(ProgressDelay);
    QObject::connect(&m_progress, &QTimer::timeout, &m_context, [this] { ShowProgress(); });
    m_application.Parser().SetFileHook([this](const std::wstring&) { ++m_asked; });
}

CWorkspace::~CWorkspace()
{
    EndSearch();
    m_application.Project().Close();
    m_application.Parser().SetFileHook({});
}

void CWorkspace::AddFolder(const std::wstring& path)
{
    if (std::find(m_folders.begin(), m_folders.end(), path) == m_folders.end())
        m_folders.push_back(path);
}

void CWorkspace::RemoveFolder(const std::wstring& path)
{
    std::erase(m_folders, path);
}

bool CWorkspace::Takes(const std::wstring& path) const
{
    return std::any_of(m_folders.begin(), m_folders.end(), [&](const std::wstring& folder) {
        return ProjectManager::IsFoundIn(folder, path, Findings::CheckedFiles(folder, m_settings.Rules()));
    });
}

bool CWorkspace::IsBusy() const
{
    return m_isSearching || m_soon.isActive() || m_application.Threads().IsRunning();
}

void CWorkspace::CheckNothing()
{
    m_soon.stop();
    EndSearch();
    m_application.Project().Close();
}

void CWorkspace::EndSearch()
{
    ++m_searches;
    m_cancelled = true;
    if (m_search.joinable())
        m_search.join();
    m_cancelled = false;
    m_isSearching = false;
}

void CWorkspace::CheckAll()
{
    m_soon.stop();
    EndSearch();
    if (m_folders.empty()) {
        m_application.Project().Close();
        return;
    }
    m_isSearching = true;
    m_search = std::thread([this, search = m_searches, folders = m_folders, rules = m_settings.Rules()] {
        auto files = std::make_shared<std::vector<std::wstring>>();
        Host::Guard(L"find files", [&] {
            for (const std::wstring& folder : folders) {
                ProjectManager::SFileQuery query = Findings::CheckedFiles(folder, rules);
                query.isCancelled = [this] { return m_cancelled.load(); };
                const std::vector<std::wstring> found = ProjectManager::FindFiles(folder, query);
                files->insert(files->end(), found.begin(), found.end());
            }
            // One folder may lie in another.
            std::sort(files->begin(), files->end());
            files->erase(std::unique(files->begin(), files->end()), files->end());
        });
        if (!m_cancelled)
            QMetaObject::invokeMethod(
                &m_context, [this, search, files] { OnFound(search, std::move(*files)); },
                Qt::QueuedConnection);
    });
}

void CWorkspace::OnFound(int search, std::vector<std::wstring> files)
{
    if (search != m_searches)
        return;
    m_isSearching = false;
    m_onFound();
    m_asked = 0;
    const std::size_t total = files.size();
    try {
        if (m_application.Project().GetFolder() == m_folders.front())
            m_application.ReopenProject(std::move(files));
        else
            m_application.OpenProject(m_folders.front(), std::move(files));
        BeginProgress(total);
    } catch (const Base::CWorkError& fault) {
        m_connection.Notify("window/logMessage", {{"type", 1}, {"message", fault.what()}});
    }
}

void CWorkspace::BeginProgress(std::size_t total)
{
    m_total = total;
    if (!m_progressWanted || total == 0 || !m_token.is_null())
        return;
    m_token = "code-analyzer/" + std::to_string(m_nextToken++);
    m_connection.Request("window/workDoneProgress/create", {{"token", m_token}});
    m_connection.Notify("$/progress", {{"token", m_token},
                                       {"value",
                                        {{"kind", "begin"},
                                         {"title", "Checking the project"},
                                         {"percentage", 0},
                                         {"cancellable", false}}}});
    m_progress.start();
}

void CWorkspace::ShowProgress()
{
    const std::size_t asked = std::min(m_asked.load(), m_total);
    const std::size_t percentage = m_total ? 100 * asked / m_total : 100;
    const std::string counted = std::to_string(asked) + '/' + std::to_string(m_total);
    if (m_application.Threads().IsRunning()) {
        m_connection.Notify(
            "$/progress",
            {{"token", m_token},
             {"value", {{"kind", "report"}, {"message", counted}, {"percentage", percentage}}}});
        return;
    }
    m_progress.stop();
    m_connection.Notify("$/progress",
                        {{"token", m_token}, {"value", {{"kind", "end"}, {"message", counted}}}});
    m_token = json();
}

} // namespace Kesh::LanguageServer
