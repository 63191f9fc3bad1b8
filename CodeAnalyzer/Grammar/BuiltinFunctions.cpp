#include "Grammar/BuiltinFunctions.h"

#include "Base/CommonString.h"

#include <algorithm>
#include <iterator>

namespace Kesh::CodeAnalyzer {

namespace {

struct SBuiltinFunction
{
    std::string_view name;
    std::int32_t since;
};

#include "php-functions.inc"

} // namespace

std::optional<std::int32_t> BuiltinFunctionSince(std::wstring_view lower)
{
    const std::string name = Base::CCommonString::ToUtf8(lower);
    const auto* found = std::lower_bound(
        std::begin(BuiltinFunctions), std::end(BuiltinFunctions), name,
        [](const SBuiltinFunction& known, const std::string& wanted) { return known.name < wanted; });
    if (found == std::end(BuiltinFunctions) || found->name != name)
        return {};
    return found->since;
}

} // namespace Kesh::CodeAnalyzer
