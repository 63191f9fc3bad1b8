#include "Application/ThreadService.h"

#include "Files/Fault.h"

#include <QString>
#include <QThread>
#include <algorithm>
#include <atomic>

namespace Kesh::Host {

class CThreadObject final : public QThread, public SDK::IThreadObject
{
public:
    CThreadObject(CThreadService& service, std::uint64_t id, SDK::IThread* body)
        : m_service(service), m_id(id), m_body(body)
    {
        setObjectName(QString::fromStdWString(body->GetThreadName()));
    }

    void Start() override
    {
        const int priority = std::clamp<int>(m_body->GetPriority(), IdlePriority, InheritPriority);
        start(static_cast<Priority>(priority));
        // Without a thread to give, the system leaves it as it was; this object is gone afterwards.
        if (!isRunning() && !isFinished())
            m_service.Abandon(m_id);
    }
    void Stop(ProjectManager::IProjectManager* /*pm*/) override
    {
        m_stopRequested = true;
        m_service.Finish(m_id);
    }
    int IsStopRequested() override { return m_stopRequested; }

    SDK::IThread* GetBody() const { return m_body; }

protected:
    void run() override
    {
        Guard(L"thread", [this] { m_body->Run(); });
    }

private:
    CThreadService& m_service;
    std::uint64_t m_id;
    SDK::IThread* m_body;
    std::atomic<int> m_stopRequested{0};
};

CThreadService::CThreadService() = default;

CThreadService::~CThreadService()
{
    while (!m_threads.empty())
        m_threads.begin()->second->Stop(nullptr);
}

SDK::IThreadObject* CThreadService::CreateThread(SDK::IThread* body, int /*flag*/)
{
    Q_ASSERT(QThread::currentThread() == m_context.thread());
    const std::uint64_t id = m_nextId++;
    auto& thread = m_threads[id];
    thread = std::make_unique<CThreadObject>(*this, id, body);
    // By number, not by pointer: Stop() may have ended the thread before this notice arrives.
    QObject::connect(thread.get(), &QThread::finished, &m_context, [this, id] { Finish(id); });
    return thread.get();
}

void CThreadService::Abandon(std::uint64_t id)
{
    m_startError();
    Finish(id);
}

void CThreadService::Finish(std::uint64_t id)
{
    const auto found = m_threads.find(id);
    if (found == m_threads.end())
        return;
    // Out of the map first: Finished() may start the next thread, or stop this one.
    const std::unique_ptr<CThreadObject> thread = std::move(found->second);
    m_threads.erase(found);
    thread->wait();
    Guard(L"thread end", [&] { thread->GetBody()->Finished(); });
    thread->GetBody()->Free();
}

} // namespace Kesh::Host
