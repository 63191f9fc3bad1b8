#include "Window/CAComponent.h"

#include "Kesh/LangSupport/LangSupport.h"
#include "Kesh/SDK/IImageList.h"
#include "Kesh/SDK/IMainFrame.h"
#include "Kesh/SDK/IMenu.h"
#include "Window/CACommands.h"
#include "Window/CAErrorsBar.h"

#include <boost/bind/bind.hpp>
#include <boost/bind/placeholders.hpp>
#include <utility>

// The pointers that a host gives for its menu are asserted in every build.
#undef NDEBUG
#include <cassert>

namespace Kesh::CodeAnalyzer {

using namespace boost::placeholders;

CCAComponent::CCAComponent() : CComponentParts(std::make_unique<CCAErrorsManager>()) {}

CCAComponent::~CCAComponent()
{
    // Workers post to the bar and read the custom items.
    EndChecks();
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

    m_errorsBar = new CCAErrorsBar(application, this, &Errors());

    SDK::IMainFrame* frame = application->GetMainFrame();
    frame->GetFillMenuSignal().connect(boost::bind(&CCAComponent::OnFillMainFrameMenu, this, _1, _2));
    frame->GetAddBarsSignal().connect(boost::bind(&CCAComponent::OnMainFrameAddBars, this, _1));

    Join(application);
    Errors().Init(application, m_errorsBar, m_imageList->GetIcon(0));
    JoinStore(application);
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
