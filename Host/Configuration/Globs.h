#pragma once

#include <string>
#include <vector>

namespace Kesh::Configuration {

/// Patterns for paths, as users know them: one without a slash is compared with names, one with a slash with
/// the path below the folder that the patterns belong to, where a slash, or "./", may also stand first. `*`
/// also matches a slash, and a double star with a slash behind it also nothing.
using TGlobs = std::vector<std::string>;

/// Whether one of them matches the path itself. Bytes.
bool MatchesPath(const TGlobs& globs, const std::string& path);
/// Whether one of them matches the path or a folder that it lies in.
bool MatchesPathOrFolder(const TGlobs& globs, const std::string& path);

} // namespace Kesh::Configuration
