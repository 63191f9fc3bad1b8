#include "Jobs/WorkOrder.h"

#include "Files/FilePath.h"

#include <algorithm>
#include <numeric>
#include <sys/stat.h>

namespace Kesh::CommandLine {

namespace {

constexpr std::size_t MaxChunk = 16;
/// A file that takes as long as a chunk of usual ones.
constexpr long long LargeFile = 128 << 10;

/// 0 when nobody can tell without reading it.
long long SizeOf(const SInput& input)
{
    struct stat status = {};
    const bool isFile = !input.standardInput && !input.staged &&
                        ::stat(Host::PathToBytes(input.shown).c_str(), &status) == 0 &&
                        S_ISREG(status.st_mode);
    return isFile ? status.st_size : 0;
}

} // namespace

CWorkOrder::CWorkOrder(std::size_t inputs) : m_inputs(inputs)
{
    std::iota(m_inputs.begin(), m_inputs.end(), std::size_t{0});
}

CWorkOrder CWorkOrder::LargeFirst(const std::vector<SInput>& inputs)
{
    CWorkOrder order(inputs.size());
    std::vector<long long> sizes(inputs.size());
    std::transform(inputs.begin(), inputs.end(), sizes.begin(), &SizeOf);
    const auto isLarge = [&](std::size_t input) { return sizes[input] >= LargeFile; };
    const auto rest = std::stable_partition(order.m_inputs.begin(), order.m_inputs.end(), isLarge);
    std::stable_sort(order.m_inputs.begin(), rest,
                     [&](std::size_t a, std::size_t b) { return sizes[a] > sizes[b]; });
    order.m_large = static_cast<std::size_t>(rest - order.m_inputs.begin());
    return order;
}

std::size_t CWorkOrder::ChunkAt(std::size_t place, std::size_t jobs) const
{
    if (place < m_large)
        return 1;
    const std::size_t left = Size() - std::min(place, Size());
    return std::clamp<std::size_t>(left / (jobs * 8), 1, MaxChunk);
}

} // namespace Kesh::CommandLine
