#pragma once

#include "Jobs/Result.h"
#include "Jobs/SharedProgress.h"

#include <vector>

namespace Kesh::CommandLine {

/// What one worker process does.
struct SWorkerTask
{
    CSharedProgress& progress;
    std::size_t number; ///< among the workers
    std::size_t jobs;
    const CWorkOrder& order;
    std::vector<std::size_t> again; ///< inputs that a worker before this one has left behind
    int pipe;                       ///< takes the results
    const TCheckInput& check;
};

/// Checks inputs until none is left or an interrupt comes, and ends the process.
[[noreturn]] void RunWorker(const SWorkerTask& task);

} // namespace Kesh::CommandLine
