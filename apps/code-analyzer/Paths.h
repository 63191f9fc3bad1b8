#pragma once

#include "ChangedFiles.h"
#include "Options.h"
#include "RulesChoice.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Kesh::CommandLine {

/// Where files were found, or one file, by both of its names.
struct SPlace
{
    std::size_t shown;     ///< how much of a shown path it makes
    std::wstring absolute; ///< stands for that
};

/// One text to check. There may be very many: what those of a folder have in common they share.
struct SInput
{
    std::wstring shown; ///< the path as the user knows it
    std::shared_ptr<const SPlace> place;
    bool standardInput = false;
    bool named = false;                    ///< by the user, not found in a folder
    std::shared_ptr<const SStaged> staged; ///< checked in place of the file on disk; null: that is

    /// The name under which the host knows it.
    std::wstring Absolute() const { return place->absolute + shown.substr(place->shown); }
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
