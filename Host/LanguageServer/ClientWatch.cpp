#include "LanguageServer/ClientWatch.h"

#include <cerrno>
#include <csignal>
#include <sys/types.h>
#include <utility>

namespace Kesh::LanguageServer {

namespace {

constexpr int Interval = 2000; ///< milliseconds

bool IsGone(long process)
{
    return ::kill(static_cast<pid_t>(process), 0) != 0 && errno == ESRCH;
}

} // namespace

CClientWatch::CClientWatch(std::function<void()> onGone) : m_onGone(std::move(onGone))
{
    m_timer.setInterval(Interval);
    QObject::connect(&m_timer, &QTimer::timeout, [this] {
        if (!IsGone(m_process))
            return;
        m_timer.stop();
        m_onGone();
    });
}

void CClientWatch::Follow(long process)
{
    // What is not positive stands for groups of processes.
    if (process <= 0 || IsGone(process)) {
        m_timer.stop();
        return;
    }
    m_process = process;
    m_timer.start();
}

} // namespace Kesh::LanguageServer
