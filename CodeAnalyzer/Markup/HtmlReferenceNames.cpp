#include "Markup/HtmlReferenceNames.h"

#include "Base/EditDistance.h"

#include <vector>

namespace Kesh::CodeAnalyzer {

namespace {

#include "html-references.inc"

/// Those that people write; among all two thousand, something is near to anything.
constexpr std::wstring_view Common[] = {
    L"amp",   L"apos",   L"bull",  L"cent",  L"copy",   L"deg",   L"divide", L"euro",  L"frac12",
    L"gt",    L"hellip", L"iexcl", L"laquo", L"larr",   L"ldquo", L"lsaquo", L"lsquo", L"lt",
    L"mdash", L"middot", L"minus", L"nbsp",  L"ndash",  L"para",  L"plusmn", L"pound", L"quot",
    L"raquo", L"rarr",   L"rdquo", L"reg",   L"rsaquo", L"rsquo", L"sect",   L"shy",   L"thinsp",
    L"times", L"trade",  L"uarr",  L"darr",  L"yen",    L"zwj",   L"zwnj",
};

} // namespace

std::wstring FindNearestReference(std::wstring_view name)
{
    Base::CNearestText common(name);
    for (const std::wstring_view candidate : Common)
        common.Offer(candidate);
    if (!common.Get().empty())
        return std::wstring(common.Get());
    static const std::vector<std::wstring> all([] {
        std::vector<std::wstring> wide;
        for (const std::string_view reference : ReferenceNames)
            wide.emplace_back(reference.begin(), reference.end());
        return wide;
    }());
    Base::CNearestText any(name);
    for (const std::wstring& candidate : all)
        any.Offer(candidate);
    return std::wstring(any.Get());
}

} // namespace Kesh::CodeAnalyzer
