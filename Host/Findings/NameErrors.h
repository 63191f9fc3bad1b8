#pragma once

#include <cstdint>

namespace Kesh::Findings {

/// The codes of names that no list has.
enum ENameError : std::int32_t {
    UnknownTag = 2001,
    UnknownAttribute = 2002,
    UnknownElement = 2501, ///< in a selector
    UnknownProperty = 2502,
};

constexpr bool IsNameError(std::int32_t code)
{
    return code == UnknownTag || code == UnknownAttribute || code == UnknownElement ||
           code == UnknownProperty;
}

} // namespace Kesh::Findings
