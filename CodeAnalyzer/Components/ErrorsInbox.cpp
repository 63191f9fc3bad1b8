#include "Components/ErrorsInbox.h"

#include "Components/CAErrorsEvent.h"
#include "Components/CAErrorsStore.h"

namespace Kesh::CodeAnalyzer {

bool CErrorsInbox::event(QEvent* e)
{
    if (e->type() != CCAErrorsEvent::EventType)
        return QObject::event(e);
    const auto* message = static_cast<CCAErrorsEvent*>(e);
    if (message->GetType() == CCAErrorsEvent::Add)
        m_store.AddErrorsFormBar(message->GetFileName(), message->GetErrors(), message->GetDetails());
    else if (message->GetType() == CCAErrorsEvent::Remove)
        m_store.RemoveErrors(message->GetFileName());
    return true;
}

} // namespace Kesh::CodeAnalyzer
