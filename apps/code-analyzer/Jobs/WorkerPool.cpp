#include "Jobs/WorkerPool.h"

#include "Base/CommonString.h"
#include "Base/Exception.h"
#include "Interrupt.h"
#include "Jobs/Wire.h"
#include "Jobs/Worker.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace Kesh::CommandLine {

namespace {

/// How far workers may run ahead of an input that takes long: what they find has to be kept until then.
constexpr std::size_t Window = 4096;
/// What workers get to report the file they are at when an interrupt has come.
constexpr auto Grace = std::chrono::milliseconds(300);

std::string DeathOf(int status)
{
    if (WIFSIGNALED(status))
        return std::string("the check crashed (") + ::strsignal(WTERMSIG(status)) + ')';
    return "the check ended with status " + std::to_string(WEXITSTATUS(status));
}

} // namespace

CWorkerPool::CWorkerPool(STask task)
    : m_task(std::move(task)),
      m_places(Inputs()),
      m_progress(m_task.jobs),
      m_workers(m_task.jobs),
      m_done(Inputs())
{
    for (std::size_t place = 0; place < Inputs(); ++place)
        m_places[m_task.order[place]] = place;
}

CWorkerPool::~CWorkerPool()
{
    for (SWorker& worker : m_workers) {
        if (worker.process == 0)
            continue;
        ::kill(worker.process, SIGKILL);
        ::waitpid(worker.process, nullptr, 0);
        ::close(worker.pipe);
    }
}

void CWorkerPool::Run()
{
    // Buffered output must not be in the workers' memory too.
    std::fflush(nullptr);
    bool any = false;
    for (std::size_t number = 0; number < m_workers.size(); ++number)
        any |= Start(number, {});
    if (!any)
        throw Base::CWorkError(
            Base::CCommonString::FromUtf8(std::string("no process can be started: ") + std::strerror(errno)),
            __LINE__, "apps/code-analyzer/Jobs/WorkerPool");
    while (IsRunning() && !InterruptSignal()) {
        Wait(-1);
        HandOut();
        m_task.onProgress(m_doneCount, std::min(m_next, Inputs() - 1));
    }
    if (InterruptSignal())
        Interrupt();
}

bool CWorkerPool::Start(std::size_t number, std::vector<std::size_t> again)
{
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        return false;
    m_progress.Of(number).chunk = CSharedProgress::None;
    m_progress.Of(number).current = CSharedProgress::None;
    const pid_t process = ::fork();
    if (process == 0) {
        ::close(ends[0]);
        for (const SWorker& other : m_workers)
            if (other.process != 0)
                ::close(other.pipe);
        RunWorker({m_progress, number, m_task.jobs, m_task.order, again, ends[1], m_task.check});
    }
    ::close(ends[1]);
    if (process < 0) {
        ::close(ends[0]);
        return false;
    }
    ::fcntl(ends[0], F_SETFL, O_NONBLOCK);
    m_workers[number] = {process, ends[0], {}, std::move(again), 0, false};
    return true;
}

bool CWorkerPool::MayRead(const SWorker& worker) const
{
    // The worker that holds up the others has reported nothing behind the input that they wait for.
    return worker.process != 0 && !(worker.hasReported && worker.last > m_firstOpen + Window);
}

void CWorkerPool::Wait(int milliseconds)
{
    std::vector<pollfd> pipes;
    std::vector<std::size_t> numbers;
    for (std::size_t number = 0; number < m_workers.size(); ++number) {
        if (!MayRead(m_workers[number]))
            continue;
        pipes.push_back({m_workers[number].pipe, POLLIN, 0});
        numbers.push_back(number);
    }
    if (::poll(pipes.data(), pipes.size(), milliseconds) <= 0)
        return;
    for (std::size_t i = 0; i < pipes.size(); ++i)
        if (pipes[i].revents)
            Read(numbers[i]);
}

void CWorkerPool::Read(std::size_t number)
{
    SWorker& worker = m_workers[number];
    char block[1 << 16];
    const ssize_t count = ::read(worker.pipe, block, sizeof block);
    if (count > 0) {
        worker.bytes.append(block, static_cast<std::size_t>(count));
        Take(worker);
    } else if (count == 0) {
        End(number);
    }
}

void CWorkerPool::Take(SWorker& worker)
{
    std::string_view bytes = worker.bytes;
    while (auto result = TakeFrame(bytes)) {
        const std::size_t input = result->input;
        worker.last = m_places[input];
        worker.hasReported = true;
        NoteDone(input, std::move(*result));
    }
    worker.bytes.erase(0, worker.bytes.size() - bytes.size());
}

void CWorkerPool::NoteDone(std::size_t input, SResult&& result)
{
    if (m_done[input])
        return;
    m_done[input] = true;
    ++m_doneCount;
    m_pending.emplace(input, std::move(result));
    while (m_firstOpen < Inputs() && m_done[m_task.order[m_firstOpen]])
        ++m_firstOpen;
}

void CWorkerPool::End(std::size_t number)
{
    SWorker& worker = m_workers[number];
    int status = 0;
    while (::waitpid(worker.process, &status, 0) < 0 && errno == EINTR)
        ;
    ::close(worker.pipe);
    worker.process = 0;
    if (InterruptSignal())
        return;
    if (const std::size_t current = m_progress.Of(number).current; status != 0 && current < Inputs())
        NoteDone(current, {current, {}, DeathOf(status), {}, {}});
    std::vector<std::size_t> lost = LostWith(number);
    const bool moreToDo = !lost.empty() || (status != 0 && m_progress.Claimed() < Inputs());
    if (moreToDo && !Start(number, std::move(lost)))
        throw Base::CWorkError(L"no process can be started", __LINE__, "apps/code-analyzer/Jobs/WorkerPool");
}

std::vector<std::size_t> CWorkerPool::LostWith(std::size_t number)
{
    std::vector<std::size_t> lost = m_workers[number].again;
    const std::size_t begin = m_progress.Of(number).chunk;
    if (begin < Inputs()) {
        const std::size_t end = std::min(begin + m_task.order.ChunkAt(begin, m_task.jobs), Inputs());
        for (std::size_t place = begin; place < end; ++place)
            lost.push_back(m_task.order[place]);
    }
    std::erase_if(lost, [this](std::size_t input) { return m_done[input]; });
    return lost;
}

void CWorkerPool::HandOut()
{
    for (auto first = m_pending.begin(); first != m_pending.end() && first->first == m_next;
         first = m_pending.erase(first)) {
        m_task.onResult(std::move(first->second));
        ++m_next;
    }
}

void CWorkerPool::Interrupt()
{
    for (const SWorker& worker : m_workers)
        if (worker.process != 0)
            ::kill(worker.process, SIGINT);
    m_firstOpen = Inputs(); // nothing holds back a worker any more
    const auto end = std::chrono::steady_clock::now() + Grace;
    for (;;) {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        if (!IsRunning() || left.count() <= 0)
            break;
        Wait(static_cast<int>(left.count()));
    }
    for (auto& [input, result] : m_pending)
        m_task.onResult(std::move(result));
    m_pending.clear();
}

bool CWorkerPool::IsRunning() const
{
    return std::any_of(m_workers.begin(), m_workers.end(),
                       [](const SWorker& worker) { return worker.process != 0; });
}

} // namespace Kesh::CommandLine
