#pragma once

#include "Findings/Finding.h"
#include "FixFile.h"

#include <cstddef>
#include <functional>
#include <string>

namespace Kesh::CommandLine {

/// What became of one input.
struct SResult
{
    std::size_t input = 0; ///< its number
    Findings::SFileFindings findings;
    std::string problem; ///< why it could not be checked; empty: it was
    std::string skipped; ///< why it was left out; empty: it was not
    SFixedFile fixed;
};

using TCheckInput = std::function<SResult(std::size_t input)>;
using TResultSink = std::function<void(SResult&&)>;
/// Told from time to time how many inputs are done, and the number of one of them.
using TProgressSink = std::function<void(std::size_t done, std::size_t input)>;

} // namespace Kesh::CommandLine
