#pragma once

#include <cstdint>

namespace Kesh::CodeAnalyzer {

/// The message key of a code of the grammar check; null for any other code.
const char* GrammarMessageKey(std::int32_t code);

} // namespace Kesh::CodeAnalyzer
