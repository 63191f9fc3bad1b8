#pragma once

#include "ChangedFiles.h"
#include "Options.h"
#include "RulesChoice.h"

#include <functional>
#include <string>
#include <vector>

namespace Kesh::CommandLine {

/// One text to check.
struct SInput
{
    std::wstring shown;    ///< the path as the user knows it
    std::wstring absolute; ///< the name under which the host knows it
    bool standardInput = false;
    bool named = false; ///< by the user, not found in a folder
    SStaged staged;     ///< checked in place of the file on disk, when there is one
};

/// Told of each path that cannot be read, with the reason.
using TPathError = std::function<void(const std::wstring& path, const std::string& reason)>;
/// Says of a file of a folder that it is not checked, since it is a link to somebody else's.
void PrintLeadsOut(const std::wstring& path);

/// The files that the paths of a check stand for, each once, in the order of the command line and sorted
/// within a folder.
std::vector<SInput> CollectInputs(const SOptions& options, const TProjectRules& rules,
                                  const TPathError& onError);

} // namespace Kesh::CommandLine
