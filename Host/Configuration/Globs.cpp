#include "Configuration/Globs.h"

#include <algorithm>
#include <fnmatch.h>

namespace Kesh::Configuration {

namespace {

bool Matches(const std::string& glob, const std::string& subject)
{
    if (::fnmatch(glob.c_str(), subject.c_str(), 0) == 0)
        return true;
    const std::size_t anyFolders = glob.find("**/");
    return anyFolders != std::string::npos && Matches(std::string(glob).erase(anyFolders, 3), subject);
}

std::string WithoutSlash(const std::string& glob)
{
    const bool folder = glob.size() > 1 && glob.back() == '/';
    return folder ? glob.substr(0, glob.size() - 1) : glob;
}

} // namespace

bool MatchesPath(const TGlobs& globs, const std::string& path)
{
    const std::string name = path.substr(path.rfind('/') + 1);
    return std::any_of(globs.begin(), globs.end(), [&](const std::string& given) {
        const std::string glob = WithoutSlash(given);
        // "./src" and, as in .gitignore, "/src" are the one at the top; a path from elsewhere is absolute.
        if (glob.starts_with("./"))
            return Matches(glob.substr(2), path);
        if (glob.starts_with('/') && !path.starts_with('/'))
            return Matches(glob.substr(1), path);
        return Matches(glob, glob.find('/') == std::string::npos ? name : path);
    });
}

bool MatchesPathOrFolder(const TGlobs& globs, const std::string& path)
{
    if (globs.empty())
        return false;
    for (std::size_t slash = path.find('/', 1); slash != std::string::npos; slash = path.find('/', slash + 1))
        if (MatchesPath(globs, path.substr(0, slash)))
            return true;
    return MatchesPath(globs, path);
}

} // namespace Kesh::Configuration
