#include "Application/Version.h"

#include "commit.h"

#include <string_view>

namespace Kesh::Host {

std::string VersionText()
{
    constexpr std::string_view commit = CODE_ANALYZER_COMMIT;
    std::string text = CODE_ANALYZER_VERSION;
    if (!commit.empty())
        text += " (" + std::string(commit) + ')';
    return text;
}

} // namespace Kesh::Host
