#pragma once

#include <QString>

namespace Kesh::Workbench {

class CCodeEditor;

struct SReplaceOrder
{
    QString pattern;
    QString replacement; ///< of a regular expression: \0 is what was found, \1 its first group
    bool matchCase = false;
    bool wholeWords = false;
    bool regExp = false;
};

/// Replaces all that is found in the editor's text, in one step to be undone, and keeps caret, view and folds
/// where they were in it. Linear: the new text is built once. Answers how many were replaced. GUI thread
/// only.
int ReplaceAll(CCodeEditor& editor, const SReplaceOrder& order);

} // namespace Kesh::Workbench
