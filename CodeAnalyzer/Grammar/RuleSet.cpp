#include "Grammar/RuleSet.h"

#include "Grammar/ConstantValues.h"

#include "Grammar/NewerConstants.h"

#include <algorithm>
#include <array>

namespace Kesh::CodeAnalyzer {

bool CRuleSet::IsSameWord(std::wstring_view text, const wchar_t* lower)
{
    return std::equal(text.begin(), text.end(), lower, [](wchar_t a, wchar_t b) {
        return a == b || ((a | 0x20) == b && a >= L'A' && a <= L'Z');
    });
}

bool CRuleSet::IsSuperglobal(std::uint32_t token) const
{
    static constexpr std::array<std::wstring_view, 9> names{L"$GLOBALS",  L"$_SERVER",  L"$_GET",
                                                            L"$_POST",    L"$_FILES",   L"$_COOKIE",
                                                            L"$_SESSION", L"$_REQUEST", L"$_ENV"};
    const std::wstring_view text = Text(token);
    return text.size() > 1 && (text[1] == L'_' || text[1] == L'G') &&
           std::find(names.begin(), names.end(), text) != names.end();
}

bool CRuleSet::IsWorkedOut(const SGrammarValue& value) const
{
    return KnownOf(Tokens(), value) != EKnown::Nothing &&
           !(Ungrouped(value).kind == EValue::ArrayLiteral && (value.flags & Unfolded));
}

void CRuleSet::CheckConstant(const SGrammarValue& value, bool allowNew)
{
    if (!(value.flags & NotConstant) && (allowNew || !(value.flags & HasNew)))
        return;
    const auto feature = NewerConstant(Tokens(), value.bad);
    if (feature && !FeatureOf(*feature).IsIn(Version()) && (allowNew || *feature != EFeature::ConstantNew))
        m_scopes.Needs(*feature, value.bad);
    else
        Report(Code::NotConstantValue, value.bad);
}

} // namespace Kesh::CodeAnalyzer
