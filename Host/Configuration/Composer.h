#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace Kesh::Configuration {

constexpr const wchar_t* ComposerFileName = L"composer.json";

/// Whether a folder has a composer.json. Any thread.
bool HasComposer(const std::wstring& folder);
/// The PHP version that the composer.json of a folder asks for, major * 100 + minor: the platform's in its
/// settings, else the lowest that it requires; the nearest known one; nothing when it does not say. Any
/// thread.
std::optional<std::int32_t> ComposerPhpVersion(const std::wstring& folder);
/// The lowest known version that a constraint such as "^7.4 || ~8.1.0" allows, the newest known one when it
/// asks for one that is newer still; nothing when it names none.
std::optional<std::int32_t> LowestPhpVersion(const std::string& constraint);

} // namespace Kesh::Configuration
