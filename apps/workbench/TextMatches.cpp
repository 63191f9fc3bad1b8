#include "TextMatches.h"

#include "CodeEditor.h"

#include <QElapsedTimer>
#include <algorithm>
#include <string>

namespace Kesh::Workbench {

using TBase = QsciScintillaBase;

void ForEachMatch(const CCodeEditor& editor, const SReplaceOrder& order,
                  const std::function<bool(long start, long end)>& action)
{
    const std::string pattern = order.pattern.toStdString();
    const unsigned long flags = (order.matchCase ? TBase::SCFIND_MATCHCASE : 0) |
                                (order.wholeWords ? TBase::SCFIND_WHOLEWORD : 0) |
                                (order.regExp ? TBase::SCFIND_REGEXP | TBase::SCFIND_CXX11REGEX : 0);
    editor.SendScintilla(TBase::SCI_SETSEARCHFLAGS, flags);
    const long length = editor.SendScintilla(TBase::SCI_GETLENGTH);
    for (long from = 0; from <= length;) {
        editor.SendScintilla(TBase::SCI_SETTARGETRANGE, static_cast<unsigned long>(from), length);
        const long found = editor.SendScintilla(TBase::SCI_SEARCHINTARGET, pattern.size(), pattern.data());
        if (found < 0)
            break;
        const long end = editor.SendScintilla(TBase::SCI_GETTARGETEND);
        if (!action(found, end))
            break;
        // What is empty would be found for ever.
        from = end > found ? end : std::max(end + 1, editor.SendScintilla(TBase::SCI_POSITIONAFTER, end));
    }
}

SMatchCount CountMatches(const CCodeEditor& editor, const SReplaceOrder& order)
{
    constexpr int MaxTime = 25; // ms
    SMatchCount counted;
    if (order.pattern.isEmpty())
        return counted;
    const long start = editor.SendScintilla(TBase::SCI_GETSELECTIONSTART);
    const long end = editor.SendScintilla(TBase::SCI_GETSELECTIONEND);
    QElapsedTimer time;
    time.start();
    ForEachMatch(editor, order, [&](long matchStart, long matchEnd) {
        ++counted.count;
        if (matchStart == start && matchEnd == end)
            counted.current = counted.count;
        counted.isComplete = time.elapsed() < MaxTime;
        return counted.isComplete;
    });
    return counted;
}

} // namespace Kesh::Workbench
