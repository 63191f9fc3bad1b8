#pragma once

#include "Configuration/Configuration.h"
#include "ProjectManager/FileFinder.h"

namespace Kesh::Configuration {

/// What finds the files of a project that are checked: those that are included and not excluded. The settings
/// are not owned.
ProjectManager::SFileQuery CheckedFiles(const std::wstring& folder, const SConfiguration& settings);

} // namespace Kesh::Configuration
