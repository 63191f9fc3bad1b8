#pragma once

#include "Jobs/Result.h"
#include "Jobs/SharedProgress.h"

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
        std::size_t inputs;
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
        std::size_t last = 0;
        bool hasReported = false;
    };

    bool Start(std::size_t number, std::vector<std::size_t> again);
    void Wait(int milliseconds);
    void Read(std::size_t number);
    void Take(SWorker& worker);
    void End(std::size_t number);
    void NoteCrash(std::size_t input, int status);
    /// The inputs that the worker had taken and has not reported.
    std::vector<std::size_t> LostWith(std::size_t number);
    void HandOut();
    void Interrupt();
    bool IsRunning() const;
    bool MayRead(const SWorker& worker) const;

    STask m_task;
    std::size_t m_chunk;
    CSharedProgress m_progress;
    std::vector<SWorker> m_workers;
    std::map<std::size_t, SResult> m_pending; ///< results that wait for those before them
    std::vector<bool> m_done;
    std::size_t m_next = 0; ///< the next input to hand out
    std::size_t m_doneCount = 0;
};

} // namespace Kesh::CommandLine
