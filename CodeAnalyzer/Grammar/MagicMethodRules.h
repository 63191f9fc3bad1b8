#pragma once

#include "Grammar/RuleSet.h"

#include <array>

namespace Kesh::CodeAnalyzer {

/// The methods that PHP calls itself.
class CMagicMethodRules final : public CRuleSet
{
public:
    explicit CMagicMethodRules(CRuleScopes& scopes) : CRuleSet(scopes) {}

    /// A method of a class that ends here.
    void Check(const SFunctionScope& scope);

private:
    bool Takes(const SFunctionScope& scope, const std::array<std::uint32_t, 2>& types) const;
    bool IsAllowedReturn(std::uint32_t type, std::uint32_t allowed) const;
};

} // namespace Kesh::CodeAnalyzer
