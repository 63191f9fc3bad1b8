#include "Window/GuiApplication.h"

#include "Files/Fault.h"

namespace Kesh::Host {

bool CGuiApplication::notify(QObject* receiver, QEvent* event)
{
    // Qt itself would pass the exception up to main(), through frames that are not made for it.
    bool handled = true;
    Guard(L"internal error", [&] { handled = QApplication::notify(receiver, event); });
    return handled;
}

} // namespace Kesh::Host
