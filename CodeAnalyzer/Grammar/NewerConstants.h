#pragma once

#include "Grammar/GrammarTokens.h"
#include "Grammar/PhpFeatures.h"

#include <cstdint>
#include <optional>

namespace Kesh::CodeAnalyzer {

/// The feature that a constant value has at the token which keeps it from being one in some versions; nothing
/// where no version takes it.
std::optional<EFeature> NewerConstant(const CGrammarTokens& tokens, std::uint32_t token);

} // namespace Kesh::CodeAnalyzer
