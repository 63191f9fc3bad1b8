#pragma once

#include <QString>
#include <cstdint>
#include <optional>
#include <string_view>

namespace Kesh::Findings {

/// The page of a code in the list of errors, as Markdown with its heading, in the language of the program's
/// texts or else in English; empty when there is none. The lists are resources: the translation of
/// "errors.md" names the one of its language. Any thread.
QString ErrorPage(std::int32_t code);
/// The line on which the page of a code begins in the English list, counted from 1; 0 when there is none.
int ErrorPageLine(std::int32_t code);
/// The code that a user means by its number or its identifier ("1001", "missing-semicolon").
std::optional<std::int32_t> CodeNamed(std::string_view name);
/// The identifier nearest to a name that is none; empty: none is near.
std::string_view NearestIdentifier(std::string_view name);

} // namespace Kesh::Findings
