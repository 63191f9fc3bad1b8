#pragma once

#include <string>

namespace Kesh::Host {

/// The version and, where it is known, the commit that was built: "1.0.0 (0123456789ab)".
std::string VersionText();

} // namespace Kesh::Host
