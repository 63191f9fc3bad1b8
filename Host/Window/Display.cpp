#include "Window/Display.h"

#include <QGuiApplication>
#include <QScreen>

namespace Kesh::Host {

double CDisplay::ScaleFactor()
{
    constexpr double PlainDotsPerInch = 96.0;
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen ? screen->logicalDotsPerInch() / PlainDotsPerInch : 1.0;
}

} // namespace Kesh::Host
