#pragma once

#include "Jobs/WorkerPool.h"

namespace Kesh::CommandLine {

/// How many processes are to check so many inputs when the user wants `wanted`; 0: as many as pay.
std::size_t JobsFor(std::size_t inputs, std::size_t wanted);
/// Checks all inputs, in order and in this process when there is one job, until they are done or an interrupt
/// comes. Throws Base::CWorkError when no process can be started.
void RunJobs(CWorkerPool::STask task);

} // namespace Kesh::CommandLine
