#pragma once

#include <cstdint>

namespace Kesh::CodeAnalyzer {

/// The message key of an error code; "Udefined error" for a code that is none. The keys are what translations
/// look up, so they stay letter for letter.
const char* ErrorMessageKey(std::int32_t code);

} // namespace Kesh::CodeAnalyzer
