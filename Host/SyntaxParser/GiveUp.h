#pragma once

#include <atomic>
#include <memory>

namespace Kesh::SyntaxParser {

/// Tells a parse that it is to be given up: by whoever has asked for it, or by the host, once nobody will
/// look at what it finds. Any thread asks; what is set belongs to others.
struct SGiveUp
{
    const std::atomic<bool>* byAsker = nullptr; ///< null: never
    std::shared_ptr<const std::atomic<bool>> byHost;

    bool IsSet() const
    {
        return (byAsker && byAsker->load(std::memory_order_relaxed)) ||
               (byHost && byHost->load(std::memory_order_relaxed));
    }
};

} // namespace Kesh::SyntaxParser
