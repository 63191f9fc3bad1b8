// The text of the editor: in and out, and what changes several places of it at once.
#include "CodeEditor.h"

#include "EditorTheme.h"
#include "Files/FilePath.h"

#include <Qsci/qscilexercss.h>
#include <Qsci/qscilexerhtml.h>
#include <algorithm>
#include <utility>

namespace Kesh::Workbench {

namespace {

/// Longer texts stay uncoloured: a lexer looks at all of the text up to the visible part.
constexpr std::size_t MaxColouredLength = 8 << 20; // bytes

/// What begins and ends a comment where a lexer has given this style.
std::pair<QString, QString> CommentMarks(const QsciLexer* lexer, int style)
{
    if (qobject_cast<const QsciLexerCSS*>(lexer))
        return {QStringLiteral("/*"), QStringLiteral("*/")};
    if (qobject_cast<const QsciLexerHTML*>(lexer) && style < QsciLexerHTML::JavaScriptStart)
        return {QStringLiteral("<!--"), QStringLiteral("-->")};
    return {QStringLiteral("//"), QString()};
}

} // namespace

void CCodeEditor::SetContent(const std::wstring& text)
{
    // setText() would end at the first NUL.
    const std::string bytes = Host::PathToBytes(text);
    m_isPlain = bytes.size() > MaxColouredLength;
    if (m_isPlain && lexer()) {
        setLexer(nullptr);
        ApplyTheme(*this, m_fontSize); // which the lexer has taken with it
    }
    m_isLoading = true;
    SendScintilla(SCI_SETUNDOCOLLECTION, 0UL);
    SendScintilla(SCI_CLEARALL);
    SendScintilla(SCI_ADDTEXT, bytes.size(), bytes.data());
    SendScintilla(SCI_SETUNDOCOLLECTION, 1UL);
    SendScintilla(SCI_EMPTYUNDOBUFFER);
    SendScintilla(SCI_GOTOPOS, 0UL);
    SendScintilla(SCI_SETSAVEPOINT);
    m_isLoading = false;
    m_edits.Clear();
    TakeIndentation(text);
}

void CCodeEditor::OnModified(int position, int kind, const char* text, int length)
{
    if (m_isLoading || !text)
        return;
    const std::string_view bytes(text, static_cast<std::size_t>(length));
    if (kind & SC_MOD_INSERTTEXT)
        m_edits.NoteInsertion(PlaceOf(position), bytes);
    else if (kind & SC_MOD_DELETETEXT)
        m_edits.NoteDeletion(PlaceOf(position), bytes);
}

void CCodeEditor::ReplaceSelection(const std::string& text)
{
    SendScintilla(SCI_TARGETFROMSELECTION);
    SendScintilla(SCI_REPLACETARGET, text.size(), text.data());
    SendScintilla(SCI_SETEMPTYSELECTION, SendScintilla(SCI_GETTARGETEND));
}

void CCodeEditor::SelectBytes(long start, long end)
{
    SendScintilla(SCI_ENSUREVISIBLE, SendScintilla(SCI_LINEFROMPOSITION, start));
    SendScintilla(SCI_SETSEL, static_cast<unsigned long>(start), end);
}

std::string_view CCodeEditor::ViewBytes() const
{
    const auto size = static_cast<std::size_t>(SendScintilla(SCI_GETLENGTH));
    return {static_cast<const char*>(SendScintillaPtrResult(SCI_GETCHARACTERPOINTER)), size};
}

void CCodeEditor::ReplaceBytes(std::string_view bytes)
{
    const std::string_view old = ViewBytes();
    // What stays is left alone, and with it the caret and the marks in it; no character is cut in two.
    const auto isInside = [](std::string_view text, std::size_t at) {
        return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80;
    };
    const std::size_t least = std::min(old.size(), bytes.size());
    std::size_t front = 0, back = 0;
    while (front < least && old[front] == bytes[front])
        ++front;
    while (front > 0 && (isInside(old, front) || isInside(bytes, front)))
        --front;
    while (back < least - front && old[old.size() - 1 - back] == bytes[bytes.size() - 1 - back])
        ++back;
    while (back > 0 && (isInside(old, old.size() - back) || isInside(bytes, bytes.size() - back)))
        --back;
    const std::size_t oldEnd = old.size() - back;
    if (front == oldEnd && old.size() == bytes.size())
        return;
    SendScintilla(SCI_SETTARGETRANGE, static_cast<unsigned long>(front), static_cast<long>(oldEnd));
    SendScintilla(SCI_REPLACETARGET, bytes.size() - back - front, bytes.data() + front);
}

std::wstring CCodeEditor::GetContent() const
{
    std::wstring text = Host::PathFromBytes(ViewBytes());
    if (text.find(L'\r') == std::wstring::npos)
        return text;
    // A carriage return can only have been pasted; it ends a line here as it does in the widget.
    std::wstring clean;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != L'\r')
            clean += text[i];
        else if (i + 1 == text.size() || text[i + 1] != L'\n')
            clean += L'\n';
    }
    return clean;
}

void CCodeEditor::ReplaceSpan(const SyntaxParser::SScheme& span, const std::wstring& text)
{
    const std::string bytes = Host::PathToBytes(text);
    SendScintilla(SCI_SETTARGETSTART, PositionOf(span.start));
    SendScintilla(SCI_SETTARGETEND, PositionOf(span.end));
    SendScintilla(SCI_REPLACETARGET, bytes.size(), bytes.data());
}

void CCodeEditor::ToggleComment()
{
    int first = 0, last = 0, index = 0, endIndex = 0;
    getSelection(&first, &index, &last, &endIndex);
    if (first < 0)
        getCursorPosition(&first, &index), last = first;
    else if (endIndex == 0 && last > first)
        --last;
    SendScintilla(SCI_COLOURISE, 0UL, SendScintilla(SCI_GETLINEENDPOSITION, last));
    // In a document of several languages the first line tells which one it is.
    const int style =
        static_cast<int>(SendScintilla(SCI_GETSTYLEAT, SendScintilla(SCI_GETLINEINDENTPOSITION, first)));
    const auto [open, close] = CommentMarks(lexer(), style);
    const auto trimmed = [&](int line) { return text(line).trimmed(); };
    bool all = true;
    for (int line = first; line <= last; ++line)
        all &= trimmed(line).isEmpty() || trimmed(line).startsWith(open);
    beginUndoAction();
    for (int line = first; line <= last; ++line) {
        const QString code = trimmed(line);
        if (code.isEmpty())
            continue;
        QString changed =
            all ? code.mid(open.size()) : open + ' ' + code + (close.isEmpty() ? close : ' ' + close);
        if (all && !close.isEmpty() && changed.endsWith(close))
            changed.chop(close.size());
        const int from = text(line).indexOf(code);
        setSelection(line, from, line, from + code.size());
        replaceSelectedText(all ? changed.trimmed() : changed);
    }
    endUndoAction();
    setSelection(first, 0, last, lineLength(last) - (last + 1 < lines() ? 1 : 0));
}

} // namespace Kesh::Workbench
