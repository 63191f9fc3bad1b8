#pragma once

#include "Kesh/SyntaxParser/Position.h"

#include <cstdint>

namespace Kesh::CodeAnalyzer {

/// Severities of an error; the bar shows every other value as a warning.
enum ESeverity : std::int32_t { SeverityError = 1, SeverityWarning = 2 };

/// One problem found in a file.
struct SCAError
{
    SyntaxParser::SScheme pos; ///< the thing at which the checker stopped
    std::int32_t code = 0;     ///< what is wrong; the message is looked up from it
    std::int32_t type = 0;     ///< severity
};

} // namespace Kesh::CodeAnalyzer
