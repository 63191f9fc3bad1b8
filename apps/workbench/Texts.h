#pragma once

#include "Kesh/LangSupport/LangSupport.h"

#include <QString>

namespace Kesh::Workbench {

/// A text of the window in the user's language, looked up by its English original.
inline QString Tr(const char* key)
{
    return QString::fromStdWString(LangSupport::CLangSupport::LoadStr(key));
}

} // namespace Kesh::Workbench
