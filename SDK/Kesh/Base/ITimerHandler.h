#pragma once

#include <string>

namespace Kesh::Base {

/// Receiver of a one-shot delay of the host's timer service (see Kesh::SDK::ITimerService).
class ITimerHandler
{
public:
    /// The delay has run out. GUI thread.
    virtual void OnTimer() = 0;
    /// The delay in milliseconds, asked each time the timer is started.
    virtual int GetDelay() = 0;
    /// Name for the host's diagnostics.
    virtual std::wstring GetName() = 0;

protected:
    ~ITimerHandler() = default;
};

} // namespace Kesh::Base
