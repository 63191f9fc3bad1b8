#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace Kesh::Configuration {

/// The PHP version that a project's composer.json asks for, major * 100 + minor: the platform's in its
/// settings, else the lowest that it requires. Looked for in the folder of `path`, a file or folder that need
/// not exist, and in those above; nothing when there is none that says so. Any thread.
std::optional<std::int32_t> ComposerPhpVersion(const std::wstring& path);
/// The lowest version that a constraint such as "^7.4 || ~8.1.0" allows; nothing when it names none.
std::optional<std::int32_t> LowestPhpVersion(const std::string& constraint);

} // namespace Kesh::Configuration
