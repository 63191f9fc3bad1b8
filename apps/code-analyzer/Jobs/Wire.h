#pragma once

#include "Jobs/Result.h"

#include <optional>
#include <string>
#include <string_view>

namespace Kesh::CommandLine {

/// Appends a result as bytes, for another process of this program. The paths stay behind: the input's number
/// tells them.
void AppendFrame(std::string& bytes, const SResult& result);
/// Takes the first result off `bytes`; null while it is not complete.
std::optional<SResult> TakeFrame(std::string_view& bytes);

} // namespace Kesh::CommandLine
