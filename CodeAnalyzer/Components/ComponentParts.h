#pragma once

#include "Checks/CAGrammarCheck.h"
#include "Checks/CAMarkupCheck.h"
#include "Components/CADocManager.h"
#include "Components/CAErrorsSource.h"
#include "Components/CAErrorsStore.h"
#include "Components/CAParserHelper.h"
#include "Components/CAProjectHandler.h"
#include "Kesh/CodeAnalyzer/ICAComponent.h"
#include "Markup/HtmlCustomItemsKeeper.h"

#include <memory>

namespace Kesh::CodeAnalyzer {

/// What the code validator is made of with or without a window: its long-lived parts, and what joins them to
/// the host. GUI thread.
class CComponentParts : public ICAComponent
{
public:
    virtual ~CComponentParts();
    CComponentParts(const CComponentParts&) = delete;
    CComponentParts& operator=(const CComponentParts&) = delete;

    std::wstring GetComponentName() override { return L"ICAComponent"; }
    CHtmlCustomItemsKeeper* GetHtmlCustomItemsKeeper() override { return &m_customItems; }

    IGrammarCheck* GetGrammarCheck() { return &m_grammarCheck; }
    IMarkupCheck* GetMarkupCheck() { return &m_markupCheck; }
    IProjectCheck* GetProjectCheck() { return &m_projectHandler; }
    IErrorsSource* GetErrorsSource() { return &m_errorsSource; }
    /// The open project when `project` is non-zero, else the document that the user works in.
    void DoCheck(int project);

protected:
    /// Touches nothing of the host.
    explicit CComponentParts(std::unique_ptr<CErrorsStore> store);
    /// Lets the parts know each other; joins those to the host that need no store. Then JoinStore().
    void Join(SDK::IApplication* application);
    /// Joins the rest to the host, once the store is.
    void JoinStore(SDK::IApplication* application);
    /// Waits for the checks that run, which the host does not see. First of all at the end.
    void EndChecks();

    CErrorsStore& Store() { return *m_store; }

private:
    std::unique_ptr<CErrorsStore> m_store;
    CParserHelper m_parserHelper;
    CCAGrammarCheck m_grammarCheck; ///< outlives those that check
    CCAMarkupCheck m_markupCheck;   ///< likewise
    CCADocManager m_docManager;
    CCAProjectHandler m_projectHandler;
    CHtmlCustomItemsKeeper m_customItems;
    CErrorsSource m_errorsSource;
};

} // namespace Kesh::CodeAnalyzer
