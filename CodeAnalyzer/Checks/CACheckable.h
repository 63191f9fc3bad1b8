#pragma once

#include <string>

namespace Kesh::CodeAnalyzer {

/// Whether documents of this factory and path are checked.
bool IsCheckable(const std::wstring& factory, const std::wstring& path);

} // namespace Kesh::CodeAnalyzer
