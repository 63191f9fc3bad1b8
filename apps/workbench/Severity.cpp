#include "Severity.h"

#include "EditorTheme.h"
#include "Texts.h"

#include <QPainter>
#include <QPainterPath>

namespace Kesh::Workbench {

namespace {

QColor PlainColor(ESeverity severity)
{
    return severity == ESeverity::Error ? QColor(220, 30, 30) : QColor(240, 165, 0);
}

QPixmap Draw(ESeverity severity, int side)
{
    QPixmap pixmap(side, side);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(side / 16.0, side / 16.0);
    painter.setPen(Qt::NoPen);
    painter.setBrush(PlainColor(severity));
    QPainterPath shape;
    if (severity == ESeverity::Error) {
        shape.addEllipse(1, 1, 14, 14);
    } else {
        shape.moveTo(8, 1);
        shape.lineTo(15.5, 15);
        shape.lineTo(0.5, 15);
        shape.closeSubpath();
    }
    painter.drawPath(shape);
    // An exclamation mark, so that the two also differ for those who see no colours.
    painter.setBrush(severity == ESeverity::Error ? Qt::white : Qt::black);
    painter.drawRect(QRectF(7.1, 4.5, 1.8, 5.5));
    painter.drawEllipse(QRectF(7, 11.2, 2, 2));
    return pixmap;
}

} // namespace

QColor ColorOf(ESeverity severity, const QColor& background)
{
    return MakeLegible(PlainColor(severity), background);
}

QString WithSeverity(const QString& name, ESeverity gravest)
{
    switch (gravest) {
    case ESeverity::Error: return Tr("%1, with errors").arg(name);
    case ESeverity::Warning: return Tr("%1, with warnings").arg(name);
    default: return name;
    }
}

QIcon IconOf(ESeverity severity)
{
    QIcon icon;
    if (severity != ESeverity::None)
        for (const int side : {16, 24, 32, 48, 64})
            icon.addPixmap(Draw(severity, side));
    return icon;
}

} // namespace Kesh::Workbench
