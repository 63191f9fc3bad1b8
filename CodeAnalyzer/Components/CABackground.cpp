#include "Components/CABackground.h"

#include <system_error>
#include <utility>

namespace Kesh::CodeAnalyzer {

void CCABackground::Run(std::function<void()> job)
{
    // What is done is let go: each job would keep all that came before it.
    const auto inTurn = [](std::shared_future<void> previous, std::function<void()> next) {
        if (previous.valid())
            previous.wait();
        previous = {};
        std::exchange(next, nullptr)();
    };
    try {
        m_last = std::async(std::launch::async, inTurn, m_last, job).share();
    } catch (const std::system_error&) {
        inTurn(m_last, std::move(job));
    }
}

void CCABackground::Wait()
{
    if (m_last.valid())
        m_last.wait();
    m_last = {};
}

} // namespace Kesh::CodeAnalyzer
