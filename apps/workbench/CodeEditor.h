#pragma once

#include "EditLog.h"
#include "ErrorTip.h"
#include "Kesh/SyntaxParser/Position.h"
#include "Severity.h"
#include "TextMatches.h"

#include <QIcon>
#include <QString>
#include <QUrl>
#include <Qsci/qsciscintilla.h>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace Kesh::Workbench {

/// The editor widget: text with colours, line numbers, error marks and underlines. Positions are columns and
/// lines in UTF-32 characters, both 0-based. GUI thread only.
class CCodeEditor final : public QsciScintilla
{
    Q_OBJECT

public:
    explicit CCodeEditor(QWidget* parent = nullptr);

    /// Colours the text as the language that the file's ending tells.
    void SetLanguageByPath(const std::wstring& path);

    /// The text with lines that end with "\n"; NUL characters are kept. Setting it forgets the undo history.
    void SetContent(const std::wstring& text);
    std::wstring GetContent() const;
    /// The text as UTF-8, as it is.
    std::string GetBytes() const { return std::string(ViewBytes()); }
    /// The same, valid until the text is changed or the editor asked for a text.
    std::string_view ViewBytes() const;
    /// What has become of it since it was checked.
    CEditLog& GetEdits() { return m_edits; }
    /// Makes it that text, in one step that can be undone.
    void ReplaceBytes(std::string_view bytes);

    SyntaxParser::CIterator GetCaretPosition() const;
    /// Puts the caret there, as near as the text allows; ends the selection.
    void SetCaretPosition(const SyntaxParser::CIterator& pos);
    /// Selects it, with the caret at its end.
    void SelectSpan(const SyntaxParser::SScheme& span);
    void ScrollToCaret(int margin);
    /// Just below the caret, in the viewport.
    QPoint GetCaretPoint() const;
    void ReplaceSpan(const SyntaxParser::SScheme& span, const std::wstring& text);
    /// Replaces a stretch of the text at once, with view and folds where they were as far as that goes.
    void ReplaceKeepingView(const SByteSpan& span, std::string_view text);
    /// UTF-8 in place of what is selected.
    void ReplaceSelection(const std::string& text);
    /// Selects it, so that it can be seen.
    void SelectBytes(long start, long end);
    /// Makes the selected lines comments of their language, or takes that back.
    void ToggleComment();
    /// Scrolls until the caret is in the middle third of what is seen.
    void CenterCaret();

    /// Folds these lines, as far as there is something to fold.
    void SetFolds(const QList<int>& lines);

    /// The lines on screen, end exclusive.
    int GetFirstVisibleLine() const;
    int GetEndVisibleLine() const;

    struct SMark
    {
        SyntaxParser::SScheme span;
        ESeverity severity;
    };
    /// Shows the marks of errors and warnings: underlines, and icons on the lines where they begin. Replaces
    /// what was shown between the lines `first` and `end`.
    void ShowMarks(int first, int end, const std::vector<SMark>& marks);
    /// The icons of errors; the others are the window's own.
    void SetErrorIcon(const QIcon& icon);
    void SetMarkColor(ESeverity severity, const QColor& color);
    /// Answers what is to be said of a place. `wholeLine`: of any place of the line.
    using TTipSource =
        std::function<std::vector<CErrorTip::SLine>(const SyntaxParser::CIterator& pos, bool wholeLine)>;
    void SetTipSource(TTipSource source) { m_tips = std::move(source); }

    /// Whether the text is too long to be coloured.
    bool IsPlain() const { return m_isPlain; }
    /// In points; ApplyTheme() sets it.
    void SetFontSize(int size) { m_fontSize = size; }
    /// Makes room for the line numbers.
    void UpdateMargins();

signals:
    /// Other lines have come into view.
    void visibleLinesChanged();
    /// Files or folders have been dropped on the editor.
    void urlsDropped(const QList<QUrl>& urls);
    void explainRequested(int code);
    /// The caret has been put where there is something to fix.
    void fixRequested();
    void menuRequested(const QPoint& globalPoint);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    int PositionOf(const SyntaxParser::CIterator& pos) const;
    SyntaxParser::CIterator PlaceOf(int position) const;
    /// Has new lines indented as those of the text are.
    void TakeIndentation(std::wstring_view text);
    QString OneIndent() const;
    /// Whether only blanks stand before the caret in its line.
    bool IsInIndent() const;
    /// Begins a new line, as far in as the text asks for.
    void BreakLine();
    /// Puts in a closing brace, as far in as what it closes.
    void EndBlock(const QString& brace);
    void Underline(const SyntaxParser::SScheme& span);
    void ShowLineMark(int line, ESeverity severity);
    void OnModified(int position, int kind, const char* text, int length);
    void OnUpdateUi();
    void MatchBrackets();
    int LineAtHeight(int y) const;
    void ShowToolTip(const QPoint& point, const QPoint& globalPoint);

    CEditLog m_edits;
    bool m_isLoading = false; ///< the text is being replaced by another one
    TTipSource m_tips;
    CErrorTip* m_tip = nullptr; ///< made when it is first needed
    SyntaxParser::CIterator m_tipPlace{0, 0};
    bool m_isPlain = false;
    int m_fontSize = 10;
    bool m_centersWhenShown = false;
    int m_shownFirst = -1;
    int m_shownEnd = -1;
};

} // namespace Kesh::Workbench
