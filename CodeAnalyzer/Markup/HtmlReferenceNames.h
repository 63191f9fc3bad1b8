#pragma once

#include <string>
#include <string_view>

namespace Kesh::CodeAnalyzer {

/// The name of a character reference, without "&" and ";", that another one may be meant for; empty: none is
/// near enough. Any thread.
std::wstring FindNearestReference(std::wstring_view name);

} // namespace Kesh::CodeAnalyzer
