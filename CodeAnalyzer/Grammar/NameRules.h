#pragma once

#include "Grammar/RuleSet.h"

#include <string_view>

namespace Kesh::CodeAnalyzer {

/// Names that PHP keeps for itself, and those that need a class around them.
class CNameRules final : public CRuleSet
{
public:
    explicit CNameRules(CRuleScopes& scopes) : CRuleSet(scopes) {}

    /// `self`, `parent` and `static` need a class around them.
    void CheckClassWord(std::uint32_t token);
    void CheckClassName(std::uint32_t token);
    bool IsReservedClassName(std::wstring_view lower) const;
    /// A name that must not be `self`, `parent` or `static`.
    void CheckNoClassWord(const SGrammarValue& name);
};

} // namespace Kesh::CodeAnalyzer
