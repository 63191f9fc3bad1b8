#pragma once

#include <functional>
#include <future>

namespace Kesh::CodeAnalyzer {

/// Does one job after the other beside the GUI thread, which alone may use this.
class CCABackground
{
public:
    CCABackground() = default;
    /// Waits.
    ~CCABackground() { Wait(); }
    CCABackground(const CCABackground&) = delete;
    CCABackground& operator=(const CCABackground&) = delete;

    /// The job must not throw. It is done at once when the system gives no thread.
    void Run(std::function<void()> job);
    /// For the end of all jobs.
    void Wait();

private:
    std::shared_future<void> m_last;
};

} // namespace Kesh::CodeAnalyzer
