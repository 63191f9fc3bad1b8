#pragma once

#include <string>

namespace Kesh::CommandLine {

/// What differs between two versions of a file, as patch programs take it. Lines end with "\n".
std::string UnifiedDiff(const std::string& file, const std::string& before, const std::string& after);

} // namespace Kesh::CommandLine
