#include "Jobs/Jobs.h"

#include "Interrupt.h"

#include <algorithm>
#include <sched.h>

namespace Kesh::CommandLine {

namespace {

/// Fewer are checked before a second process has started.
constexpr std::size_t InputsThatPay = 48;

std::size_t Cores()
{
    cpu_set_t set;
    CPU_ZERO(&set);
    return ::sched_getaffinity(0, sizeof set, &set) == 0 ? static_cast<std::size_t>(CPU_COUNT(&set)) : 1;
}

} // namespace

std::size_t JobsFor(std::size_t inputs, std::size_t wanted)
{
    if (wanted == 0)
        wanted = inputs < InputsThatPay ? 1 : Cores();
    return std::clamp<std::size_t>(wanted, 1, std::max<std::size_t>(1, inputs));
}

void RunJobs(CWorkerPool::STask task)
{
    if (task.jobs > 1)
        return CWorkerPool(std::move(task)).Run();
    for (std::size_t input = 0; input < task.order.Size() && !InterruptSignal(); ++input) {
        task.onProgress(input, input);
        task.onResult(task.check(input));
    }
}

} // namespace Kesh::CommandLine
