#pragma once

#include "Configuration/Configuration.h"
#include "Options.h"

namespace Kesh::CommandLine {

/// The settings that hold for a check: of the file that the user names, else of the one that is found upwards
/// from the first path. Throws Base::CWorkError with a text for the user.
Configuration::SConfiguration ConfigurationFor(const SOptions& options);

} // namespace Kesh::CommandLine
