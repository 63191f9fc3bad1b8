#pragma once

#include <QScreen>
#include <QWidget>

namespace Kesh::Workbench {

/// Makes a dialog as large as wanted, as far as the screen of its window has room for it and its frame.
inline void ResizeOnScreen(QWidget& dialog, const QSize& wanted)
{
    const QWidget* parent = dialog.parentWidget();
    const QScreen* screen = (parent ? parent : &dialog)->screen();
    dialog.resize(wanted.boundedTo(screen->availableSize() * 0.9));
}

} // namespace Kesh::Workbench
