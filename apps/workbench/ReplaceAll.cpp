#include "ReplaceAll.h"

#include "CodeEditor.h"

#include <algorithm>
#include <string>
#include <vector>

namespace Kesh::Workbench {

namespace {

using TBase = QsciScintillaBase;

struct SMatch
{
    long start; ///< bytes of the old text
    long end;
    std::string text; ///< in its place
};

/// All matches, in order.
std::vector<SMatch> FindAll(const CCodeEditor& editor, const SReplaceOrder& order)
{
    std::vector<SMatch> matches;
    ForEachMatch(editor, order, [&](const SByteSpan& match, const TGroupOf& groupOf) {
        matches.push_back({match.start, match.end, Replacement(order, groupOf)});
        return true;
    });
    return matches;
}

/// Where a place of the old text is in the new one; in a match, behind what took its place.
long Moved(long position, const std::vector<SMatch>& matches)
{
    long shift = 0;
    for (const SMatch& match : matches) {
        if (match.start >= position)
            break;
        const long end = match.start + shift + static_cast<long>(match.text.size());
        if (match.end > position)
            return end;
        shift = end - match.end;
    }
    return position + shift;
}

} // namespace

int ReplaceAll(CCodeEditor& editor, const SReplaceOrder& order)
{
    const std::vector<SMatch> matches = FindAll(editor, order);
    if (matches.empty() || editor.isReadOnly())
        return 0;
    const long begin = matches.front().start;
    const long end = matches.back().end;
    // Until the text is changed this stays where it is.
    const char* old = static_cast<const char*>(editor.SendScintillaPtrResult(TBase::SCI_GETCHARACTERPOINTER));
    std::string text;
    long at = begin;
    for (const SMatch& match : matches) {
        text.append(old + at, static_cast<std::size_t>(match.start - at)).append(match.text);
        at = match.end;
    }
    const long anchor = Moved(editor.SendScintilla(TBase::SCI_GETANCHOR), matches);
    const long caret = Moved(editor.SendScintilla(TBase::SCI_GETCURRENTPOS), matches);
    editor.ReplaceKeepingView({begin, end}, text);
    const int firstLine = editor.firstVisibleLine();
    editor.SendScintilla(TBase::SCI_SETSEL, static_cast<unsigned long>(anchor), caret);
    editor.setFirstVisibleLine(firstLine);
    return static_cast<int>(matches.size());
}

} // namespace Kesh::Workbench
