#include "ErrorTip.h"

#include "Texts.h"

#include <QApplication>
#include <QCursor>
#include <QEvent>
#include <QLabel>
#include <QScreen>
#include <QStringList>
#include <QToolTip>
#include <QVBoxLayout>
#include <algorithm>

namespace Kesh::Workbench {

namespace {

constexpr int TickTime = 100;   // ms
constexpr int TicksOfGrace = 4; // time for the way from the text to a link
constexpr int Distance = 6;     // pixels between the pointer and the tip
const QString ExplainLink = QStringLiteral("explain:");
const QString FixLink = QStringLiteral("fix:");

} // namespace

CErrorTip::CErrorTip(QWidget* parent) : QFrame(parent, Qt::ToolTip), m_label(new QLabel)
{
    setObjectName(QStringLiteral("errorTip"));
    setAttribute(Qt::WA_ShowWithoutActivating);
    setFrameShape(QFrame::Box);
    setBackgroundRole(QPalette::ToolTipBase);
    setForegroundRole(QPalette::ToolTipText);
    m_label->setForegroundRole(QPalette::ToolTipText);
    m_label->setTextFormat(Qt::RichText);
    m_label->setTextInteractionFlags(Qt::LinksAccessibleByMouse);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 4, 6, 4);
    layout->addWidget(m_label);
    connect(m_label, &QLabel::linkActivated, this, [this](const QString& link) {
        hide();
        if (link.startsWith(ExplainLink))
            emit explainRequested(link.midRef(ExplainLink.size()).toInt());
        else
            emit fixRequested();
    });
    m_tick.setInterval(TickTime);
    connect(&m_tick, &QTimer::timeout, this, &CErrorTip::OnTick);
}

void CErrorTip::ShowLines(const std::vector<SLine>& lines, const QPoint& point, const QRect& subject)
{
    m_lines = lines;
    if (lines.empty()) {
        hide();
        return;
    }
    // A tip of its own colours: the links must be legible on it.
    QPalette colours = QToolTip::palette();
    colours.setColor(QPalette::Link, QApplication::palette().color(QPalette::Link));
    setPalette(colours);
    const auto link = [&](const QString& target, const QString& title) {
        return QStringLiteral("<a href=\"%1\">%2</a>").arg(target, title.toHtmlEscaped());
    };
    QString html;
    for (const SLine& line : lines) {
        html += QStringLiteral("<div>%1 [%2]").arg(line.text.toHtmlEscaped()).arg(line.code);
        if (line.isExplained)
            html += QStringLiteral(" &nbsp;") + link(ExplainLink + QString::number(line.code), Tr("Explain"));
        html += QStringLiteral("</div>");
    }
    html += QStringLiteral("<div>%1</div>").arg(link(FixLink, Tr("Fix... (Alt+Enter)")));
    m_label->setText(html);
    adjustSize();
    const QScreen* screen = QApplication::screenAt(point);
    const QRect area = screen ? screen->availableGeometry() : QRect(point, size());
    QPoint place = point + QPoint(Distance, Distance);
    if (place.y() + height() > area.bottom())
        place.setY(point.y() - height() - Distance);
    place.setX(std::max(area.left(), std::min(place.x(), area.right() - width())));
    move(place);
    m_subject = subject;
    m_ticksAway = 0;
    show();
    m_tick.start();
    qApp->installEventFilter(this);
}

QString CErrorTip::GetText() const
{
    QStringList texts;
    for (const SLine& line : m_lines)
        texts.append(QStringLiteral("%1 [%2]").arg(line.text).arg(line.code));
    return texts.join('\n');
}

void CErrorTip::OnTick()
{
    const QPoint pointer = QCursor::pos();
    const bool stays = m_subject.contains(pointer) ||
                       geometry().adjusted(-Distance, -Distance, Distance, Distance).contains(pointer);
    m_ticksAway = stays ? 0 : m_ticksAway + 1;
    if (m_ticksAway > TicksOfGrace)
        hide();
}

bool CErrorTip::eventFilter(QObject* watched, QEvent* event)
{
    const auto* widget = qobject_cast<QWidget*>(watched);
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::Wheel:
    case QEvent::ApplicationDeactivate: hide(); break;
    case QEvent::MouseButtonPress:
        if (widget && widget != this && !isAncestorOf(widget))
            hide();
        break;
    default: break;
    }
    return QFrame::eventFilter(watched, event);
}

void CErrorTip::hideEvent(QHideEvent* event)
{
    m_tick.stop();
    qApp->removeEventFilter(this);
    QFrame::hideEvent(event);
}

} // namespace Kesh::Workbench
