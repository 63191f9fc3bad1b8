#pragma once

#include "Grammar/RuleSet.h"

#include <span>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// What attributes stand before.
enum EAttributeTarget : std::uint8_t {
    TargetClass = 1 << 0,
    TargetFunction = 1 << 1,
    TargetMethod = 1 << 2,
    TargetProperty = 1 << 3,
    TargetClassConstant = 1 << 4,
    TargetParameter = 1 << 5,
    TargetConstant = 1 << 6
};

/// PHP's own attributes: what they may stand before, and how often.
class CAttributeRules final : public CRuleSet
{
public:
    explicit CAttributeRules(CRuleScopes& scopes) : CRuleSet(scopes) {}
    void Begin() { m_names.clear(); }

    void Name(const SGrammarValue& name) { m_names.push_back(name.first); }
    /// The attributes that begin at `first` stand before one of these.
    void Target(const SGrammarValue& first, std::uint8_t targets);
    void Declaration(const SGrammarValue& first, const SGrammarValue& declaration);
    void Member(const SGrammarValue& first, const SGrammarValue& member);

private:
    bool IsDelayed(std::size_t from) const;
    /// `firsts`: the tokens that name each of PHP's own attributes first, of those before the same target.
    void Check(std::uint32_t token, std::span<std::uint32_t> firsts, std::uint8_t targets);
    void CheckDynamicProperties(std::uint32_t token);

    std::vector<std::uint32_t> m_names; ///< of those whose target has not come yet
};

} // namespace Kesh::CodeAnalyzer
