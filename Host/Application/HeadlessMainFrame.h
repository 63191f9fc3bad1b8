#pragma once

#include "Application/MenuModel.h"
#include "Kesh/SDK/IMainFrame.h"

#include <QPointer>
#include <mutex>
#include <string>
#include <vector>

namespace Kesh::Host {

/// A main frame that shows nothing and keeps what it is given, for the command line and for tests.
class CHeadlessMainFrame final : public SDK::IMainFrame, private SDK::IBarManager
{
public:
    struct SBar
    {
        std::wstring name;
        QPointer<QWidget> widget; ///< null once its maker has deleted it
        int placement = 0;
        int size = 0;
        bool shown = false;
    };

    SDK::IBarManager* GetBarManager() override { return this; }
    AddBarsSignal& GetAddBarsSignal() override { return m_addBars; }
    FillMenuSignal& GetFillMenuSignal() override { return m_fillMenu; }
    void SetProgressText(const std::wstring& text) override;

    /// What a window does once it stands: asks for bars and builds the main menu.
    void Build();

    const std::vector<SBar>& GetBars() const { return m_bars; }
    const CMenu& GetMenu() const { return m_menu; }
    /// Any thread.
    std::wstring GetProgressText() const;

private:
    std::int64_t AddBar(const std::wstring& name, QWidget* widget, int placement, int size) override;
    int ShowBar(std::int64_t handle, int activate) override;

    AddBarsSignal m_addBars;
    FillMenuSignal m_fillMenu;
    std::vector<SBar> m_bars; ///< a handle is an index plus one
    CMenu m_menu;
    mutable std::mutex m_progressMutex;
    std::wstring m_progress;
};

} // namespace Kesh::Host
