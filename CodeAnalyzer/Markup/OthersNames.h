#pragma once

#include <string_view>

namespace Kesh::CodeAnalyzer {

/// Whether a tag's name is one of a namespace or a template engine: "x:y". Any thread.
bool IsPrefixed(std::wstring_view tag);
/// Whether an attribute is one that a browser has added on its own, or declares a namespace. Any thread.
bool IsVendorAttribute(std::wstring_view name);

/// Whether a property's name is one of a browser or another program: "-moz-x", "mso-x". Any thread.
bool IsVendorProperty(std::wstring_view name);

} // namespace Kesh::CodeAnalyzer
