#pragma once

#include "Grammar/RuleSet.h"

namespace Kesh::CodeAnalyzer {

/// What is written to.
class CTargetRules final : public CRuleSet
{
public:
    explicit CTargetRules(CRuleScopes& scopes) : CRuleSet(scopes) {}

    void Assign(const SGrammarValue& target, const SGrammarValue& op, const SGrammarValue& value);
    void AssignReference(const SGrammarValue& target, const SGrammarValue& op, const SGrammarValue& value);
    void Change(const SGrammarValue& target, const SGrammarValue& op);
    void Target(const SGrammarValue& target);
    void ReferenceTarget(const SGrammarValue& target);
    void ForeachKey(const SGrammarValue& key);
    void UnsetTarget(const SGrammarValue& target);
    void IssetTarget(const SGrammarValue& value);
    void Append(SGrammarValue& value, const SGrammarValue& bracket);

    // Of other rules.
    /// Whether what is written there is not lost at once.
    static bool Stays(const SGrammarValue& target);
    bool IsPlace(const SGrammarValue& value) const;
    void CheckPlace(const SGrammarValue& target);

private:
    std::uint32_t FirstOfOtherKind(std::uint32_t list) const;
    bool IsElementBehind(std::uint32_t token) const;
    void CheckTarget(const SGrammarValue& target, std::uint32_t op);
    void Destructure(const SGrammarValue& list);
};

} // namespace Kesh::CodeAnalyzer
