#pragma once

#include "LanguageServer/Uri.h"

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>

namespace Kesh::LanguageServer {

/// That of the document which a message is about.
inline std::wstring DocumentPath(const nlohmann::json& params)
{
    return PathOfUri(params.at("textDocument").at("uri").get_ref<const std::string&>());
}

/// A position of the protocol; the comparison is that of places in a text.
inline std::pair<std::int64_t, std::int64_t> PointOf(const nlohmann::json& position)
{
    return {position.at("line"), position.at("character")};
}

/// Whether two ranges of the protocol have a place in common, their ends included.
inline bool Touch(const nlohmann::json& a, const nlohmann::json& b)
{
    return PointOf(a.at("start")) <= PointOf(b.at("end")) && PointOf(b.at("start")) <= PointOf(a.at("end"));
}

} // namespace Kesh::LanguageServer
