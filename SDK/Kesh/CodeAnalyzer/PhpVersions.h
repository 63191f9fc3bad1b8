#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

namespace Kesh::CodeAnalyzer {

/// The versions of PHP that a check can judge by, major * 100 + minor, the oldest first.
inline constexpr std::array<std::int32_t, 15> PhpVersions = {503, 504, 505, 506, 700, 701, 702, 703,
                                                             704, 800, 801, 802, 803, 804, 805};

constexpr bool IsPhpVersion(std::int32_t version)
{
    return std::ranges::find(PhpVersions, version) != PhpVersions.end();
}

/// The oldest one that is not older than `version`; the newest where all are older.
constexpr std::int32_t NearestPhpVersion(std::int32_t version)
{
    const auto* const found = std::ranges::lower_bound(PhpVersions, version);
    return found == PhpVersions.end() ? PhpVersions.back() : *found;
}

} // namespace Kesh::CodeAnalyzer
