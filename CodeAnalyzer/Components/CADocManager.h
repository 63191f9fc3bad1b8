#pragma once

#include "Checks/WantedChecks.h"
#include "Components/CADocParser.h"
#include "Kesh/SDK/IApplication.h"
#include "Kesh/SyntaxParser/ISPDocument.h"

#include <boost/shared_ptr.hpp>
#include <boost/signals2/trackable.hpp>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace Kesh::CodeAnalyzer {

class CCACheckWorkers;

/// Gives each open document of a checkable kind its checker. GUI thread.
class CCADocManager : public boost::signals2::trackable
{
public:
    CCADocManager();
    /// Shuts down.
    ~CCADocManager();
    CCADocManager(const CCADocManager&) = delete;
    CCADocManager& operator=(const CCADocManager&) = delete;

    /// Nothing is owned. Raises CCriticalError "Bad sweak pointer" without "IParserComponent".
    void Init(SDK::IApplication* application, CErrorsStore* errorsManager,
              CHtmlCustomItemsKeeper* customItems);
    /// Lets all checkers go and waits for running checks, while what they need still lives.
    void Shutdown();

    void OnSPDocCreated(boost::shared_ptr<SyntaxParser::ISPDocument> document);
    void OnSPDocDestroy(SDK::IDocument* document);

    /// Whether documents of this kind and path are checked at all.
    static bool IsCheckable(SyntaxParser::ISPDocument& document);
    /// The document's checker; null when it has none.
    boost::shared_ptr<CCADocParser> FindChecker(SyntaxParser::ISPDocument* document) const;
    /// Whether a document of this path is open and checked.
    bool HasChecker(const std::wstring& path) const;
    /// Told the path of each document whose errors may not be those of the file on disk when it ends, while
    /// the host still takes it for open. None: nobody wants to know.
    void SetClosedHandler(std::function<void(const std::wstring&)> handler)
    {
        m_closedHandler = std::move(handler);
    }
    /// Checks those documents again whose check was given up.
    void CheckCancelledLater();
    /// Checks all documents again after the usual delay.
    void CheckAllLater();
    /// What the host may ask for; for documents that are created afterwards.
    void SetWanted(const SWantedChecks& wanted) { m_wanted = wanted; }
    const SWantedChecks& GetWanted() const { return m_wanted; }
    SyntaxParser::CDefRegions* GetDefRegions() const { return m_defs; }
    /// The checks that run, whoever has started them.
    const std::shared_ptr<CCACheckWorkers>& GetWorkers() const { return m_workers; }

private:
    SDK::IApplication* m_application = nullptr;
    SyntaxParser::CDefRegions* m_defs = nullptr;
    std::vector<boost::shared_ptr<CCADocParser>> m_checkers;
    CErrorsStore* m_errorsManager = nullptr;
    CHtmlCustomItemsKeeper* m_customItems = nullptr;
    SWantedChecks m_wanted;
    std::shared_ptr<CCACheckWorkers> m_workers;
    std::function<void(const std::wstring&)> m_closedHandler;
};

} // namespace Kesh::CodeAnalyzer
