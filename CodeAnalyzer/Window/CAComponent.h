#pragma once

#include "Components/ComponentParts.h"
#include "Window/CAErrorsManager.h"

#include <boost/signals2/trackable.hpp>
#include <cstdint>

namespace Kesh::SDK {
class IImageList;
class IMainFrame;
class IMenu;
} // namespace Kesh::SDK

namespace Kesh::CodeAnalyzer {

class CCAErrorsBar;

/// The code validator of a host with a window: the parts, and the errors bar. GUI thread.
class CCAComponent final : public CComponentParts, public boost::signals2::trackable
{
public:
    /// Touches nothing of the host.
    CCAComponent();
    /// Waits for the checks that run. The bar goes first, then what the host has given.
    ~CCAComponent() override;

    /// Once. Raises Base::CCriticalError "Bad sweak pointer" when the host lacks a component.
    void InitComponent(SDK::IApplication* application) override;
    IErrorsManager* GetErrorsManager() override { return &Errors(); }

    /// Null before InitComponent().
    CCAErrorsBar* GetErrorsBar() { return m_errorsBar; }
    /// Shows the errors bar; `flag` non-zero also gives it the keyboard focus. Answers whether it is docked.
    int ShowErrorPage(int flag);

    void OnMainFrameAddBars(SDK::IMainFrame* frame);
    void OnFillMainFrameMenu(SDK::IMenu* menu, int which);

private:
    CCAErrorsManager& Errors() { return static_cast<CCAErrorsManager&>(Store()); }

    SDK::IApplication* m_application = nullptr;
    std::int64_t m_errorsBarHandle = 0;
    CCAErrorsBar* m_errorsBar = nullptr;
    SDK::IImageList* m_imageList = nullptr;
};

} // namespace Kesh::CodeAnalyzer
