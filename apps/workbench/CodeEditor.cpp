#include "CodeEditor.h"

#include "EditorTheme.h"
#include "Files/FilePath.h"
#include "HtmlLexer.h"
#include "SyntaxParser/SPDocument.h"

#include <QDropEvent>
#include <QHelpEvent>
#include <QMimeData>
#include <QTimer>
#include <Qsci/qscicommandset.h>
#include <Qsci/qscilexercss.h>
#include <Qsci/qscilexerjavascript.h>
#include <algorithm>
#include <cstring>
#include <utility>

namespace Kesh::Workbench {

namespace {

enum EMargin { LineMargin = 0, ErrorMargin = 1, FoldMargin = 2 };
constexpr int ErrorMarker = 2;
constexpr int WarningMarker = 3;
constexpr int ErrorIndicator = 8; // below are those of lexers
constexpr int WarningIndicator = 9;
/// Longer texts stay uncoloured: a lexer looks at all of the text up to the visible part.
constexpr std::size_t MaxColouredLength = 8 << 20; // bytes

QsciLexer* MakeLexer(const std::wstring& path, QObject* parent)
{
    const QString name = Host::PathToQt(path);
    const auto ends = [&](const char* ending) {
        return name.endsWith(QLatin1String(ending), Qt::CaseInsensitive);
    };
    if (ends(".css"))
        return new QsciLexerCSS(parent);
    if (ends(".js"))
        return new QsciLexerJavaScript(parent);
    if (ends(".xml") || ends(".svg") || !SyntaxParser::FactoryForPath(path).empty()) {
        return new CHtmlLexer(parent);
    }
    return nullptr;
}

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

CCodeEditor::CCodeEditor(QWidget* parent) : QsciScintilla(parent)
{
    setMinimumHeight(fontMetrics().height() * 2); // small screens need no more
    setUtf8(true);
    setEolMode(EolUnix);
    setAutoIndent(true);
    setTabWidth(4);
    setIndentationGuides(true);
    setBraceMatching(NoBraceMatch); // the widget's own takes "<" and ">" for brackets
    setScrollWidth(1);
    setScrollWidthTracking(true);
    setMarginType(LineMargin, NumberMargin);
    setMarginType(ErrorMargin, SymbolMargin);
    setMarginWidth(ErrorMargin, fontMetrics().height() + 2);
    setMarginMarkerMask(ErrorMargin, 1 << ErrorMarker | 1 << WarningMarker);
    setFolding(BoxedTreeFoldStyle, FoldMargin);
    for (const int indicator : {ErrorIndicator, WarningIndicator}) {
        indicatorDefine(SquiggleIndicator, indicator);
        setIndicatorDrawUnder(true, indicator);
    }
    const int side = fontMetrics().height();
    markerDefine(IconOf(ESeverity::Warning).pixmap(side, side), WarningMarker);
    // Their keys are the menu's, which does more, or something else.
    for (const auto command : {QsciCommand::ZoomIn, QsciCommand::ZoomOut, QsciCommand::WordPartLeft})
        standardCommands()->find(command)->setKey(0);
    // Keys that others know for what there is a key for already.
    standardCommands()->find(QsciCommand::Redo)->setAlternateKey(Qt::CTRL | Qt::SHIFT | Qt::Key_Z);
    // Errors are asked for visible lines only, so other lines have to be noticed.
    connect(this, &QsciScintillaBase::SCN_UPDATEUI, this, [this](int) { OnUpdateUi(); });
    connect(this, &QsciScintilla::linesChanged, this, &CCodeEditor::UpdateMargins);
}

void CCodeEditor::SetLanguageByPath(const std::wstring& path)
{
    QsciLexer* old = lexer();
    setLexer(MakeLexer(path, this));
    delete old;
}

void CCodeEditor::SetContent(const std::wstring& text)
{
    // setText() would end at the first NUL.
    const std::string bytes = Host::PathToBytes(text);
    if (bytes.size() > MaxColouredLength)
        setLexer(nullptr);
    SendScintilla(SCI_SETUNDOCOLLECTION, 0UL);
    SendScintilla(SCI_CLEARALL);
    SendScintilla(SCI_ADDTEXT, bytes.size(), bytes.data());
    SendScintilla(SCI_SETUNDOCOLLECTION, 1UL);
    SendScintilla(SCI_EMPTYUNDOBUFFER);
    SendScintilla(SCI_GOTOPOS, 0UL);
    SendScintilla(SCI_SETSAVEPOINT);
    const bool tabs = text.find(L"\n\t") != std::wstring::npos || text.find(L"\n    ") == std::wstring::npos;
    setIndentationsUseTabs(tabs);
}

std::wstring CCodeEditor::GetContent() const
{
    const auto size = static_cast<std::size_t>(SendScintilla(SCI_GETLENGTH));
    const auto* bytes = static_cast<const char*>(SendScintillaPtrResult(SCI_GETCHARACTERPOINTER));
    std::wstring text = Host::PathFromBytes({bytes, size});
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

int CCodeEditor::PositionOf(const SyntaxParser::CIterator& pos) const
{
    const auto line = static_cast<int>(std::clamp<std::int64_t>(pos.y, 0, lines() - 1));
    const auto start = static_cast<int>(SendScintilla(SCI_POSITIONFROMLINE, line));
    const auto end = static_cast<int>(SendScintilla(SCI_GETLINEENDPOSITION, line));
    const auto column = static_cast<int>(std::clamp<std::int64_t>(pos.x, 0, end - start));
    const auto position = static_cast<int>(SendScintilla(SCI_POSITIONRELATIVE, start, column));
    // 0 is also the answer for a place behind the text.
    return position == 0 && column > 0 ? end : std::min(position, end);
}

SyntaxParser::CIterator CCodeEditor::PlaceOf(int position) const
{
    const long line = SendScintilla(SCI_LINEFROMPOSITION, position);
    const long start = SendScintilla(SCI_POSITIONFROMLINE, line);
    return {SendScintilla(SCI_COUNTCHARACTERS, start, position), line};
}

SyntaxParser::CIterator CCodeEditor::GetCaretPosition() const
{
    return PlaceOf(static_cast<int>(SendScintilla(SCI_GETCURRENTPOS)));
}

void CCodeEditor::SetCaretPosition(const SyntaxParser::CIterator& pos)
{
    const int position = PositionOf(pos);
    SendScintilla(SCI_ENSUREVISIBLE, SendScintilla(SCI_LINEFROMPOSITION, position));
    SendScintilla(SCI_SETEMPTYSELECTION, position);
}

void CCodeEditor::SelectSpan(const SyntaxParser::SScheme& span)
{
    SetCaretPosition(span.start);
    SendScintilla(SCI_SETSEL, PositionOf(span.start), PositionOf(span.end));
}

void CCodeEditor::ScrollToCaret(int margin)
{
    SendScintilla(SCI_SETVISIBLEPOLICY, VISIBLE_SLOP, margin);
    SendScintilla(SCI_ENSUREVISIBLEENFORCEPOLICY,
                  SendScintilla(SCI_LINEFROMPOSITION, SendScintilla(SCI_GETCURRENTPOS)));
    SendScintilla(SCI_SCROLLCARET);
}

void CCodeEditor::SetFolds(const QList<int>& folds)
{
    if (folds.isEmpty())
        return;
    SendScintilla(SCI_COLOURISE, 0UL, -1L); // it is the lexer that finds what can be folded
    setContractedFolds(folds);
}

int CCodeEditor::GetFirstVisibleLine() const
{
    return static_cast<int>(SendScintilla(SCI_DOCLINEFROMVISIBLE, SendScintilla(SCI_GETFIRSTVISIBLELINE)));
}

int CCodeEditor::GetEndVisibleLine() const
{
    const long last = SendScintilla(SCI_GETFIRSTVISIBLELINE) + SendScintilla(SCI_LINESONSCREEN);
    return std::min(static_cast<int>(SendScintilla(SCI_DOCLINEFROMVISIBLE, last)) + 1, lines());
}

QPoint CCodeEditor::GetCaretPoint() const
{
    const long position = SendScintilla(SCI_GETCURRENTPOS);
    return {static_cast<int>(SendScintilla(SCI_POINTXFROMPOSITION, 0L, position)),
            static_cast<int>(SendScintilla(SCI_POINTYFROMPOSITION, 0L, position) +
                             SendScintilla(SCI_TEXTHEIGHT, 0UL))};
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

void CCodeEditor::dragEnterEvent(QDragEnterEvent* event)
{
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
    else
        QsciScintilla::dragEnterEvent(event);
}

void CCodeEditor::dragMoveEvent(QDragMoveEvent* event)
{
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
    else
        QsciScintilla::dragMoveEvent(event);
}

void CCodeEditor::dropEvent(QDropEvent* event)
{
    if (!event->mimeData()->hasUrls()) {
        QsciScintilla::dropEvent(event);
        return;
    }
    event->acceptProposedAction();
    emit urlsDropped(event->mimeData()->urls());
}

void CCodeEditor::CenterCaret()
{
    const long line = SendScintilla(SCI_LINEFROMPOSITION, SendScintilla(SCI_GETCURRENTPOS));
    SendScintilla(SCI_ENSUREVISIBLE, line);
    const long shown = SendScintilla(SCI_VISIBLEFROMDOCLINE, line);
    const long onScreen = SendScintilla(SCI_LINESONSCREEN);
    const long place = shown - SendScintilla(SCI_GETFIRSTVISIBLELINE);
    if (place < onScreen / 3 || place >= onScreen - onScreen / 3)
        SendScintilla(SCI_SETFIRSTVISIBLELINE, std::max(0L, shown - onScreen / 2));
    SendScintilla(SCI_SCROLLCARET);
    // In a long line what follows the caret must be seen too, in any other its beginning.
    const long unscrolled = GetCaretPoint().x() + SendScintilla(SCI_GETXOFFSET);
    const long width = viewport()->width();
    SendScintilla(SCI_SETXOFFSET, unscrolled < width - width / 5 ? 0L : unscrolled - width / 2);
    m_centersWhenShown = !isVisible();
}

void CCodeEditor::showEvent(QShowEvent* event)
{
    QsciScintilla::showEvent(event);
    // Only now it becomes known how large the view is.
    if (std::exchange(m_centersWhenShown, false))
        QTimer::singleShot(0, this, &CCodeEditor::CenterCaret);
}

void CCodeEditor::Underline(const SyntaxParser::SScheme& span)
{
    int start = PositionOf(span.start);
    int stop = PositionOf(span.end);
    // An error at the end of a line, or of no width, must be seen too.
    if (stop <= start)
        stop = static_cast<int>(SendScintilla(SCI_POSITIONAFTER, start));
    if (stop <= start)
        start = static_cast<int>(SendScintilla(SCI_POSITIONBEFORE, start));
    SendScintilla(SCI_INDICATORFILLRANGE, start, stop - start);
}

void CCodeEditor::ShowLineMark(int line, ESeverity severity)
{
    const long shown = SendScintilla(SCI_MARKERGET, line);
    for (const auto& [marker, of] :
         {std::pair(ErrorMarker, ESeverity::Error), {WarningMarker, ESeverity::Warning}}) {
        const bool marked = shown & (1 << marker);
        if (marked && severity != of)
            SendScintilla(SCI_MARKERDELETE, line, marker);
        else if (!marked && severity == of)
            SendScintilla(SCI_MARKERADD, line, marker);
    }
}

void CCodeEditor::ShowMarks(int first, int end, const std::vector<SMark>& marks)
{
    const int from = PositionOf({0, first});
    const int to = end >= lines() ? length() : PositionOf({0, end});
    std::vector<ESeverity> severities(static_cast<std::size_t>(std::max(0, end - first)), ESeverity::None);
    for (const auto& [indicator, severity] :
         {std::pair(ErrorIndicator, ESeverity::Error), {WarningIndicator, ESeverity::Warning}}) {
        SendScintilla(SCI_SETINDICATORCURRENT, indicator);
        SendScintilla(SCI_INDICATORCLEARRANGE, from, to - from);
        for (const SMark& mark : marks)
            if (mark.severity == severity)
                Underline(mark.span);
    }
    for (const auto& [span, severity] : marks)
        if (span.start.y >= first && span.start.y < end) {
            ESeverity& worst = severities[static_cast<std::size_t>(span.start.y - first)];
            worst = std::max(worst, severity);
        }
    for (int line = first; line < end; ++line)
        ShowLineMark(line, severities[static_cast<std::size_t>(line - first)]);
}

void CCodeEditor::SetErrorIcon(const QIcon& icon)
{
    const int side = fontMetrics().height();
    if (!icon.isNull())
        markerDefine(icon.pixmap(side, side), ErrorMarker);
    else
        markerDefine(Circle, ErrorMarker);
}

void CCodeEditor::SetMarkColor(ESeverity severity, const QColor& color)
{
    setIndicatorForegroundColor(color, severity == ESeverity::Error ? ErrorIndicator : WarningIndicator);
}

void CCodeEditor::UpdateMargins()
{
    const QString widest(std::max(3, static_cast<int>(QString::number(lines()).size())), QLatin1Char('9'));
    setMarginWidth(LineMargin, QStringLiteral(" ") + widest);
}

void CCodeEditor::MatchBrackets()
{
    const auto isBracket = [this](long position) {
        const int c = static_cast<int>(SendScintilla(SCI_GETCHARAT, position));
        return c != 0 && std::strchr("()[]{}", c) != nullptr;
    };
    const long caret = SendScintilla(SCI_GETCURRENTPOS);
    long bracket = -1;
    if (caret > 0 && isBracket(caret - 1))
        bracket = caret - 1;
    else if (isBracket(caret))
        bracket = caret;
    if (bracket < 0) {
        SendScintilla(SCI_BRACEHIGHLIGHT, ~0UL, -1L);
        return;
    }
    const long partner = SendScintilla(SCI_BRACEMATCH, bracket, 0L);
    if (partner < 0)
        SendScintilla(SCI_BRACEBADLIGHT, bracket);
    else
        SendScintilla(SCI_BRACEHIGHLIGHT, static_cast<unsigned long>(bracket), partner);
}

void CCodeEditor::OnUpdateUi()
{
    MatchBrackets();
    const int first = GetFirstVisibleLine();
    const int end = GetEndVisibleLine();
    if (first == m_shownFirst && end == m_shownEnd)
        return;
    m_shownFirst = first;
    m_shownEnd = end;
    emit visibleLinesChanged();
}

int CCodeEditor::LineAtHeight(int y) const
{
    const long height = SendScintilla(SCI_TEXTHEIGHT, 0UL);
    const long shown = SendScintilla(SCI_GETFIRSTVISIBLELINE) + y / std::max(1L, height);
    if (shown >= SendScintilla(SCI_VISIBLEFROMDOCLINE, lines() - 1) + 1)
        return -1;
    return static_cast<int>(SendScintilla(SCI_DOCLINEFROMVISIBLE, shown));
}

void CCodeEditor::ShowToolTip(const QPoint& point, const QPoint& globalPoint)
{
    std::vector<CErrorTip::SLine> lines;
    SyntaxParser::CIterator place{-1, -1};
    const int marginsWidth = marginWidth(LineMargin) + marginWidth(ErrorMargin) + marginWidth(FoldMargin);
    const bool inMargin = point.x() < marginsWidth;
    if (inMargin) {
        place = {0, LineAtHeight(point.y())};
    } else {
        const long position = SendScintilla(SCI_POSITIONFROMPOINTCLOSE, point.x(), point.y());
        if (position >= 0)
            place = PlaceOf(static_cast<int>(position));
    }
    if (m_tips && place.y >= 0)
        lines = m_tips(place, inMargin);
    if (!m_tip) {
        if (lines.empty())
            return;
        m_tip = new CErrorTip(this);
        connect(m_tip, &CErrorTip::explainRequested, this, &CCodeEditor::explainRequested);
        connect(m_tip, &CErrorTip::fixRequested, this, [this] {
            setFocus();
            SetCaretPosition(m_tipPlace);
            emit fixRequested();
        });
    }
    // What it is about: a character, or a line's part of the margins.
    const int height = static_cast<int>(SendScintilla(SCI_TEXTHEIGHT, 0UL));
    const QRect subject = inMargin ? QRect(0, point.y() - height, marginsWidth, 2 * height)
                                   : QRect(point.x() - height, point.y() - height, 2 * height, 2 * height);
    m_tipPlace = place;
    m_tip->ShowLines(lines, globalPoint, subject.translated(viewport()->mapToGlobal({0, 0})));
}

bool CCodeEditor::viewportEvent(QEvent* event)
{
    if (event->type() != QEvent::ToolTip)
        return QsciScintilla::viewportEvent(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    ShowToolTip(help->pos(), help->globalPos());
    return true;
}

void CCodeEditor::changeEvent(QEvent* event)
{
    QsciScintilla::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && lexer())
        ApplyTheme(*this, lexer()->defaultFont().pointSize());
}

} // namespace Kesh::Workbench
