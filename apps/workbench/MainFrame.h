#pragma once

#include "Application/MenuModel.h"
#include "Kesh/SDK/IMainFrame.h"

#include <QDockWidget>
#include <QObject>
#include <QPointer>
#include <map>

class QMainWindow;

namespace Kesh::Workbench {

/// The main window as plug-ins know it: its docked bars, its menu and its progress text.
class CMainFrame final : public QObject, public SDK::IMainFrame, private SDK::IBarManager
{
    Q_OBJECT

public:
    /// The window is not owned and outlives this.
    explicit CMainFrame(QMainWindow& window);

    SDK::IBarManager* GetBarManager() override { return this; }
    AddBarsSignal& GetAddBarsSignal() override { return m_addBars; }
    FillMenuSignal& GetFillMenuSignal() override { return m_fillMenu; }
    void SetProgressText(const std::wstring& text) override;

    /// Asks plug-ins for their bars.
    void AddBars() { m_addBars(this); }
    /// Asks plug-ins for their menu, which is valid until the next call.
    const Host::CMenuItem& FillMenu();
    /// The docks of the bars that there are.
    QList<QDockWidget*> GetDocks() const;

signals:
    /// On the GUI thread, whoever set it.
    void progressTextChanged(const QString& text);

private:
    std::int64_t AddBar(const std::wstring& name, QWidget* widget, int placement, int size) override;
    int ShowBar(std::int64_t handle, int activate) override;

    QMainWindow& m_window;
    AddBarsSignal m_addBars;
    FillMenuSignal m_fillMenu;
    Host::CMenu m_menu;
    std::int64_t m_nextHandle = 1;
    std::map<std::int64_t, QPointer<QDockWidget>> m_bars;
};

} // namespace Kesh::Workbench
