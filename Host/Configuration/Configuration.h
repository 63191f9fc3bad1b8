#pragma once

#include "Configuration/Globs.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Kesh::Configuration {

/// What becomes of the records of a code.
enum class ELevel { Off, Warning, Error };

/// What a project wants done with some codes, everywhere or in the places that `paths` matches.
struct SCodeRule
{
    TGlobs paths; ///< empty: everywhere
    std::map<std::int32_t, ELevel> codes;

    friend bool operator==(const SCodeRule&, const SCodeRule&) = default;
};

/// A project's settings, from its file code-analyzer.json. Paths and names are bytes and wide strings as the
/// rest of the host has them.
struct SConfiguration
{
    std::wstring file; ///< absolute; empty: there is none, and all is as it is by default
    std::wstring root; ///< the folder of the file, to which its globs and paths refer
    /// The files that it adds to, the nearest first; absolute. What they say is in the rest already.
    std::vector<std::wstring> bases;
    TGlobs include; ///< empty: the usual endings
    TGlobs exclude;
    std::optional<std::int32_t> phpVersion; ///< major * 100 + minor
    std::optional<bool> shortOpenTag;       ///< as PHP's setting of that name
    std::optional<bool> grammar;
    std::optional<bool> markup;
    std::vector<SCodeRule> rules; ///< of those that name a code, the last one counts
    /// Own names, those of presets among them; patterns as SyntaxParser::CNamePatterns has them.
    std::vector<std::wstring> tags;
    std::vector<std::wstring> attributes;
    std::vector<std::wstring> properties;
    std::wstring baseline; ///< absolute; empty: none

    friend bool operator==(const SConfiguration&, const SConfiguration&) = default;

    /// The path below the root; as it is when it does not lie there.
    std::string Below(const std::wstring& absolute) const;
    /// Whether `include` names the file, or a folder that it lies in and it has a usual ending; without an
    /// `include` a usual ending will do.
    bool Includes(const std::wstring& absolute) const;
    /// Whether `exclude` names the file or a folder that it lies in.
    bool Excludes(const std::wstring& absolute) const;
    /// What is wanted for a code in a file; nothing when no rule says.
    std::optional<ELevel> LevelOf(std::int32_t code, const std::wstring& absolute) const;
};

constexpr const wchar_t* FileName = L"code-analyzer.json";

/// Whether a file has one of the endings that are checked in folders.
bool HasUsualEnding(const std::wstring& path);
/// Whether a folder has a configuration file of its own. Any thread.
bool HasConfiguration(const std::wstring& folder);
/// The file that holds for `path`, a file or folder that need not exist: in its folder or the nearest one
/// above. Empty: there is none. Any thread.
std::wstring FindConfiguration(const std::wstring& path);
/// Reads a configuration file, with those that it adds to. Throws Base::CWorkError "code-analyzer.json:LINE:
/// what is wrong". Any thread.
SConfiguration ReadConfiguration(const std::wstring& file);
/// The same without those that it adds to, of which only the nearest is named.
SConfiguration ReadOneConfiguration(const std::wstring& file);
/// Likewise from its text.
SConfiguration ParseConfiguration(const std::wstring& file, std::string_view text);
/// "8.2", or "8.2.14", as 802; nothing when it is no version of PHP that is known.
std::optional<std::int32_t> PhpVersionOf(std::string_view text);
/// What is said to the user of a text that is none, behind a name of where it stands; with those known.
std::string NoPhpVersion(std::string_view text);

/// The commented file that new projects begin with; `presets` are those of names to be taken.
std::string InitialConfiguration(const std::vector<std::string_view>& presets);

} // namespace Kesh::Configuration
