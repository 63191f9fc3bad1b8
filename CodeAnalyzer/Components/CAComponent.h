#pragma once

#include "Checks/CAGrammarCheck.h"
#include "Checks/CAMarkupCheck.h"
#include "Components/CADocManager.h"
#include "Components/CAErrorsManager.h"
#include "Components/CAErrorsSource.h"
#include "Components/CAParserHelper.h"
#include "Components/CAProjectHandler.h"
#include "Kesh/CodeAnalyzer/ICAComponent.h"
#include "Markup/HtmlCustomItemsKeeper.h"

#include <boost/signals2/trackable.hpp>
#include <cstdint>

namespace Kesh::SDK {
class IImageList;
class IMainFrame;
class IMenu;
} // namespace Kesh::SDK

namespace Kesh::CodeAnalyzer {

class CCAErrorsBar;

/// The code validator: owns its long-lived parts and joins them to the host. GUI thread.
class CCAComponent final : public ICAComponent, public boost::signals2::trackable
{
public:
    /// Touches nothing of the host.
    CCAComponent() = default;
    /// Waits for the checks that run. The bar goes first, then what the host has given.
    ~CCAComponent();
    CCAComponent(const CCAComponent&) = delete;
    CCAComponent& operator=(const CCAComponent&) = delete;

    /// Once. Raises Base::CCriticalError "Bad sweak pointer" when the host lacks a component.
    void InitComponent(SDK::IApplication* application) override;
    std::wstring GetComponentName() override { return L"ICAComponent"; }
    IErrorsManager* GetErrorsManager() override { return &m_errorsManager; }
    CHtmlCustomItemsKeeper* GetHtmlCustomItemsKeeper() override { return &m_customItems; }

    /// Null before InitComponent().
    CCAErrorsBar* GetErrorsBar() { return m_errorsBar; }
    IGrammarCheck* GetGrammarCheck() { return &m_grammarCheck; }
    IMarkupCheck* GetMarkupCheck() { return &m_markupCheck; }
    IProjectCheck* GetProjectCheck() { return &m_projectHandler; }
    IErrorsSource* GetErrorsSource() { return &m_errorsSource; }
    /// The open project when `project` is non-zero, else the document that the user works in.
    void DoCheck(int project);
    /// Shows the errors bar; `flag` non-zero also gives it the keyboard focus. Answers whether it is docked.
    int ShowErrorPage(int flag);

    void OnMainFrameAddBars(SDK::IMainFrame* frame);
    void OnFillMainFrameMenu(SDK::IMenu* menu, int which);

private:
    SDK::IApplication* m_application = nullptr;
    CCAErrorsManager m_errorsManager;
    CParserHelper m_parserHelper;
    std::int64_t m_errorsBarHandle = 0;
    CCAErrorsBar* m_errorsBar = nullptr;
    CCAGrammarCheck m_grammarCheck; ///< outlives those that check
    CCAMarkupCheck m_markupCheck;   ///< likewise
    CCADocManager m_docManager;
    CCAProjectHandler m_projectHandler;
    SDK::IImageList* m_imageList = nullptr;
    CHtmlCustomItemsKeeper m_customItems;
    CErrorsSource m_errorsSource{m_errorsManager};
};

} // namespace Kesh::CodeAnalyzer
