#pragma once

#include "Findings/QuickFix.h"

#include <optional>

namespace Kesh::Findings {

/// The comment above the finding's line that makes it silent, in the language that the line begins in.
/// Nothing when no comment can stand there: inside a string, a tag or another comment.
std::optional<SEdit> IgnoreComment(const SFinding& finding, const SFileText& file);

} // namespace Kesh::Findings
