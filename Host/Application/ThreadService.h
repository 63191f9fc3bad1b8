#pragma once

#include "Kesh/SDK/IServices.h"

#include <QObject>
#include <boost/signals2/signal.hpp>
#include <cstdint>
#include <map>
#include <memory>

namespace Kesh::Host {

class CThreadObject;

/// The host's worker threads.
class CThreadService final : public SDK::IThreadService
{
public:
    /// GUI thread, on which every Finished() will run.
    CThreadService();
    /// Stops what still runs.
    ~CThreadService();

    SDK::IThreadObject* CreateThread(SDK::IThread* body, int flag) override;
    /// A thread could not be started, because the system has none to give. GUI thread.
    boost::signals2::signal<void()>& GetStartErrorSignal() { return m_startError; }
    /// Whether any thread has been started and is not finished. GUI thread.
    bool IsRunning() const { return !m_threads.empty(); }

private:
    friend class CThreadObject;
    /// Delivers Finished() of the thread, once.
    void Finish(std::uint64_t id);
    /// The same for one that could not be started.
    void Abandon(std::uint64_t id);

    QObject m_context; ///< receiver of the threads' queued notices
    boost::signals2::signal<void()> m_startError;
    std::uint64_t m_nextId = 1;
    std::map<std::uint64_t, std::unique_ptr<CThreadObject>> m_threads;
};

} // namespace Kesh::Host
