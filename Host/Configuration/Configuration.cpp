#include "Configuration/Configuration.h"

#include "Files/FilePath.h"

#include <algorithm>
#include <array>

namespace Kesh::Configuration {

std::string SConfiguration::Below(const std::wstring& absolute) const
{
    const std::wstring prefix = root.ends_with(L'/') ? root : root + L'/';
    return Host::PathToBytes(absolute.starts_with(prefix) ? absolute.substr(prefix.size()) : absolute);
}

bool SConfiguration::Includes(const std::wstring& absolute) const
{
    if (include.empty())
        return HasUsualEnding(absolute);
    const std::string path = Below(absolute);
    return MatchesPath(include, path) || (HasUsualEnding(absolute) && MatchesPathOrFolder(include, path));
}

bool SConfiguration::Excludes(const std::wstring& absolute) const
{
    return !exclude.empty() && MatchesPathOrFolder(exclude, Below(absolute));
}

std::optional<ELevel> SConfiguration::LevelOf(std::int32_t code, const std::wstring& absolute) const
{
    for (auto rule = rules.rbegin(); rule != rules.rend(); ++rule) {
        const auto level = rule->codes.find(code);
        if (level != rule->codes.end() &&
            (rule->paths.empty() || MatchesPathOrFolder(rule->paths, Below(absolute))))
            return level->second;
    }
    return {};
}

bool HasUsualEnding(const std::wstring& path)
{
    static constexpr std::array<const wchar_t*, 6> Endings{L".php",  L".phtml", L".inc",
                                                           L".html", L".htm",   L".css"};
    const std::size_t dot = path.find_last_of(L"./");
    std::wstring lower = path.substr(dot == std::wstring::npos ? path.size() : dot);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](wchar_t c) { return c >= L'A' && c <= L'Z' ? c + (L'a' - L'A') : c; });
    return std::find(Endings.begin(), Endings.end(), lower) != Endings.end();
}

bool HasConfiguration(const std::wstring& folder)
{
    return Host::IsRegularFile((folder == L"/" ? L"" : folder) + L'/' + FileName);
}

std::wstring FindConfiguration(const std::wstring& path)
{
    std::wstring folder = Host::AbsolutePath(path);
    while (!folder.empty()) {
        if (HasConfiguration(folder))
            return (folder == L"/" ? L"" : folder) + L'/' + FileName;
        if (folder == L"/")
            break;
        folder.resize(folder.rfind(L'/'));
        if (folder.empty())
            folder = L"/";
    }
    return {};
}

} // namespace Kesh::Configuration
