#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// A type as types are compared.
struct SClassType
{
    bool isSet = false;     ///< false: none is written
    bool isUnknown = false; ///< longer than anybody compares
    std::uint32_t mask = 0; ///< the built-in types among its alternatives; see EType
    /// The alternatives that are classes, each by the full names of what a value must be at once.
    std::vector<std::vector<std::wstring>> classes;
    std::wstring text; ///< as it is written

    /// Whether all of it must hold at once.
    bool IsIntersection() const { return mask == 0 && classes.size() == 1 && classes.front().size() > 1; }
    bool IsMixed() const;
};

/// What a name that is no built-in type means where the type is written.
using TNameMeaning = std::function<std::wstring(std::wstring_view name)>;

/// The type that a text without blanks writes; `version` as IGrammarCheck::SetPhpVersion() takes it.
SClassType ParseClassType(std::wstring_view text, std::int32_t version, const TNameMeaning& meaning);

} // namespace Kesh::CodeAnalyzer
