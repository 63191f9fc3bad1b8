#include "Quiet/QuietComponent.h"

#include "Kesh/CodeAnalyzer/Plugin.h"
#include "Kesh/LangSupport/LangSupport.h"

namespace Kesh::CodeAnalyzer {

void CQuietComponent::InitComponent(SDK::IApplication* application)
{
    LangSupport::CLangSupport::SetSource(application->GetLangSource());
    Join(application);
    Store().Init(application, &m_inbox);
    JoinStore(application);
}

} // namespace Kesh::CodeAnalyzer

Kesh::CodeAnalyzer::ICAComponent* CodeAnalyzerCreate()
{
    return new Kesh::CodeAnalyzer::CQuietComponent;
}
