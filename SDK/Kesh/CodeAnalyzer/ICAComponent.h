#pragma once

#include "Kesh/CodeAnalyzer/IErrorsManager.h"
#include "Kesh/SDK/IApplication.h"
#include "Kesh/SDK/IComponent.h"

namespace Kesh::CodeAnalyzer {

class CHtmlCustomItemsKeeper;

/// The code validator as the host holds it. GUI thread only.
class ICAComponent : public SDK::IComponent1<SDK::IApplication>
{
public:
    /// Null for a component that is made for hosts without a window.
    virtual IErrorsManager* GetErrorsManager() = 0;
    virtual CHtmlCustomItemsKeeper* GetHtmlCustomItemsKeeper() = 0;

protected:
    ~ICAComponent() = default;
};

} // namespace Kesh::CodeAnalyzer
