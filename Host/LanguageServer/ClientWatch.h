#pragma once

#include <QTimer>
#include <functional>

namespace Kesh::LanguageServer {

/// Tells when a process is gone: an editor that was killed says nothing. GUI thread only.
class CClientWatch
{
public:
    explicit CClientWatch(std::function<void()> onGone);

    /// Follows a process instead of any other. One that does not exist to begin with, as from inside of a
    /// container, is not followed.
    void Follow(long process);

private:
    std::function<void()> m_onGone;
    long m_process = 0;
    QTimer m_timer;
};

} // namespace Kesh::LanguageServer
