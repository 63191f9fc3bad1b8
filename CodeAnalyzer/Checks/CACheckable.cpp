#include "Checks/CACheckable.h"

namespace Kesh::CodeAnalyzer {

bool IsCheckable(const std::wstring& factory, const std::wstring& path)
{
    if (factory != L"PHPSPDocFactory" && factory != L"HTMLSPDocFactory" && factory != L"CSSSPDocFactory")
        return false;
    // Templates are full of what only their engine understands.
    return path.size() <= 4 || !(path.ends_with(L".tpl") || path.ends_with(L".ctp"));
}

} // namespace Kesh::CodeAnalyzer
