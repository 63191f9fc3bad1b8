#pragma once

#include "LanguageServer/Diagnostics.h"

namespace Kesh::LanguageServer {

/// The answer to textDocument/hover: what the findings at a place mean and how they are mended, from the list
/// of errors; null where there is none.
json HoverAt(const SDescribed& known, const json& position);

} // namespace Kesh::LanguageServer
