#include "Application/TimerService.h"

#include "Files/Fault.h"

#include <QThread>
#include <algorithm>

namespace Kesh::Host {

CTimerService::CTimerService()
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { OnTimeout(); });
}

void CTimerService::StartTimer(Base::ITimerHandler* handler)
{
    Q_ASSERT(QThread::currentThread() == m_timer.thread());
    const int delay = m_delayOverride >= 0 ? m_delayOverride : std::max(0, handler->GetDelay());
    const std::lock_guard lock(m_mutex);
    m_due[handler] = TClock::now() + std::chrono::milliseconds(delay);
    ArmForEarliest();
}

void CTimerService::StopTimer(Base::ITimerHandler* handler)
{
    const bool onGuiThread = QThread::currentThread() == m_timer.thread();
    std::unique_lock lock(m_mutex);
    // A handler that runs may start itself again, hence erasing after the wait.
    if (!onGuiThread)
        m_ended.wait(
            lock, [&] { return std::find(m_running.begin(), m_running.end(), handler) == m_running.end(); });
    m_due.erase(handler);
}

void CTimerService::OnTimeout()
{
    std::unique_lock lock(m_mutex);
    const auto next = std::min_element(m_due.begin(), m_due.end(),
                                       [](const auto& a, const auto& b) { return a.second < b.second; });
    if (next == m_due.end() || TClock::now() < next->second)
        return ArmForEarliest();
    Base::ITimerHandler* handler = next->first;
    m_due.erase(next);
    m_running.push_back(handler);
    ArmForEarliest();
    lock.unlock();
    Guard(L"timer", [&] { handler->OnTimer(); });
    lock.lock();
    m_running.erase(std::find(m_running.begin(), m_running.end(), handler));
    m_ended.notify_all();
}

void CTimerService::ArmForEarliest()
{
    if (m_due.empty())
        return;
    auto earliest = TClock::time_point::max();
    for (const auto& [handler, due] : m_due)
        earliest = std::min(earliest, due);
    const auto wait = std::chrono::ceil<std::chrono::milliseconds>(earliest - TClock::now());
    m_timer.start(std::max(std::chrono::milliseconds(0), wait));
}

} // namespace Kesh::Host
