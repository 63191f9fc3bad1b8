#include "Components/ComponentParts.h"

#include "Components/CACheckWorkers.h"
#include "Kesh/CodeAnalyzer/Plugin.h"

#include <utility>

namespace Kesh::CodeAnalyzer {

CComponentParts::CComponentParts(std::unique_ptr<CErrorsStore> store)
    : m_store(std::move(store)), m_errorsSource(*m_store)
{
}

CComponentParts::~CComponentParts() = default;

void CComponentParts::Join(SDK::IApplication* application)
{
    m_docManager.SetWanted({&m_grammarCheck, &m_markupCheck});
    m_parserHelper.SetDocManager(&m_docManager);
    m_parserHelper.SetProjectHandler(&m_projectHandler);
    m_projectHandler.SetDocManager(&m_docManager);
    m_parserHelper.Init(application, m_store.get(), &m_customItems);
}

void CComponentParts::JoinStore(SDK::IApplication* application)
{
    m_docManager.Init(application, m_store.get(), &m_customItems);
    m_projectHandler.Init(application, this, m_store.get());
}

void CComponentParts::EndChecks()
{
    m_projectHandler.EndRuns();
    m_docManager.GetWorkers()->EndThreads();
    m_store->DetachView();
}

void CComponentParts::DoCheck(int project)
{
    if (project)
        m_parserHelper.ParseCurrentProject();
    else
        m_parserHelper.ParsecurrentDoc();
}

} // namespace Kesh::CodeAnalyzer

// What a host asks of a component, whichever it is.

using namespace Kesh::CodeAnalyzer;

namespace {

CComponentParts* Own(ICAComponent* component)
{
    return static_cast<CComponentParts*>(component);
}

} // namespace

void CodeAnalyzerDestroy(ICAComponent* component)
{
    delete Own(component);
}

IErrorsSource* CodeAnalyzerGetErrorsSource(ICAComponent* component)
{
    return Own(component)->GetErrorsSource();
}

IGrammarCheck* CodeAnalyzerGetGrammarCheck(ICAComponent* component)
{
    return Own(component)->GetGrammarCheck();
}

IMarkupCheck* CodeAnalyzerGetMarkupCheck(ICAComponent* component)
{
    return Own(component)->GetMarkupCheck();
}

ICustomNames* CodeAnalyzerGetCustomNames(ICAComponent* component)
{
    return Own(component)->GetHtmlCustomItemsKeeper();
}

IProjectCheck* CodeAnalyzerGetProjectCheck(ICAComponent* component)
{
    return Own(component)->GetProjectCheck();
}
