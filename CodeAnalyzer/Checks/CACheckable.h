#pragma once

#include <string>

namespace Kesh::CodeAnalyzer {

/// Whether documents of this factory are checked, unless they are templates.
bool IsOwnFactory(const std::wstring& factory);
/// Templates are full of what only their engine understands.
bool IsTemplate(const std::wstring& path);

} // namespace Kesh::CodeAnalyzer
