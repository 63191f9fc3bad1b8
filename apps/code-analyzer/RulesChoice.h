#pragma once

#include "Findings/ProjectRules.h"
#include "Options.h"

#include <memory>

namespace Kesh::CommandLine {

using TProjectRules = std::shared_ptr<const Findings::CProjectRules>;

/// The rules that hold for the files of a check: each file's own, and what the user says for all of them.
/// Throws Base::CWorkError with a text for the user.
TProjectRules RulesFor(const SOptions& options);
/// The first path of a check as rules are asked for it: absolute, a folder with a slash behind it.
std::wstring FirstPlace(const SOptions& options);

} // namespace Kesh::CommandLine
