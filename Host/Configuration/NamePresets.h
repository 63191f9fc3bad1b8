#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Kesh::Configuration {

struct SConfiguration;

/// The names that one framework or template language adds to HTML's. Lists are texts with blanks between
/// their patterns, which are in lower case and those of ownNames.
struct SNamePreset
{
    std::string_view name;
    std::string_view packages; ///< patterns of what npm and Composer call that which brings the names
    std::string_view tags;
    std::string_view attributes;
};

/// All that there are, by name. Any thread.
std::span<const SNamePreset> NamePresets();
/// Null when there is none of this name.
const SNamePreset* FindNamePreset(std::string_view name);
/// What is said to the user of a name that is none; with those known.
std::string NoNamePreset(std::string_view name);
/// Adds a preset's names to the project's own.
void AddNamePreset(const SNamePreset& preset, SConfiguration& settings);
/// The presets whose packages the package.json or composer.json of a folder asks for, by name. These files
/// are read, nothing else is done with them; one that is missing, broken or leads out of the folder is not.
std::vector<std::string_view> DetectNamePresets(const std::wstring& folder);

} // namespace Kesh::Configuration
