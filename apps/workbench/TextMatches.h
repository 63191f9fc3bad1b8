#pragma once

#include <QString>
#include <functional>
#include <optional>
#include <string>

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

/// A place in an editor's text.
struct SByteSpan
{
    long start = 0; ///< bytes
    long end = 0;

    friend bool operator==(const SByteSpan&, const SByteSpan&) = default;
};
/// What a group of a match holds, UTF-8; of a text that is no regular expression nothing.
using TGroupOf = std::function<std::string(int group)>;

/// Calls `action` with each match in the editor's text, in order, until it answers false. The text must stay
/// as it is. What is no regular expression matches nothing. GUI thread only.
void ForEachMatch(const CCodeEditor& editor, const SReplaceOrder& order,
                  const std::function<bool(const SByteSpan& match, const TGroupOf& groupOf)>& action);
/// The first match behind a place, or the last one before it, going on at the other end of the text.
std::optional<SByteSpan> FindMatch(const CCodeEditor& editor, const SReplaceOrder& order,
                                   const SByteSpan& from, bool forward);
/// What takes the place of a match: the replacement with the match's groups, and with what stands for control
/// characters.
std::string Replacement(const SReplaceOrder& order, const TGroupOf& groupOf);

struct SMatchCount
{
    int count = 0;
    int current = 0;        ///< the match that is selected, counted from 1; 0: none is
    bool isComplete = true; ///< false: there may be more; to count them all would stop the window
};
SMatchCount CountMatches(const CCodeEditor& editor, const SReplaceOrder& order);

} // namespace Kesh::Workbench
