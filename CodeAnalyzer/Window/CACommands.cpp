#include "Window/CACommands.h"

#include "Window/CAComponent.h"

namespace Kesh::SDK {

CEmptyCmd::CEmptyCmd(const std::wstring& name, const QIcon& icon, int disabled)
    : m_name(name), m_icon(icon), m_disabled(disabled)
{
}

void CEmptyCmd::OnUpdateCommandUI(ICommandUI* ui)
{
    if (m_disabled)
        ui->Enable(0);
}

} // namespace Kesh::SDK

namespace Kesh::CodeAnalyzer {

CCACheckNowCmd::CCACheckNowCmd(CCAComponent* component) : CEmptyCmd(L"Check document"), m_component(component)
{
}

void CCACheckNowCmd::OnCommand(int /*argument*/)
{
    m_component->DoCheck(0);
}

CCACheckProjectCmd::CCACheckProjectCmd(CCAComponent* component)
    : CEmptyCmd(L"Check project"), m_component(component)
{
}

void CCACheckProjectCmd::OnCommand(int /*argument*/)
{
    m_component->DoCheck(1);
}

CCAShowErrorsBarCmd::CCAShowErrorsBarCmd(SDK::IApplication* application, CCAComponent* component)
    : CEmptyCmd(L"Show errors"), m_application(application), m_component(component)
{
}

void CCAShowErrorsBarCmd::OnCommand(int /*argument*/)
{
    m_component->ShowErrorPage(1);
}

} // namespace Kesh::CodeAnalyzer
