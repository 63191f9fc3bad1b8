#pragma once

#include "Grammar/RuleSet.h"

namespace Kesh::CodeAnalyzer {

/// The methods that PHP calls itself.
class CMagicMethodRules final : public CRuleSet
{
public:
    explicit CMagicMethodRules(CRuleScopes& scopes) : CRuleSet(scopes) {}

    /// A method of a class that ends here.
    void Check(const SFunctionScope& scope);

private:
    bool IsAllowedReturn(std::uint32_t type, std::uint32_t allowed) const;
};

} // namespace Kesh::CodeAnalyzer
