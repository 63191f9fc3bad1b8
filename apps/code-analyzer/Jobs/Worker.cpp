#include "Jobs/Worker.h"

#include "Interrupt.h"
#include "Jobs/Wire.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <string>
#include <sys/prctl.h>
#include <unistd.h>

namespace Kesh::CommandLine {

namespace {

/// Checks some inputs and reports them in one piece; false: there is nobody to work for any more.
class CChunks
{
public:
    explicit CChunks(const SWorkerTask& task) : m_task(task) {}

    void Check(std::size_t input)
    {
        m_task.progress.Of(m_task.number).current = input;
        AppendFrame(m_frames, m_task.check(input));
        m_task.progress.Of(m_task.number).current = CSharedProgress::None;
    }
    bool Report()
    {
        for (std::size_t at = 0; at < m_frames.size();) {
            const ssize_t count = ::write(m_task.pipe, m_frames.data() + at, m_frames.size() - at);
            if (count < 0 && errno == EINTR)
                continue;
            if (count < 0)
                return false;
            at += static_cast<std::size_t>(count);
        }
        m_frames.clear();
        return !InterruptSignal();
    }

private:
    const SWorkerTask& m_task;
    std::string m_frames;
};

} // namespace

void RunWorker(const SWorkerTask& task)
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    CChunks chunks(task);
    bool wanted = true;
    for (std::size_t i = 0; wanted && i < task.again.size(); ++i) {
        chunks.Check(task.again[i]);
        wanted = chunks.Report();
    }
    while (wanted) {
        const std::size_t begin = task.progress.Claim(task.number, task.order, task.jobs);
        const std::size_t end = std::min(begin + task.order.ChunkAt(begin, task.jobs), task.order.Size());
        if (begin >= end)
            break;
        for (std::size_t place = begin; place < end && !InterruptSignal(); ++place)
            chunks.Check(task.order[place]);
        wanted = chunks.Report();
    }
    // Without the exit handlers: what is buffered belongs to the process that started this one.
    ::_exit(0);
}

} // namespace Kesh::CommandLine
