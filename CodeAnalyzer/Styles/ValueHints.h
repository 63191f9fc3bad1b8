#pragma once

#include "Styles/StyleTables.h"

#include <string>
#include <string_view>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// What fits in a place, in a few words: "a length, auto or inherit". Empty: too much.
std::string AllowedText(const std::vector<StyleTables::TSyntax>& expected);
/// The word or function that is most like what is written; empty: none is near.
std::string NearestExpected(std::string_view written, bool isFunction,
                            const std::vector<StyleTables::TSyntax>& expected);

/// The same among the functions of all syntaxes.
std::string NearestFunction(std::string_view written);

} // namespace Kesh::CodeAnalyzer
