#include "Components/CADocManager.h"

#include "Base/HostComponent.h"
#include "Checks/CACheckable.h"
#include "Components/CACheckWorkers.h"
#include "Kesh/SyntaxParser/IParserComponent.h"

#include <algorithm>
#include <boost/bind/bind.hpp>
#include <boost/bind/placeholders.hpp>
#include <boost/make_shared.hpp>

namespace Kesh::CodeAnalyzer {

using namespace boost::placeholders;

CCADocManager::CCADocManager() : m_workers(std::make_shared<CCACheckWorkers>()) {}

CCADocManager::~CCADocManager()
{
    Shutdown();
}

void CCADocManager::Init(SDK::IApplication* application, CErrorsStore* errorsManager,
                         CHtmlCustomItemsKeeper* customItems)
{
    m_application = application;
    m_errorsManager = errorsManager;
    m_customItems = customItems;
    auto parser = Base::GetHostComponent<SyntaxParser::IParserComponent>(application, L"IParserComponent");
    m_defs = parser->GetDefRegions();
    parser->GetDocCreatedSignal().connect(boost::bind(&CCADocManager::OnSPDocCreated, this, _1));
}

void CCADocManager::Shutdown()
{
    for (const auto& checker : m_checkers)
        checker->DestroyPtr();
    m_checkers.clear();
    m_workers->EndThreads();
}

void CCADocManager::OnSPDocCreated(boost::shared_ptr<SyntaxParser::ISPDocument> document)
{
    if (!document || !IsCheckable(*document))
        return;
    auto checker = boost::make_shared<CCADocParser>(m_application, document.get(), m_defs, m_errorsManager,
                                                    m_customItems);
    checker->SetWorkers(m_workers);
    checker->Follow(m_wanted);
    checker->InitPtr(checker);
    m_checkers.push_back(checker);
    document->GetDocDestroySignal().connect(boost::bind(&CCADocManager::OnSPDocDestroy, this, _1));
}

void CCADocManager::OnSPDocDestroy(SDK::IDocument* document)
{
    const auto found = std::find_if(m_checkers.begin(), m_checkers.end(), [document](const auto& checker) {
        return checker->IsDocument(document);
    });
    if (found == m_checkers.end())
        return;
    std::wstring path;
    if (m_closedHandler && (*found)->MayDifferFromDisk())
        path = (*found)->GetFilePath();
    (*found)->DestroyPtr();
    m_checkers.erase(found);
    if (!path.empty())
        m_closedHandler(path);
}

bool CCADocManager::IsCheckable(SyntaxParser::ISPDocument& document)
{
    return IsOwnFactory(document.GetFactoryName()) && !IsTemplate(document.GetFilePath());
}

boost::shared_ptr<CCADocParser> CCADocManager::FindChecker(SyntaxParser::ISPDocument* document) const
{
    for (const auto& checker : m_checkers)
        if (checker->IsDocument(document))
            return checker;
    return {};
}

bool CCADocManager::HasChecker(const std::wstring& path) const
{
    return std::any_of(m_checkers.begin(), m_checkers.end(),
                       [&](const auto& checker) { return checker->GetFilePath() == path; });
}

void CCADocManager::CheckCancelledLater()
{
    for (const auto& checker : m_checkers)
        if (checker->WasCancelled())
            checker->CheckLater();
}

void CCADocManager::CheckAllLater()
{
    for (const auto& checker : m_checkers)
        checker->CheckLater();
}

} // namespace Kesh::CodeAnalyzer
