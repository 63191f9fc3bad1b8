#pragma once

#include "Kesh/SDK/IServices.h"

#include <QTimer>
#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <vector>

namespace Kesh::Host {

/// The host's one-shot delays. One QTimer serves them all, so that stopping a delay touches nothing that
/// belongs to the GUI thread.
class CTimerService final : public SDK::ITimerService
{
public:
    /// GUI thread, on which every OnTimer() will run.
    CTimerService();

    void StartTimer(Base::ITimerHandler* handler) override;
    void StopTimer(Base::ITimerHandler* handler) override;

    /// For hosts with other habits, and tests: every later StartTimer() waits this many milliseconds instead
    /// of the handler's delay; -1 ends that.
    void SetDelayOverride(int milliseconds) { m_delayOverride = milliseconds; }

private:
    using TClock = std::chrono::steady_clock;

    void OnTimeout();
    void ArmForEarliest();

    QTimer m_timer;
    int m_delayOverride = -1;
    std::mutex m_mutex; ///< guards what follows
    std::condition_variable m_ended;
    std::map<Base::ITimerHandler*, TClock::time_point> m_due;
    /// Those whose OnTimer() runs; more than one only when an OnTimer() runs an event loop of its own.
    std::vector<Base::ITimerHandler*> m_running;
};

} // namespace Kesh::Host
