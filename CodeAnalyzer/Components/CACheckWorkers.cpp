#include "Components/CACheckWorkers.h"

#include <algorithm>

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

void CCACheckWorkers::AddThread(QThread* thread)
{
    std::erase_if(m_threads, [](const QPointer<QThread>& known) { return known.isNull(); });
    m_threads.emplace_back(thread);
}

void CCACheckWorkers::WaitForThreads()
{
    for (const QPointer<QThread>& thread : m_threads)
        if (thread) {
            thread->wait();
            delete thread.data();
        }
    m_threads.clear();
}

} // namespace Kesh::CodeAnalyzer
