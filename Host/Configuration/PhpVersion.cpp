#include "Configuration/Configuration.h"
#include "Kesh/CodeAnalyzer/PhpVersions.h"

#include <charconv>

namespace Kesh::Configuration {

std::optional<std::int32_t> PhpVersionOf(std::string_view text)
{
    std::int32_t major = 0;
    std::int32_t minor = 0;
    const char* end = text.data() + text.size();
    const auto [dot, noMajor] = std::from_chars(text.data(), end, major);
    if (noMajor != std::errc() || dot == end || *dot != '.')
        return {};
    const auto [rest, noMinor] = std::from_chars(dot + 1, end, minor);
    // "8.2.14" means 8.2.
    if (noMinor != std::errc() || (rest != end && *rest != '.'))
        return {};
    if (major < 0 || major > 99 || minor < 0 || minor > 99)
        return {};
    const std::int32_t version = major * 100 + minor;
    return CodeAnalyzer::IsPhpVersion(version) ? std::optional(version) : std::nullopt;
}

std::string NoPhpVersion(std::string_view text)
{
    std::string known;
    for (const std::int32_t version : CodeAnalyzer::PhpVersions)
        known +=
            (known.empty() ? "" : ", ") + std::to_string(version / 100) + '.' + std::to_string(version % 100);
    return '"' + std::string(text) + "\" is no version of PHP that is known; those known are " + known;
}

} // namespace Kesh::Configuration
