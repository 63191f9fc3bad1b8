#include "StatusLine.h"

#include "Texts.h"

#include <QLabel>
#include <QProgressBar>
#include <QStatusBar>
#include <QToolButton>
#include <algorithm>
#include <utility>

namespace Kesh::Workbench {

namespace {

constexpr int MessageTime = 6000; // ms

} // namespace

CStatusLine::CStatusLine(QStatusBar& bar)
    : m_bar(bar),
      m_progressText(new QLabel),
      m_progress(new QProgressBar),
      m_stop(new QToolButton),
      m_caret(new QLabel),
      m_encoding(new QToolButton),
      m_lineEnds(new QToolButton),
      m_counts(new QLabel)
{
    m_counts->setObjectName(QStringLiteral("errorCounts"));
    m_progress->setMaximumWidth(160);
    m_progress->setTextVisible(false);
    m_progress->setAccessibleName(Tr("Progress"));
    m_stop->setObjectName(QStringLiteral("stopCheck"));
    m_stop->setText(Tr("Stop"));
    m_stop->setFocusPolicy(Qt::TabFocus);
    m_stop->hide();
    connect(m_stop, &QToolButton::clicked, this, &CStatusLine::stopRequested);
    const std::pair<QToolButton*, const char*> choices[] = {{m_encoding, "encoding"},
                                                            {m_lineEnds, "lineEnds"}};
    for (const auto& [button, name] : choices) {
        button->setObjectName(QLatin1String(name));
        button->setPopupMode(QToolButton::InstantPopup);
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::TabFocus);
    }
    for (QLabel* label : {m_progressText, m_counts, m_caret}) {
        label->setContentsMargins(8, 0, 8, 0);
        label->setTextFormat(Qt::PlainText);
    }
    for (QWidget* widget : std::initializer_list<QWidget*>{m_progressText, m_progress, m_stop, m_counts,
                                                           m_encoding, m_lineEnds, m_caret})
        bar.addPermanentWidget(widget);
    ShowProgress({});
    ShowFormat({}, {});
    ShowCounts(0, 0, false);
}

void CStatusLine::ShowProgress(const QString& text)
{
    m_progressText->setText(text);
    m_progressText->setVisible(!text.isEmpty());
    m_progress->setVisible(!text.isEmpty());
    m_progress->setRange(0, 0);
    OfferStop(false);
}

void CStatusLine::OfferStop(bool offer)
{
    m_stop->setVisible(offer);
}

void CStatusLine::SetProgress(std::size_t done, std::size_t total)
{
    m_progress->setRange(0, static_cast<int>(total));
    m_progress->setValue(static_cast<int>(done));
}

void CStatusLine::ShowCaret(long long line, long long column)
{
    m_caret->setText(line < 0 ? QString() : Tr("Line %1, column %2").arg(line + 1).arg(column + 1));
}

void CStatusLine::ShowFormat(const QString& encoding, const QString& lineEnds)
{
    m_encoding->setText(encoding);
    m_encoding->setVisible(!encoding.isEmpty());
    m_encoding->setAccessibleName(Tr("Encoding: %1").arg(encoding));
    m_lineEnds->setText(lineEnds);
    m_lineEnds->setVisible(!lineEnds.isEmpty());
    m_lineEnds->setAccessibleName(Tr("Line ends: %1").arg(lineEnds));
}

void CStatusLine::SetFormatMenus(QMenu& encodings, QMenu& lineEnds)
{
    m_encoding->setMenu(&encodings);
    m_encoding->setToolTip(Tr("How the file is written"));
    m_lineEnds->setMenu(&lineEnds);
    m_lineEnds->setToolTip(Tr("How the file's lines end"));
}

void CStatusLine::ShowCounts(int errors, int warnings, bool checked)
{
    const QString none = checked ? Tr("No errors") : QString();
    m_counts->setText(errors + warnings == 0 ? none
                                             : Tr("Errors: %1, warnings: %2").arg(errors).arg(warnings));
}

void CStatusLine::ShowMessage(const QString& text)
{
    int width = m_bar.width();
    for (const QWidget* part : std::initializer_list<const QWidget*>{
             m_progressText, m_progress, m_stop, m_counts, m_encoding, m_lineEnds, m_caret})
        if (part->isVisible())
            width = std::min(width, part->x());
    const int margin = 12;
    m_bar.showMessage(m_bar.fontMetrics().elidedText(text, Qt::ElideRight, width - margin), MessageTime);
}

} // namespace Kesh::Workbench
