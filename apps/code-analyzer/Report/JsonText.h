#pragma once

#include "Application/FilePath.h"

#include <nlohmann/json.hpp>
#include <string>

namespace Kesh::CommandLine {

/// One line of JSON. A file name need not be UTF-8, JSON must be.
inline std::string JsonText(const nlohmann::ordered_json& value)
{
    return value.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

} // namespace Kesh::CommandLine
