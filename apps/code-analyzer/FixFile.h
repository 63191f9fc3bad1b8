#pragma once

#include "Findings/ProjectRules.h"
#include "Findings/TextCheck.h"
#include "Paths.h"

#include <cstddef>
#include <string>

namespace Kesh::CommandLine {

/// What became of a file that was to be fixed.
struct SFixedFile
{
    std::size_t fixed = 0;
    std::string diff; ///< of what is not written
    std::string note; ///< what the user has to know; empty: nothing
    bool failed = false;
};

/// Mends what can be mended of a file and writes it as an editor would: as a whole or not at all, in its own
/// encoding and with its own line ends. With `onlyDiff` nothing is written. Throws Base::CWorkError when the
/// file cannot be read or checked.
SFixedFile FixFile(Findings::CTextCheck& check, const SInput& input, const std::wstring& factory,
                   const Findings::SRules& rules, bool onlyDiff);

} // namespace Kesh::CommandLine
