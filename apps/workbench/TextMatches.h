#pragma once

#include <QString>
#include <functional>

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

/// Calls `action` with the bytes from `start` to `end` of each match in the editor's text, in order, until it
/// answers false. The text must stay as it is. GUI thread only.
void ForEachMatch(const CCodeEditor& editor, const SReplaceOrder& order,
                  const std::function<bool(long start, long end)>& action);

struct SMatchCount
{
    int count = 0;
    int current = 0;        ///< the match that is selected, counted from 1; 0: none is
    bool isComplete = true; ///< false: there may be more; to count them all would stop the window
};
SMatchCount CountMatches(const CCodeEditor& editor, const SReplaceOrder& order);

} // namespace Kesh::Workbench
