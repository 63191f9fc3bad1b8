#include "Jobs/SharedProgress.h"

#include <new>
#include <sys/mman.h>

namespace Kesh::CommandLine {

void CSharedProgress::SUnmap::operator()(SPage* page) const
{
    ::munmap(page, size);
}

CSharedProgress::CSharedProgress(std::size_t workers)
{
    const std::size_t size = sizeof(SPage) + workers * sizeof(SWorker);
    void* memory = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED)
        throw std::bad_alloc();
    m_page = std::unique_ptr<SPage, SUnmap>(new (memory) SPage, SUnmap{size});
    m_page->next = 0;
    for (std::size_t worker = 0; worker < workers; ++worker)
        new (&m_page->workers[worker]) SWorker{None, None};
}

std::size_t CSharedProgress::Claim(std::size_t worker, const CWorkOrder& order, std::size_t jobs)
{
    // Noted first: whenever the worker may die, what it has claimed is known.
    std::size_t begin = m_page->next.load();
    do {
        Of(worker).chunk = begin;
    } while (!m_page->next.compare_exchange_weak(begin, begin + order.ChunkAt(begin, jobs)));
    return begin;
}

} // namespace Kesh::CommandLine
