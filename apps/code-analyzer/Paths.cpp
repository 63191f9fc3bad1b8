#include "Paths.h"

#include "Application/FilePath.h"
#include "ProjectManager/FileFinder.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fnmatch.h>
#include <unordered_set>

namespace Kesh::CommandLine {

namespace {

bool MatchesAny(const std::vector<std::string>& globs, const std::wstring& path)
{
    if (globs.empty())
        return false;
    const std::string whole = Host::PathToBytes(path);
    const std::string name = whole.substr(whole.rfind('/') + 1);
    return std::any_of(globs.begin(), globs.end(), [&](const std::string& glob) {
        const std::string& subject = glob.find('/') == std::string::npos ? name : whole;
        return ::fnmatch(glob.c_str(), subject.c_str(), 0) == 0;
    });
}

bool HasUsualEnding(const std::wstring& path)
{
    static constexpr std::array<const wchar_t*, 6> Endings{L".php",  L".phtml", L".inc",
                                                           L".html", L".htm",   L".css"};
    std::wstring lower = path;
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](wchar_t c) { return c >= L'A' && c <= L'Z' ? c + (L'a' - L'A') : c; });
    return std::any_of(Endings.begin(), Endings.end(),
                       [&](const wchar_t* ending) { return lower.ends_with(ending); });
}

std::vector<std::wstring> FilesOf(const std::wstring& folder, const SOptions& options,
                                  const TPathError& onError)
{
    ProjectManager::SFileQuery query;
    query.takesFile = [&](const std::wstring& path) {
        return (options.include.empty() ? HasUsualEnding(path) : MatchesAny(options.include, path)) &&
               !MatchesAny(options.exclude, path);
    };
    query.entersFolder = [&](const std::wstring& path) {
        return !ProjectManager::IsLeftOut(Host::FileName(path)) && !MatchesAny(options.exclude, path);
    };
    query.onError = onError;
    return ProjectManager::FindFiles(folder, query);
}

} // namespace

std::vector<SInput> CollectInputs(const SOptions& options, const TPathError& onError)
{
    std::vector<SInput> inputs;
    std::unordered_set<std::wstring> seen;
    const auto add = [&](const std::wstring& shown, bool standardInput) {
        const std::wstring absolute = Host::AbsolutePath(shown);
        if (seen.insert(absolute).second)
            inputs.push_back({shown, absolute, standardInput});
    };
    for (const std::string& bytes : options.paths) {
        if (bytes == "-") {
            add(Host::PathFromBytes(options.stdinPath), true);
            continue;
        }
        const std::wstring path = Host::PathFromBytes(bytes);
        std::error_code error;
        const bool isFolder = std::filesystem::is_directory(bytes, error);
        if (error) {
            onError(path, error.message());
        } else if (isFolder) {
            for (const std::wstring& file : FilesOf(path, options, onError))
                add(file, false);
        } else if (!MatchesAny(options.exclude, path)) {
            add(path, false);
        }
    }
    return inputs;
}

} // namespace Kesh::CommandLine
