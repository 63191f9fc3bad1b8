#include "CodeEditor.h"

#include "EditorTheme.h"
#include "Files/FilePath.h"
#include "HtmlLexer.h"
#include "SyntaxParser/SPDocument.h"

#include <QContextMenuEvent>
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

} // namespace

CCodeEditor::CCodeEditor(QWidget* parent) : QsciScintilla(parent)
{
    setMinimumHeight(fontMetrics().height() * 2); // small screens need no more
    setUtf8(true);
    // However far down one goes in a long text, its colours come piece by piece.
    SendScintilla(SCI_SETIDLESTYLING, static_cast<unsigned long>(SC_IDLESTYLING_TOVISIBLE));
    setEolMode(EolUnix);
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
    connect(this, &QsciScintillaBase::SCN_MODIFIED, this,
            [this](int position, int kind, const char* text, int length) {
                OnModified(position, kind, text, length);
            });
    connect(this, &QsciScintilla::linesChanged, this, &CCodeEditor::UpdateMargins);
}

void CCodeEditor::SetLanguageByPath(const std::wstring& path)
{
    QsciLexer* old = lexer();
    setLexer(m_isPlain ? nullptr : MakeLexer(path, this));
    delete old;
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

void CCodeEditor::contextMenuEvent(QContextMenuEvent* event)
{
    emit menuRequested(event->reason() == QContextMenuEvent::Keyboard
                           ? viewport()->mapToGlobal(GetCaretPoint())
                           : event->globalPos());
}

void CCodeEditor::changeEvent(QEvent* event)
{
    QsciScintilla::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && (lexer() || m_isPlain))
        ApplyTheme(*this, m_fontSize);
}

} // namespace Kesh::Workbench
