#pragma once

#include <QString>
#include <cstdint>
#include <optional>
#include <string_view>

namespace Kesh::Findings {

/// The page of a code in the list of errors, as Markdown with its heading; empty when there is none. The
/// program has the list as a resource.
QString ErrorPage(std::int32_t code);
/// The line on which the page of a code begins in the list, counted from 1; 0 when there is none.
int ErrorPageLine(std::int32_t code);
/// The code that a user means by its number or its identifier ("1001", "missing-semicolon").
std::optional<std::int32_t> CodeNamed(std::string_view name);
/// The identifier nearest to a name that is none; empty: none is near.
std::string_view NearestIdentifier(std::string_view name);

} // namespace Kesh::Findings
