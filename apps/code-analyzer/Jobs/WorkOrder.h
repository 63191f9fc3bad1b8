#pragma once

#include "Paths.h"

#include <cstddef>
#include <vector>

namespace Kesh::CommandLine {

/// The order in which workers take inputs: large files first, since one that is begun last keeps a single
/// worker while the others have nothing left to do. What has been taken is counted in places of this order.
class CWorkOrder
{
public:
    /// In their own order.
    explicit CWorkOrder(std::size_t inputs);
    /// Looks at the size of each file.
    static CWorkOrder LargeFirst(const std::vector<SInput>& inputs);

    std::size_t Size() const { return m_inputs.size(); }
    /// The input at a place.
    std::size_t operator[](std::size_t place) const { return m_inputs[place]; }
    /// How many inputs a worker of `jobs` takes at once, at this place: a process that wakes up for each one
    /// costs more than a small file, but in the end the last ones are to be shared by all.
    std::size_t ChunkAt(std::size_t place, std::size_t jobs) const;

private:
    std::vector<std::size_t> m_inputs;
    std::size_t m_large = 0; ///< so many stand in front
};

} // namespace Kesh::CommandLine
