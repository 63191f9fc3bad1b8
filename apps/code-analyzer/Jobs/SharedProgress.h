#pragma once

#include "Jobs/WorkOrder.h"

#include <atomic>
#include <cstddef>
#include <memory>

namespace Kesh::CommandLine {

/// What workers and the process that started them tell each other through shared memory: which input is to be
/// taken next, and at which one each worker is, so that its crash can be blamed on it.
class CSharedProgress
{
public:
    static constexpr std::size_t None = static_cast<std::size_t>(-1);
    static constexpr std::size_t CacheLine = 64;

    /// Throws std::bad_alloc.
    explicit CSharedProgress(std::size_t workers);

    /// Takes the next inputs for a worker, as many at once as the order says; the place of the first.
    std::size_t Claim(std::size_t worker, const CWorkOrder& order, std::size_t jobs);
    /// The first place not claimed yet.
    std::size_t Claimed() const { return m_page->next.load(); }

    /// Each worker writes for every input: none may slow down another.
    struct alignas(CacheLine) SWorker
    {
        std::atomic<std::size_t> chunk;   ///< the place of the first input of its last claim
        std::atomic<std::size_t> current; ///< the input that it is at
    };
    SWorker& Of(std::size_t worker) { return m_page->workers[worker]; }

private:
    struct SPage
    {
        std::atomic<std::size_t> next;
        SWorker workers[1]; ///< as many as there are
    };
    struct SUnmap
    {
        std::size_t size;
        void operator()(SPage* page) const;
    };

    std::unique_ptr<SPage, SUnmap> m_page;
};

} // namespace Kesh::CommandLine
