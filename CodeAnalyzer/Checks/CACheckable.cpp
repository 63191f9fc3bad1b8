#include "Checks/CACheckable.h"

namespace Kesh::CodeAnalyzer {

bool IsOwnFactory(const std::wstring& factory)
{
    return factory == L"PHPSPDocFactory" || factory == L"HTMLSPDocFactory" || factory == L"CSSSPDocFactory";
}

bool IsTemplate(const std::wstring& path)
{
    return path.size() > 4 && (path.ends_with(L".tpl") || path.ends_with(L".ctp"));
}

} // namespace Kesh::CodeAnalyzer
