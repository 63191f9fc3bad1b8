#include "Configuration/Composer.h"

#include "Base/Exception.h"
#include "Files/FileIO.h"
#include "Files/FilePath.h"
#include "Kesh/CodeAnalyzer/PhpVersions.h"

#include <nlohmann/json.hpp>
#include <regex>

namespace Kesh::Configuration {

namespace {

using nlohmann::json;

/// The text at a path of names; empty when there is none.
std::string TextAt(const json& document, const std::initializer_list<const char*> names)
{
    const json* at = &document;
    for (const char* name : names) {
        if (!at->is_object() || !at->contains(name))
            return {};
        at = &(*at)[name];
    }
    return at->is_string() ? at->get<std::string>() : std::string();
}

std::wstring FileIn(const std::wstring& folder)
{
    return folder + L'/' + ComposerFileName;
}

} // namespace

std::optional<std::int32_t> LowestPhpVersion(const std::string& constraint)
{
    // A hyphen between two versions makes the second an upper bound.
    static const std::regex bound(R"((<=?|!=|- )?\s*[v>=^~ ]*(\d+)(?:\.(\d+))?[\d.*x]*)");
    std::optional<std::int32_t> lowest;
    for (std::sregex_iterator at(constraint.begin(), constraint.end(), bound), end; at != end; ++at) {
        const std::smatch& match = *at;
        if (match[1].length() > 0 || match[2].length() > 2 || match[3].length() > 2)
            continue;
        const int version = std::stoi(match[2]) * 100 + (match[3].matched ? std::stoi(match[3]) : 0);
        if (!lowest || version < *lowest)
            lowest = version;
    }
    // What a package asks for is not this program's to refuse: "^5" and ">=9" are honest there.
    return lowest ? std::optional(CodeAnalyzer::NearestPhpVersion(*lowest)) : lowest;
}

bool HasComposer(const std::wstring& folder)
{
    return Host::IsRegularFile(FileIn(folder));
}

std::optional<std::int32_t> ComposerPhpVersion(const std::wstring& folder)
{
    try {
        const json document = json::parse(Host::ReadFileBytes(FileIn(folder)), nullptr, false);
        const std::string platform = TextAt(document, {"config", "platform", "php"});
        return LowestPhpVersion(platform.empty() ? TextAt(document, {"require", "php"}) : platform);
    } catch (const Base::CWorkError&) {
        return {};
    }
}

} // namespace Kesh::Configuration
