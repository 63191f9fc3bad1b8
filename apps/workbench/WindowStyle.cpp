#include "WindowStyle.h"

#include <QPainter>
#include <QStyleOption>

namespace Kesh::Workbench {

CWindowStyle::CWindowStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

void CWindowStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                 const QWidget* widget) const
{
    if (element != PE_IndicatorTabClose) {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        return;
    }
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const bool pointedAt = option->state & State_MouseOver;
    if (pointedAt) {
        painter->setPen(Qt::NoPen);
        painter->setBrush(option->palette.color(QPalette::Mid));
        painter->drawRoundedRect(option->rect, 3, 3);
    }
    const double inset = option->rect.width() / 3.4;
    const QRectF cross = QRectF(option->rect).adjusted(inset, inset, -inset, -inset);
    painter->setPen(QPen(option->palette.color(QPalette::WindowText), 1.6, Qt::SolidLine, Qt::RoundCap));
    painter->drawLine(cross.topLeft(), cross.bottomRight());
    painter->drawLine(cross.topRight(), cross.bottomLeft());
    painter->restore();
}

void CWindowStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                      QPainter* painter, const QWidget* widget) const
{
    const auto* button = qstyleoption_cast<const QStyleOptionToolButton*>(option);
    if (control == CC_ToolButton && button && button->state & State_AutoRaise) {
        QStyleOptionToolButton plain(*button);
        plain.features &= ~QStyleOptionToolButton::HasMenu;
        QProxyStyle::drawComplexControl(control, &plain, painter, widget);
        return;
    }
    QProxyStyle::drawComplexControl(control, option, painter, widget);
}

} // namespace Kesh::Workbench
