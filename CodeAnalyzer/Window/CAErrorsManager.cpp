#include "Window/CAErrorsManager.h"

#include "Window/CAErrorsBar.h"

namespace Kesh::CodeAnalyzer {

void CCAErrorsManager::Init(SDK::IApplication* application, CCAErrorsBar* bar, const QIcon& icon)
{
    m_icon = icon;
    CErrorsStore::Init(application, bar);
}

} // namespace Kesh::CodeAnalyzer
