#pragma once

#include <atomic>
#include <memory>

namespace Kesh::CodeAnalyzer {

/// Set, it has a check end soon. Shared by those who may want that and the check, which only looks at it.
using TCancelFlag = std::shared_ptr<std::atomic<bool>>;

} // namespace Kesh::CodeAnalyzer
