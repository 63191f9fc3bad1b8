#include "Configuration/Configuration.h"

#include "Application/FilePath.h"

#include <filesystem>

namespace Kesh::Configuration {

std::string SConfiguration::Below(const std::wstring& absolute) const
{
    const std::wstring prefix = root.ends_with(L'/') ? root : root + L'/';
    return Host::PathToBytes(absolute.starts_with(prefix) ? absolute.substr(prefix.size()) : absolute);
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

std::wstring FindConfiguration(const std::wstring& path)
{
    std::error_code ignored;
    std::wstring folder = Host::AbsolutePath(path);
    while (!folder.empty()) {
        const std::wstring candidate = (folder == L"/" ? L"" : folder) + L'/' + FileName;
        if (std::filesystem::is_regular_file(Host::PathToBytes(candidate), ignored))
            return candidate;
        if (folder == L"/")
            break;
        folder.resize(folder.rfind(L'/'));
        if (folder.empty())
            folder = L"/";
    }
    return {};
}

} // namespace Kesh::Configuration
