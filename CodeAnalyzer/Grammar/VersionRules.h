#pragma once

#include "Grammar/RuleSet.h"

namespace Kesh::CodeAnalyzer {

/// What the grammar takes for all versions alike although old ones did not take it in every place.
class CVersionRules final : public CRuleSet
{
public:
    explicit CVersionRules(CRuleScopes& scopes) : CRuleSet(scopes) {}

    /// How an operator goes on from a value.
    enum class EReach : std::uint8_t { Offset, Member, StaticMember, Call };
    void Reach(const SGrammarValue& base, const SGrammarValue& op, EReach reach);
    void Number(const SGrammarValue& number);
    void OffsetInString(const SGrammarValue& index);
    void HeredocEnd(const SGrammarValue& label);
    /// A name of a member, which a reserved word may be.
    void MemberName(const SGrammarValue& name);
    void NamespaceName(const SGrammarValue& name);
    /// An operator that also assigns.
    void Operator(const SGrammarValue& op);
    void Emptiness(const SGrammarValue& value);
    void InstanceOf(const SGrammarValue& value);

private:
    bool IsReserved(const SGrammarValue& word) const;
    void ReachOld(const SGrammarValue& base, const SGrammarValue& op, EReach reach);
    void ReachFromGroup(const SGrammarValue& group, const SGrammarValue& op, EReach reach);
};

} // namespace Kesh::CodeAnalyzer
