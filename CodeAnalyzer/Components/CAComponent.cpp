#include "Components/CAComponent.h"

#include "Components/CACheckWorkers.h"
#include "Components/CACommands.h"
#include "Components/CAErrorsBar.h"
#include "Kesh/LangSupport/LangSupport.h"
#include "Kesh/SDK/IImageList.h"
#include "Kesh/SDK/IMainFrame.h"
#include "Kesh/SDK/IMenu.h"

#include <boost/bind/bind.hpp>
#include <boost/bind/placeholders.hpp>
#include <utility>

// The pointers that a host gives for its menu are asserted in every build.
#undef NDEBUG
#include <cassert>

namespace Kesh::CodeAnalyzer {

using namespace boost::placeholders;

CCAComponent::~CCAComponent()
{
    // Workers post to the bar and read the custom items, so they end first, which the host does not see.
    m_projectHandler.EndRuns();
    m_docManager.GetWorkers()->EndThreads();
    m_errorsManager.DetachBar();
    delete std::exchange(m_errorsBar, nullptr);
    if (m_imageList)
        m_imageList->Release();
}

void CCAComponent::InitComponent(SDK::IApplication* application)
{
    m_application = application;
    LangSupport::CLangSupport::SetSource(application->GetLangSource());

    m_imageList = application->GetImageListService()->CreateImageList();
    m_imageList->Load(L":/caicons.bmp", 16, 16, 0xFFC0C0C0);

    m_errorsBar = new CCAErrorsBar(application, this, &m_errorsManager);

    SDK::IMainFrame* frame = application->GetMainFrame();
    frame->GetFillMenuSignal().connect(boost::bind(&CCAComponent::OnFillMainFrameMenu, this, _1, _2));
    frame->GetAddBarsSignal().connect(boost::bind(&CCAComponent::OnMainFrameAddBars, this, _1));

    m_docManager.SetWanted({&m_grammarCheck, &m_markupCheck});
    m_parserHelper.SetDocManager(&m_docManager);
    m_parserHelper.SetProjectHandler(&m_projectHandler);
    m_projectHandler.SetDocManager(&m_docManager);
    m_parserHelper.Init(application, &m_errorsManager, &m_customItems);
    m_errorsManager.Init(application, m_errorsBar, m_imageList->GetIcon(0));
    m_docManager.Init(application, &m_errorsManager, &m_customItems);
    m_projectHandler.Init(application, this, &m_errorsManager);
}

void CCAComponent::DoCheck(int project)
{
    if (project)
        m_parserHelper.ParseCurrentProject();
    else
        m_parserHelper.ParsecurrentDoc();
}

int CCAComponent::ShowErrorPage(int flag)
{
    return m_application->GetMainFrame()->GetBarManager()->ShowBar(m_errorsBarHandle, flag);
}

void CCAComponent::OnMainFrameAddBars(SDK::IMainFrame* frame)
{
    m_errorsBarHandle = frame->GetBarManager()->AddBar(L"Errors", m_errorsBar, 1, 50);
}

void CCAComponent::OnFillMainFrameMenu(SDK::IMenu* menu, int /*which*/)
{
    const auto root = menu->GetItem({});
    assert(root);
    const auto tools = root->AddPopup(new SDK::CEmptyCmd(L"&Tools"), -1);
    assert(tools);
    const auto validator = tools->AddPopup(new SDK::CEmptyCmd(L"Code validator"), 0);
    assert(validator);
    validator->AddCommand(new CCAShowErrorsBarCmd(m_application, this), -1, 0, 0);
}

} // namespace Kesh::CodeAnalyzer
