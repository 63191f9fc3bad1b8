#pragma once

#include "Components/ComponentParts.h"
#include "Components/ErrorsInbox.h"

namespace Kesh::CodeAnalyzer {

/// The code validator for a host without a window: no bar, no menu, no icons. GUI thread, which is any thread
/// with an event loop that the host takes for it.
class CQuietComponent final : public CComponentParts
{
public:
    CQuietComponent() : CComponentParts(std::make_unique<CErrorsStore>()) {}
    /// Waits for the checks that run.
    ~CQuietComponent() override { EndChecks(); }

    /// Once. Raises Base::CCriticalError "Bad sweak pointer" when the host lacks a component.
    void InitComponent(SDK::IApplication* application) override;
    /// There is no margin that would ask it.
    IErrorsManager* GetErrorsManager() override { return nullptr; }

private:
    CErrorsInbox m_inbox{Store()};
};

} // namespace Kesh::CodeAnalyzer
