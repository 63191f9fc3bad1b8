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

struct SCommentMarks
{
    std::string_view open;
    std::string_view close; ///< may be empty
};

/// What begins and ends a comment where a lexer has given this style.
SCommentMarks CommentMarks(const QsciLexer* lexer, int style)
{
    if (qobject_cast<const QsciLexerCSS*>(lexer))
        return {"/*", "*/"};
    if (qobject_cast<const QsciLexerHTML*>(lexer) && style < QsciLexerHTML::JavaScriptStart)
        return {"<!--", "-->"};
    return {"//", ""};
}

std::string_view Trimmed(std::string_view text)
{
    constexpr std::string_view Blanks = " \t\r\n\v\f";
    const std::size_t from = text.find_first_not_of(Blanks);
    return from == text.npos ? std::string_view()
                             : text.substr(from, text.find_last_not_of(Blanks) + 1 - from);
}

/// Calls `action` with each line, its end included.
template <class TAction> void ForEachLine(std::string_view text, TAction action)
{
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::size_t size = end == text.npos ? text.size() : end + 1;
        action(text.substr(0, size));
        text.remove_prefix(size);
    }
}

/// The code of a line without its marks.
std::string_view WithoutMarks(std::string_view code, const SCommentMarks& marks)
{
    code.remove_prefix(marks.open.size());
    if (code.ends_with(marks.close))
        code.remove_suffix(marks.close.size());
    return Trimmed(code);
}

/// Makes all lines comments, or, when all are, none.
std::string WithToggledComments(std::string_view text, const SCommentMarks& marks)
{
    bool all = true;
    ForEachLine(text, [&](std::string_view line) {
        const std::string_view code = Trimmed(line);
        all &= code.empty() || code.starts_with(marks.open);
    });
    std::string changed;
    ForEachLine(text, [&](std::string_view line) {
        const std::string_view code = Trimmed(line);
        if (code.empty()) {
            changed += line;
            return;
        }
        const auto indent = static_cast<std::size_t>(code.data() - line.data());
        changed += line.substr(0, indent);
        if (all)
            changed += WithoutMarks(code, marks);
        else
            changed.append(marks.open)
                .append(" ")
                .append(code)
                .append(marks.close.empty() ? "" : " ")
                .append(marks.close);
        changed += line.substr(indent + code.size());
    });
    return changed;
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

void CCodeEditor::ReplaceKeepingView(const SByteSpan& span, std::string_view text)
{
    const int firstLine = firstVisibleLine();
    const int lineCount = lines();
    const QList<int> folds = contractedFolds();
    SendScintilla(SCI_SETTARGETRANGE, static_cast<unsigned long>(span.start), span.end);
    SendScintilla(SCI_REPLACETARGET, text.size(), text.data());
    if (lines() == lineCount) // else they are the folds of other lines
        SetFolds(folds);
    setFirstVisibleLine(firstLine);
    // The marks of the errors have to be shown anew.
    emit visibleLinesChanged();
}

void CCodeEditor::ToggleComment()
{
    int first = 0, last = 0, index = 0, endIndex = 0;
    getSelection(&first, &index, &last, &endIndex);
    if (first < 0)
        getCursorPosition(&first, &index), last = first;
    else if (endIndex == 0 && last > first)
        --last;
    const SByteSpan span{SendScintilla(SCI_POSITIONFROMLINE, first),
                         SendScintilla(SCI_GETLINEENDPOSITION, last)};
    // In a document of several languages the first line tells which one it is.
    const long begin = SendScintilla(SCI_GETLINEINDENTPOSITION, first);
    if (const long styled = SendScintilla(SCI_GETENDSTYLED); styled <= begin)
        SendScintilla(SCI_COLOURISE, static_cast<unsigned long>(styled), begin + 1);
    const SCommentMarks marks = CommentMarks(lexer(), static_cast<int>(SendScintilla(SCI_GETSTYLEAT, begin)));
    const std::string_view old = ViewBytes().substr(static_cast<std::size_t>(span.start),
                                                    static_cast<std::size_t>(span.end - span.start));
    // However many lines there are, the text is replaced once.
    ReplaceKeepingView(span, WithToggledComments(old, marks));
    setSelection(first, 0, last, lineLength(last) - (last + 1 < lines() ? 1 : 0));
}

} // namespace Kesh::Workbench
