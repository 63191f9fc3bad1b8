#pragma once

#include "Grammar/Inheritance/BoundClass.h"

namespace Kesh::CodeAnalyzer {

/// The class that every PHP has under that name in small letters, its members read; its ancestors are only
/// named. Empty if there is none.
std::optional<SBoundClass> ReadBuiltinClass(const std::wstring& key);

/// Gives the members, which are read, their owner.
void OwnMembers(SBoundClass& type);

} // namespace Kesh::CodeAnalyzer
