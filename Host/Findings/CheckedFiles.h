#pragma once

#include "Findings/ProjectRules.h"
#include "ProjectManager/FileFinder.h"

#include <memory>

namespace Kesh::Findings {

/// What finds the files below a folder that are checked: those that their rules include and do not exclude.
ProjectManager::SFileQuery CheckedFiles(const std::wstring& folder,
                                        std::shared_ptr<const CProjectRules> rules);

} // namespace Kesh::Findings
