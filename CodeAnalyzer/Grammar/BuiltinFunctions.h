#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace Kesh::CodeAnalyzer {

/// The version of PHP that first had a function of that name, in small letters, which every PHP has since; 0:
/// the oldest one. Empty if there is none.
std::optional<std::int32_t> BuiltinFunctionSince(std::wstring_view lower);

} // namespace Kesh::CodeAnalyzer
