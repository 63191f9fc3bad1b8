#pragma once

#include <cstddef>
#include <cstdint>

namespace Kesh::CodeAnalyzer {

/// What some versions of PHP have and others have not.
enum class EFeature : std::uint8_t {
#define PHP_FEATURE(name, since, until, text) name,
#include "Grammar/PhpFeatures.def"
#undef PHP_FEATURE
};

struct SPhpFeature
{
    std::int32_t since; ///< the first version that has it, major * 100 + minor; 0: the oldest
    std::int32_t until; ///< the first one that has it no longer; 0: none
    const char* text;   ///< what it is called, as a sentence begins; the key of its translation

    /// Version 0 takes whatever any version takes.
    constexpr bool IsIn(std::int32_t version) const
    {
        return version == 0 || (version >= since && (until == 0 || version < until));
    }
};

inline constexpr SPhpFeature PhpFeatures[] = {
#define PHP_FEATURE(name, since, until, text) {since, until, text},
#include "Grammar/PhpFeatures.def"
#undef PHP_FEATURE
};

constexpr const SPhpFeature& FeatureOf(EFeature feature)
{
    return PhpFeatures[static_cast<std::size_t>(feature)];
}

} // namespace Kesh::CodeAnalyzer
