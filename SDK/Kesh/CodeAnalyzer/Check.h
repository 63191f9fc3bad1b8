#pragma once

#include <cstdint>
#include <string>

namespace Kesh::CodeAnalyzer {

/// One check of a file.
struct SCheck
{
    std::wstring file;
    std::uint64_t number = 0; ///< grows with each check that begins
    bool ofDocument = false;  ///< of an open document's text; else of the file on disk
};

enum class ECheckEnd {
    Complete, ///< all that it has found is known
    GivenUp,  ///< it was cancelled: what is known is what was known before
    Failed    ///< the same because of a fault
};

} // namespace Kesh::CodeAnalyzer
