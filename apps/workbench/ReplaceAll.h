#pragma once

#include "TextMatches.h"

namespace Kesh::Workbench {

class CCodeEditor;

/// Replaces all that is found in the editor's text, in one step to be undone, and keeps caret, view and folds
/// where they were in it. Linear: the new text is built once. Answers how many were replaced. GUI thread
/// only.
int ReplaceAll(CCodeEditor& editor, const SReplaceOrder& order);

} // namespace Kesh::Workbench
