#pragma once

#include <QApplication>

namespace Kesh::Host {

/// A QApplication in which a fault of a plug-in, raised while it handles an event, ends that event only.
class CGuiApplication : public QApplication
{
public:
    using QApplication::QApplication;
    bool notify(QObject* receiver, QEvent* event) override;
};

} // namespace Kesh::Host
