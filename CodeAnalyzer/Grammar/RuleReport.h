#pragma once

#include "Grammar/PhpFeatures.h"
#include "Kesh/CodeAnalyzer/Catalog.h"
#include "Kesh/CodeAnalyzer/Diagnostic.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace Kesh::CodeAnalyzer {

constexpr std::uint32_t NoToken = 0xFFFFFFFF;

/// A second place that a report speaks of.
struct SRelatedToken
{
    std::uint32_t token = NoToken;
    const char* message = ""; ///< the key of what is there
};

constexpr SRelatedToken FirstIs(std::uint32_t token)
{
    return {token, "The first one is here"};
}

/// What a rule of the language found.
struct SRuleReport
{
    std::int32_t code;
    std::uint32_t token;
    SRelatedToken related = {};
    EFix fix = EFix::None;                 ///< what fixes it, done to the token
    std::optional<EFeature> feature = {};  ///< that the version has not
    std::vector<SArgument> arguments = {}; ///< what its message names; none: the token
    SRelatedToken other = {};              ///< one more place
};

} // namespace Kesh::CodeAnalyzer
