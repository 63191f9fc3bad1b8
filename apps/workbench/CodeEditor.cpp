#include "CodeEditor.h"

#include "Application/FilePath.h"
#include "EditorTheme.h"
#include "SyntaxParser/SPDocument.h"

#include <QHelpEvent>
#include <QToolTip>
#include <Qsci/qscilexercss.h>
#include <Qsci/qscilexerhtml.h>
#include <Qsci/qscilexerjavascript.h>
#include <algorithm>

namespace Kesh::Workbench {

namespace {

enum EMargin { LineMargin = 0, ErrorMargin = 1, FoldMargin = 2 };
constexpr int ErrorMarker = 2;
constexpr int ErrorIndicator = 8; // below are those of lexers
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
        auto* lexer = new QsciLexerHTML(parent);
        lexer->setFoldCompact(false);
        return lexer;
    }
    return nullptr;
}

} // namespace

CCodeEditor::CCodeEditor(QWidget* parent) : QsciScintilla(parent)
{
    setUtf8(true);
    setEolMode(EolUnix);
    setAutoIndent(true);
    setTabWidth(4);
    setBraceMatching(SloppyBraceMatch);
    setScrollWidth(1);
    setScrollWidthTracking(true);
    setMarginType(LineMargin, NumberMargin);
    setMarginType(ErrorMargin, SymbolMargin);
    setMarginWidth(ErrorMargin, fontMetrics().height() + 2);
    setMarginMarkerMask(ErrorMargin, 1 << ErrorMarker);
    setFolding(BoxedTreeFoldStyle, FoldMargin);
    indicatorDefine(SquiggleIndicator, ErrorIndicator);
    setIndicatorDrawUnder(true, ErrorIndicator);
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

void CCodeEditor::ScrollToCaret(int margin)
{
    SendScintilla(SCI_SETVISIBLEPOLICY, VISIBLE_SLOP, margin);
    SendScintilla(SCI_ENSUREVISIBLEENFORCEPOLICY,
                  SendScintilla(SCI_LINEFROMPOSITION, SendScintilla(SCI_GETCURRENTPOS)));
    SendScintilla(SCI_SCROLLCARET);
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

void CCodeEditor::ShowErrors(int first, int end, const std::vector<SyntaxParser::SScheme>& spans,
                             const std::vector<int>& markedLines)
{
    SendScintilla(SCI_SETINDICATORCURRENT, ErrorIndicator);
    const int from = PositionOf({0, first});
    const int to = end >= lines() ? length() : PositionOf({0, end});
    SendScintilla(SCI_INDICATORCLEARRANGE, from, to - from);
    for (const SyntaxParser::SScheme& span : spans) {
        int start = PositionOf(span.start);
        int stop = PositionOf(span.end);
        // An error at the end of a line, or of no width, must be seen too.
        if (stop <= start)
            stop = static_cast<int>(SendScintilla(SCI_POSITIONAFTER, start));
        if (stop <= start)
            start = static_cast<int>(SendScintilla(SCI_POSITIONBEFORE, start));
        SendScintilla(SCI_INDICATORFILLRANGE, start, stop - start);
    }
    for (int line = first; line < end; ++line) {
        const bool marked = SendScintilla(SCI_MARKERGET, line) & (1 << ErrorMarker);
        const bool wanted = std::binary_search(markedLines.begin(), markedLines.end(), line);
        if (marked && !wanted)
            SendScintilla(SCI_MARKERDELETE, line, ErrorMarker);
        else if (wanted && !marked)
            SendScintilla(SCI_MARKERADD, line, ErrorMarker);
    }
}

void CCodeEditor::SetErrorIcon(const QIcon& icon)
{
    const int side = fontMetrics().height();
    if (!icon.isNull())
        markerDefine(icon.pixmap(side, side), ErrorMarker);
    else
        markerDefine(Circle, ErrorMarker);
}

void CCodeEditor::SetErrorColor(const QColor& color)
{
    setIndicatorForegroundColor(color, ErrorIndicator);
}

void CCodeEditor::UpdateMargins()
{
    const QString widest(std::max(3, static_cast<int>(QString::number(lines()).size())), QLatin1Char('9'));
    setMarginWidth(LineMargin, QStringLiteral(" ") + widest);
}

void CCodeEditor::OnUpdateUi()
{
    const int first = GetFirstVisibleLine();
    const int end = GetEndVisibleLine();
    if (first == m_shownFirst && end == m_shownEnd)
        return;
    m_shownFirst = first;
    m_shownEnd = end;
    emit visibleLinesChanged();
}

void CCodeEditor::ShowToolTip(const QPoint& point, const QPoint& globalPoint)
{
    QString text;
    const int marginsWidth = marginWidth(LineMargin) + marginWidth(ErrorMargin) + marginWidth(FoldMargin);
    if (m_messages) {
        if (point.x() < marginsWidth) {
            const int line = lineAt(point);
            text = line >= 0 ? m_messages({0, line}, true) : QString();
        } else {
            const long position = SendScintilla(SCI_POSITIONFROMPOINTCLOSE, point.x(), point.y());
            text = position >= 0 ? m_messages(PlaceOf(static_cast<int>(position)), false) : QString();
        }
    }
    if (text.isEmpty())
        QToolTip::hideText();
    else
        QToolTip::showText(globalPoint, text, this);
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
