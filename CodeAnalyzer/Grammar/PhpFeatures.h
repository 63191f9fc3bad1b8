#pragma once

#include <cstddef>
#include <cstdint>

namespace Kesh::CodeAnalyzer {

/// What some versions of PHP have and others have not.
enum class EFeature : std::uint8_t {
#define PHP_FEATURE(name, since, until, text, with, without) name,
#define PHP_GONE(name, until, text, with, without)
#include "Grammar/PhpFeatures.def"
#undef PHP_GONE
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
#define PHP_FEATURE(name, since, until, text, with, without) {since, until, text},
#define PHP_GONE(name, until, text, with, without)
#include "Grammar/PhpFeatures.def"
#undef PHP_GONE
#undef PHP_FEATURE
};

/// What every version takes until the one that this says, where a rule of its own forbids it.
namespace GoneSince {
#define PHP_FEATURE(name, since, until, text, with, without)
#define PHP_GONE(name, until, text, with, without) inline constexpr std::int32_t name = until;
#include "Grammar/PhpFeatures.def"
#undef PHP_GONE
#undef PHP_FEATURE
} // namespace GoneSince

constexpr const SPhpFeature& FeatureOf(EFeature feature)
{
    return PhpFeatures[static_cast<std::size_t>(feature)];
}

} // namespace Kesh::CodeAnalyzer
