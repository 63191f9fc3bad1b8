#include "MainFrame.h"

#include "Texts.h"

#include <QMainWindow>

namespace Kesh::Workbench {

namespace {

constexpr int DefaultBarExtent = 360; // pixels at 96 dots per inch

Qt::DockWidgetArea AreaOf(int placement)
{
    switch (placement) {
    case 0: return Qt::LeftDockWidgetArea;
    case 2: return Qt::RightDockWidgetArea;
    case 3: return Qt::TopDockWidgetArea;
    default: return Qt::BottomDockWidgetArea;
    }
}

} // namespace

CMainFrame::CMainFrame(QMainWindow& window) : m_window(window) {}

void CMainFrame::SetProgressText(const std::wstring& text)
{
    QMetaObject::invokeMethod(
        this, [this, shown = QString::fromStdWString(text)] { emit progressTextChanged(shown); },
        Qt::QueuedConnection);
}

const Host::CMenuItem& CMainFrame::FillMenu()
{
    m_menu = Host::CMenu();
    m_fillMenu(&m_menu, 0);
    return m_menu.GetRoot();
}

QList<QDockWidget*> CMainFrame::GetDocks() const
{
    QList<QDockWidget*> docks;
    for (const auto& [handle, dock] : m_bars)
        if (dock && !dock->objectName().isEmpty())
            docks.append(dock);
    return docks;
}

std::int64_t CMainFrame::AddBar(const std::wstring& name, QWidget* widget, int placement, int size)
{
    const QString key = QString::fromStdWString(name);
    auto* dock = new QDockWidget(Tr(key.toUtf8().constData()), &m_window);
    dock->setObjectName(QStringLiteral("bar.") + key); // by which the layout is restored
    dock->setWidget(widget);
    const Qt::DockWidgetArea area = AreaOf(placement);
    m_window.addDockWidget(area, dock);
    const bool vertical = area == Qt::BottomDockWidgetArea || area == Qt::TopDockWidgetArea;
    const int extent = DefaultBarExtent * m_window.logicalDpiX() / 96 * size / 100;
    m_window.resizeDocks({dock}, {extent}, vertical ? Qt::Vertical : Qt::Horizontal);
    // The widget belongs to the plug-in, which may end it at any time.
    connect(widget, &QObject::destroyed, dock, [this, dock] {
        dock->setObjectName({}); // the next bar of this name gets its place
        m_window.removeDockWidget(dock);
        dock->deleteLater();
    });
    const std::int64_t handle = m_nextHandle++;
    m_bars[handle] = dock;
    return handle;
}

int CMainFrame::ShowBar(std::int64_t handle, int activate)
{
    const auto found = m_bars.find(handle);
    if (found == m_bars.end() || !found->second)
        return 0;
    QDockWidget* dock = found->second;
    dock->show();
    dock->raise();
    if (activate && dock->widget())
        dock->widget()->setFocus();
    return 1;
}

} // namespace Kesh::Workbench
