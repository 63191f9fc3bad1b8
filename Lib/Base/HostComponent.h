#pragma once

#include "Base/SWeakPtr.h"
#include "Kesh/SDK/IApplication.h"

namespace Kesh::Base {

/// The host component of type T registered as `name`; raises CCriticalError "Bad sweak pointer" when it
/// cannot be obtained. Any thread.
template <class T> boost::shared_ptr<T> GetHostComponent(SDK::IApplication* application, const wchar_t* name)
{
    return sweak_ptr<T>(application->GetComponent(name)).Lock();
}

} // namespace Kesh::Base
