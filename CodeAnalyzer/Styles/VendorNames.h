#pragma once

#include <string>
#include <string_view>

namespace Kesh::CodeAnalyzer {

/// Whether a name in lower case that begins with "-" has the prefix of a browser.
bool IsVendorName(std::string_view name);
/// The same name with the prefix that may be meant; empty: none is near.
std::string NearestVendor(std::string_view name);

} // namespace Kesh::CodeAnalyzer
