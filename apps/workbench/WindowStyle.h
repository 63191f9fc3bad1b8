#pragma once

#include <QProxyStyle>

namespace Kesh::Workbench {

/// The style of the whole program. It draws the cross on tabs in the palette's text colour; Fusion's own
/// picture is black on any ground. A flat tool button has no arrow for its menu, which would lie across the
/// text.
class CWindowStyle final : public QProxyStyle
{
    Q_OBJECT

public:
    CWindowStyle();
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
};

} // namespace Kesh::Workbench
