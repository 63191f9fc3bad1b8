#include "ProjectOpener.h"

#include "ProjectManager/FileFinder.h"
#include "ProjectManager/ProjectManager.h"

#include <QThread>

namespace Kesh::Workbench {

CProjectOpener::CProjectOpener() = default;

CProjectOpener::~CProjectOpener()
{
    Cancel();
}

void CProjectOpener::Start(const std::wstring& folder)
{
    Cancel();
    struct SResult
    {
        std::vector<std::wstring> files;
        QString problem;
    };
    const auto result = std::make_shared<SResult>();
    m_cancelled = std::make_shared<std::atomic<bool>>(false);
    m_thread.reset(QThread::create([folder, result, cancelled = m_cancelled] {
        ProjectManager::SFileQuery query = ProjectManager::CProjectManager::MakeQuery();
        query.isCancelled = [&] { return cancelled->load(); };
        query.onError = [&](const std::wstring& path, const std::string& reason) {
            if (path == folder)
                result->problem = QString::fromStdString(reason);
        };
        result->files = ProjectManager::FindFiles(folder, query);
    }));
    connect(m_thread.get(), &QThread::finished, this, [this, folder, result, cancelled = m_cancelled] {
        if (*cancelled)
            return; // another search has taken its place
        m_thread->wait();
        m_thread.release()->deleteLater();
        emit listed(folder, result->files, result->problem);
    });
    m_thread->start();
}

void CProjectOpener::Cancel()
{
    if (!m_thread)
        return;
    *m_cancelled = true;
    m_thread->wait();
    m_thread.reset();
}

} // namespace Kesh::Workbench
