#pragma once

#include "Kesh/Base/IBase.h"
#include "Kesh/Base/ITimerHandler.h"

#include <string>

namespace Kesh::ProjectManager {
class IProjectManager;
}

namespace Kesh::SDK {

/// Named values, kept from one run of the host to the next. GUI thread only.
class ISettings
{
public:
    virtual int HasSection(const std::wstring& section) = 0;
    virtual std::wstring GetString(const std::wstring& section, const std::wstring& key,
                                   const std::wstring& defaultValue) = 0;
    virtual void SetString(const std::wstring& section, const std::wstring& key,
                           const std::wstring& value) = 0;

protected:
    ~ISettings() = default;
};

/// One-shot delays. OnTimer() always runs on the GUI thread.
class ITimerService
{
public:
    /// Starts or restarts the delay of `handler`. GUI thread.
    virtual void StartTimer(Base::ITimerHandler* handler) = 0;
    /// Stops it. Any thread. Once this returns, OnTimer() of `handler` neither runs nor will run, so the
    /// handler may be destroyed; it waits for one that runs on another thread. A handler that is not known
    /// is no error.
    virtual void StopTimer(Base::ITimerHandler* handler) = 0;

protected:
    ~ITimerService() = default;
};

/// The body of a host thread.
class IThread : public Base::IBase
{
public:
    /// Runs on the worker thread.
    virtual void Run() = 0;
    /// Runs on the GUI thread after Run() has returned; the thread object dies after it.
    virtual void Finished() = 0;
    /// A QThread::Priority value.
    virtual int GetPriority() = 0;
    virtual std::wstring GetThreadName() = 0;

protected:
    ~IThread() = default;
};

/// A host thread. Owned by the host; valid until its body's Finished() has returned.
class IThreadObject
{
public:
    /// When the system has no thread to give, Finished() is called before this returns, without Run().
    virtual void Start() = 0;
    /// Asks the thread to stop and waits until Run() has returned. GUI thread. Finished() follows before this
    /// returns. The project manager is the one whose work is being stopped (may be null).
    virtual void Stop(ProjectManager::IProjectManager* pm) = 0;
    /// Whether the thread was asked to stop. Any thread.
    virtual int IsStopRequested() = 0;

protected:
    ~IThreadObject() = default;
};

class IThreadService
{
public:
    /// A thread that will run `body`, not yet started. `flag` is 0 (reserved). GUI thread.
    virtual IThreadObject* CreateThread(IThread* body, int flag) = 0;

protected:
    ~IThreadService() = default;
};

} // namespace Kesh::SDK
