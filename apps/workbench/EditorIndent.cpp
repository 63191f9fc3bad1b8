// What the editor adds to the keys that begin a line or end a block, in one step with what was typed.
#include "CodeEditor.h"

#include <QKeyEvent>
#include <algorithm>

namespace Kesh::Workbench {

namespace {

bool IsBlank(const QString& text)
{
    return text.trimmed().isEmpty();
}

QString IndentOf(const QString& line)
{
    int end = 0;
    while (end < line.size() && (line[end] == ' ' || line[end] == '\t'))
        ++end;
    return line.left(end);
}

} // namespace

void CCodeEditor::TakeIndentation(std::wstring_view text)
{
    constexpr int LookedAt = 2000; // lines
    int tabs = 0, blanks = 0;
    std::size_t least = 0; // blanks at the start of a line
    std::size_t at = 0;
    for (int line = 0; line < LookedAt && at < text.size(); ++line) {
        const std::size_t end = std::min(text.find(L'\n', at), text.size());
        const std::size_t code = std::min(text.find_first_not_of(L' ', at), end) - at;
        if (text[at] == L'\t')
            ++tabs;
        // One blank is that of a comment's stars, and an empty line says nothing.
        else if (code > 1 && at + code < end) {
            ++blanks;
            least = least == 0 ? code : std::min(least, code);
        }
        at = end + 1;
    }
    setIndentationsUseTabs(tabs >= blanks);
    setIndentationWidth(tabs >= blanks || least > 8 ? 0 : static_cast<int>(least));
}

QString CCodeEditor::OneIndent() const
{
    const int width = indentationWidth() > 0 ? indentationWidth() : tabWidth();
    return indentationsUseTabs() ? QStringLiteral("\t") : QString(width, QLatin1Char(' '));
}

void CCodeEditor::BreakLine()
{
    beginUndoAction();
    removeSelectedText();
    int line = 0, index = 0;
    getCursorPosition(&line, &index);
    const QString whole = text(line).remove('\n');
    const QString before = whole.left(index), behind = whole.mid(index);
    // In front of the text a new line gets what stands before the caret, and no more.
    const QString indent = IndentOf(before);
    const QString code = before.trimmed();
    const bool opens = code.endsWith('{') || code.endsWith('(') || code.endsWith('[');
    const QChar next = behind.trimmed().isEmpty() ? QChar() : behind.trimmed().at(0);
    const bool closes = next == '}' || next == ')' || next == ']';
    ReplaceSelection(('\n' + indent + (opens ? OneIndent() : QString())).toStdString());
    const long caret = SendScintilla(SCI_GETCURRENTPOS);
    if (opens && closes) {
        ReplaceSelection(('\n' + indent).toStdString());
        SendScintilla(SCI_SETEMPTYSELECTION, caret);
    }
    endUndoAction();
    SendScintilla(SCI_SCROLLCARET);
    SendScintilla(SCI_CHOOSECARETX);
}

bool CCodeEditor::IsInIndent() const
{
    int line = 0, index = 0;
    getCursorPosition(&line, &index);
    return IsBlank(text(line).left(index));
}

void CCodeEditor::EndBlock(const QString& brace)
{
    beginUndoAction();
    ReplaceSelection(brace.toStdString());
    const long end = SendScintilla(SCI_GETCURRENTPOS);
    int line = 0, index = 0;
    getCursorPosition(&line, &index);
    // Braces match that are of the same style, which the new one has to get first.
    SendScintilla(SCI_COLOURISE, static_cast<unsigned long>(SendScintilla(SCI_GETENDSTYLED)), end);
    const long partner = SendScintilla(SCI_BRACEMATCH, static_cast<unsigned long>(end - 1), 0L);
    if (partner >= 0) {
        const QString indent = IndentOf(text(static_cast<int>(SendScintilla(SCI_LINEFROMPOSITION, partner))));
        setSelection(line, 0, line, index);
        ReplaceSelection((indent + brace).toStdString());
    }
    endUndoAction();
    SendScintilla(SCI_SCROLLCARET);
    SendScintilla(SCI_CHOOSECARETX);
}

void CCodeEditor::keyPressEvent(QKeyEvent* event)
{
    const bool isPlain =
        !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) && !isReadOnly();
    if (isPlain && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter))
        BreakLine();
    else if (isPlain && event->text() == QLatin1String("}") && IsInIndent())
        EndBlock(event->text());
    else
        QsciScintilla::keyPressEvent(event);
}

} // namespace Kesh::Workbench
