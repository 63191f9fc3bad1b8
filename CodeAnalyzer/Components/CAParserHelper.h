#pragma once

#include "Kesh/SDK/IApplication.h"

namespace Kesh::CodeAnalyzer {

class CCADocManager;
class CErrorsStore;
class CCAProjectHandler;
class CHtmlCustomItemsKeeper;

/// The checks that the user asks for. GUI thread.
class CParserHelper
{
public:
    /// Nothing is owned, here and below. Without a document manager every check is made from scratch; without
    /// a project handler there are no project checks.
    void Init(SDK::IApplication* application, CErrorsStore* errorsManager,
              CHtmlCustomItemsKeeper* customItems);
    void SetDocManager(CCADocManager* docManager) { m_docManager = docManager; }
    void SetProjectHandler(CCAProjectHandler* projectHandler) { m_projectHandler = projectHandler; }

    /// Checks the document that the user works in; its errors have been posted when this returns. When a
    /// check of the document runs already, another one follows it after the usual delay.
    void ParsecurrentDoc();
    /// Starts a check of all files of the open project, unless one runs.
    void ParseCurrentProject();

private:
    SDK::IApplication* m_application = nullptr;
    CErrorsStore* m_errorsManager = nullptr;
    CHtmlCustomItemsKeeper* m_customItems = nullptr;
    CCADocManager* m_docManager = nullptr;
    CCAProjectHandler* m_projectHandler = nullptr;
};

} // namespace Kesh::CodeAnalyzer
