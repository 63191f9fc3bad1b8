#pragma once

#include <QWidget>
#include <boost/signals2/signal.hpp>
#include <cstdint>
#include <string>

namespace Kesh::SDK {

class IMenu;
class IMainFrame;

/// The docked bars of the main frame. GUI thread only.
class IBarManager
{
public:
    /// Docks `widget` under `name`. The host reparents the widget but does not own it: whoever made it may
    /// delete it, and the bar goes with it. `placement` 0 left, 1 bottom, 2 right, 3 top; `size` is the
    /// initial extent in per cent of the frame's default bar extent. Returns a handle, never 0.
    virtual std::int64_t AddBar(const std::wstring& name, QWidget* widget, int placement, int size) = 0;
    /// Shows the bar; `activate` non-zero also gives it the keyboard focus. Answers whether there is such a
    /// bar (0 is never one).
    virtual int ShowBar(std::int64_t handle, int activate) = 0;

protected:
    ~IBarManager() = default;
};

class IMainFrame
{
public:
    using AddBarsSignal = boost::signals2::signal<void(IMainFrame*)>;
    using FillMenuSignal = boost::signals2::signal<void(IMenu*, int)>;

    virtual IBarManager* GetBarManager() = 0;
    /// Emitted once the frame can take bars. GUI thread.
    virtual AddBarsSignal& GetAddBarsSignal() = 0;
    /// Emitted each time a menu is built; the int is 0 for the main menu. GUI thread.
    virtual FillMenuSignal& GetFillMenuSignal() = 0;
    /// Shows a short text about background work; the empty text ends it. Any thread.
    virtual void SetProgressText(const std::wstring& text) = 0;

protected:
    ~IMainFrame() = default;
};

} // namespace Kesh::SDK
