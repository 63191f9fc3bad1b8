#include "Components/CACheckWorkers.h"

#include <utility>

namespace Kesh::CodeAnalyzer {

bool CCACheckWorkers::BeginCheck(const std::wstring& file)
{
    std::lock_guard lock(m_mutex);
    return m_files.insert(file).second;
}

void CCACheckWorkers::EndCheck(const std::wstring& file)
{
    std::lock_guard lock(m_mutex);
    m_files.erase(file);
}

void CCACheckWorkers::AddThread(QThread* thread, TCancelFlag cancelled)
{
    std::erase_if(m_workers, [](const SWorker& known) { return known.thread.isNull(); });
    m_workers.push_back({thread, std::move(cancelled)});
}

void CCACheckWorkers::EndThreads()
{
    for (const SWorker& worker : m_workers)
        if (worker.thread)
            *worker.cancelled = true;
    for (const SWorker& worker : m_workers)
        if (worker.thread) {
            worker.thread->wait();
            delete worker.thread.data();
        }
    m_workers.clear();
}

} // namespace Kesh::CodeAnalyzer
