#pragma once

#include "Jobs/Result.h"
#include "Jobs/SharedProgress.h"
#include "Jobs/WorkOrder.h"

#include <cstddef>
#include <deque>
#include <map>
#include <string>
#include <sys/types.h>
#include <vector>

namespace Kesh::CommandLine {

/// Checks inputs in several processes at once and hands out the results in the order of the inputs.
class CWorkerPool
{
public:
    struct STask
    {
        CWorkOrder order; ///< holds for several jobs
        std::size_t jobs;
        TCheckInput check; ///< is called in the workers
        TResultSink onResult;
        TProgressSink onProgress;
    };

    /// The process must have no threads.
    explicit CWorkerPool(STask task);
    /// Ends workers that still run.
    ~CWorkerPool();
    CWorkerPool(const CWorkerPool&) = delete;
    CWorkerPool& operator=(const CWorkerPool&) = delete;

    /// Until all inputs are done or an interrupt comes; what has been found until then is handed out in that
    /// case. Throws Base::CWorkError when no process can be started.
    void Run();

private:
    struct SWorker
    {
        pid_t process = 0;              ///< 0: none
        int pipe = -1;                  ///< gives its results
        std::string bytes;              ///< of results that are not complete yet
        std::vector<std::size_t> again; ///< inputs that it was started with
        std::size_t last = 0;           ///< the place of the last input that it has reported
        bool hasReported = false;
    };

    bool Start(std::size_t number, std::vector<std::size_t> again);
    void Wait(int milliseconds);
    void Read(std::size_t number);
    void Take(SWorker& worker);
    void NoteDone(std::size_t input, SResult&& result);
    void End(std::size_t number);
    /// The inputs that the worker had taken and has not reported.
    std::vector<std::size_t> LostWith(std::size_t number);
    void HandOut();
    void Interrupt();
    bool IsRunning() const;
    bool MayRead(const SWorker& worker) const;
    std::size_t Inputs() const { return m_task.order.Size(); }

    STask m_task;
    std::vector<std::size_t> m_places; ///< of the inputs in that order
    CSharedProgress m_progress;
    std::vector<SWorker> m_workers;
    std::map<std::size_t, SResult> m_pending; ///< results that wait for those before them
    std::vector<bool> m_done;
    std::size_t m_next = 0;      ///< the next input to hand out
    std::size_t m_firstOpen = 0; ///< the first place whose input is not done
    std::size_t m_doneCount = 0;
};

} // namespace Kesh::CommandLine
