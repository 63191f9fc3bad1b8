#include "Components/CAParserHelper.h"

#include "Base/HostComponent.h"
#include "Checks/CADocumentCheck.h"
#include "Components/CACheckWorkers.h"
#include "Components/CADocManager.h"
#include "Components/CAErrorsStore.h"
#include "Components/CAProjectHandler.h"
#include "Kesh/SDK/IDocument.h"
#include "Kesh/SyntaxParser/IParserComponent.h"

namespace Kesh::CodeAnalyzer {

void CParserHelper::Init(SDK::IApplication* application, CErrorsStore* errorsManager,
                         CHtmlCustomItemsKeeper* customItems)
{
    m_application = application;
    m_errorsManager = errorsManager;
    m_customItems = customItems;
}

void CParserHelper::ParsecurrentDoc()
{
    SDK::IDocument* current = m_application->GetDocumentService()->GetCurrent();
    if (!current)
        return;
    auto parser = Base::GetHostComponent<SyntaxParser::IParserComponent>(m_application, L"IParserComponent");
    const boost::shared_ptr<SyntaxParser::ISPDocument> source = parser->GetSPDocument(current);
    if (!source || !CCADocManager::IsCheckable(*source))
        return;
    // An open document's checker has everything that a check needs, ready for use.
    if (const auto checker = m_docManager ? m_docManager->FindChecker(source.get()) : nullptr) {
        checker->CheckNow();
        return;
    }
    // Documents that were open before the plug-in was loaded have none.
    const auto check = CCADocumentCheck::Create(m_application, *source, parser->GetDefRegions(),
                                                m_errorsManager, m_customItems, nullptr);
    const std::wstring path = source->GetFilePath();
    const auto workers = m_docManager ? m_docManager->GetWorkers() : std::make_shared<CCACheckWorkers>();
    const CCACheckWorkers::CCheck turn(*workers, path);
    if (!check || !turn)
        return;
    check->Follow(m_docManager ? m_docManager->GetWanted() : SWantedChecks{});
    m_errorsManager->DeliverPosted();
    std::vector<SCAError> old;
    m_errorsManager->GetErrors(path, old);
    const TDetails oldDetails = m_errorsManager->GetDetails(path);
    m_errorsManager->RemoveErrors(path);
    check->SetDetailed(m_errorsManager->IsDetailed());
    const SCheck told = m_errorsManager->BeginCheck(path, true);
    check->TakeSnapshot(*source, path);
    const ECheckEnd end = check->Run();
    if (end == ECheckEnd::Failed) {
        m_errorsManager->RestoreErrors(path, old, oldDetails);
        m_errorsManager->TellFailure(path, check->GetFailure());
    }
    m_errorsManager->EndCheck(told, end);
}

void CParserHelper::ParseCurrentProject()
{
    if (m_projectHandler)
        m_projectHandler->CheckAgain();
}

} // namespace Kesh::CodeAnalyzer
