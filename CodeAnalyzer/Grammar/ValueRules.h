#pragma once

#include "Grammar/NameRules.h"
#include "Grammar/RuleSet.h"
#include "Grammar/TargetRules.h"
#include "Grammar/VersionRules.h"

namespace Kesh::CodeAnalyzer {

/// Expressions: what can be told of them before the program runs.
class CValueRules final : public CRuleSet
{
public:
    CValueRules(CRuleScopes& scopes, CNameRules& names, CTargetRules& targets, CVersionRules& versions)
        : CRuleSet(scopes), m_names(names), m_targets(targets), m_versions(versions)
    {
    }

    SGrammarValue VariableValue(const SGrammarValue& variable) const;
    SGrammarValue NumberValue(const SGrammarValue& number);
    SGrammarValue NameValue(const SGrammarValue& name) const;
    SGrammarValue MagicValue(const SGrammarValue& constant) const;
    SGrammarValue TextValue(const SGrammarValue& text) const;
    SGrammarValue CastValue(const SGrammarValue& cast, const SGrammarValue& operand) const;
    SGrammarValue ClosureValue(const SGrammarValue& first) const;
    SGrammarValue StaticClosure(const SGrammarValue& word, const SGrammarValue& closure) const;
    /// A value that only the running program has.
    SGrammarValue Computed(const SGrammarValue& first) const
    {
        return {first.first, first.first, 0, NotConstant, EValue::Other, EValue::Other};
    }
    SGrammarValue Binary(const SGrammarValue& a, const SGrammarValue& b) const
    {
        const bool badLeft = a.flags & (NotConstant | HasNew);
        const auto flags = static_cast<std::uint16_t>((a.flags | b.flags) & (NotConstant | HasNew));
        return Worked({a.first, badLeft ? a.bad : b.bad, 0, flags, EValue::Other, EValue::Other},
                      b.first - 1);
    }
    SGrammarValue Combined(const SGrammarValue& a, const SGrammarValue& b, std::uint32_t type) const;
    SGrammarValue Compared(const SGrammarValue& a, const SGrammarValue& b) const;
    SGrammarValue Bitwise(const SGrammarValue& a, const SGrammarValue& b) const;
    SGrammarValue Calculated(const SGrammarValue& a, const SGrammarValue& b) const;
    SGrammarValue Logic(const SGrammarValue& a, const SGrammarValue& b, bool settledBy);
    SGrammarValue Coalesced(const SGrammarValue& a, const SGrammarValue& b) const;
    SGrammarValue Unary(const SGrammarValue& op, const SGrammarValue& operand) const;
    SGrammarValue Ternary(const SGrammarValue& condition, const SGrammarValue& mark,
                          const SGrammarValue& then, const SGrammarValue& otherwise);
    SGrammarValue ShortTernary(const SGrammarValue& condition, const SGrammarValue& mark,
                               const SGrammarValue& otherwise);
    SGrammarValue Grouped(const SGrammarValue& bracket, const SGrammarValue& value) const;
    SGrammarValue Joined(const SGrammarValue& quote, const SGrammarValue& parts) const;
    SGrammarValue StringParts(const SGrammarValue& a, const SGrammarValue& b) const;
    SGrammarValue CodeInString(const SGrammarValue& first) const { return Computed(first); }
    void InBraces(const SGrammarValue& value);
    SGrammarValue Dim(const SGrammarValue& base, const SGrammarValue& bracket);
    SGrammarValue Dim(const SGrammarValue& base, const SGrammarValue& bracket, const SGrammarValue& index);
    SGrammarValue Property(const SGrammarValue& base, const SGrammarValue& arrow, const SGrammarValue& name);
    SGrammarValue Call(const SGrammarValue& base, const SGrammarValue& arguments);
    SGrammarValue NewValue(const SGrammarValue& word, const SGrammarValue& type) const;
    SGrammarValue NewValue(const SGrammarValue& word, const SGrammarValue& type,
                           const SGrammarValue& arguments);
    SGrammarValue ClassConstant(const SGrammarValue& base, const SGrammarValue& colons,
                                const SGrammarValue& name);
    SGrammarValue StaticProperty(const SGrammarValue& base, const SGrammarValue& colons,
                                 const SGrammarValue& name);
    SGrammarValue DynamicMember(const SGrammarValue& base, const SGrammarValue& colons);
    void ClassReference(const SGrammarValue& name);
    void ClassValue(const SGrammarValue& value);

private:
    using EReach = CVersionRules::EReach;

    /// What an operator gives is no constant to the oldest versions.
    SGrammarValue Worked(SGrammarValue value, std::uint32_t op) const
    {
        if (Version() != 0 && Version() < 506 && !(value.flags & (NotConstant | HasNew))) [[unlikely]] {
            value.flags |= NotConstant;
            value.bad = op;
        }
        return value;
    }
    void CheckBase(const SGrammarValue& base, const SGrammarValue& op, EReach reach);
    bool IsClassInText(const SGrammarValue& base) const;
    SGrammarValue Chosen(std::uint32_t first, const SGrammarValue& choice) const;
    bool KnowsClass() const;
    bool IsCharacter(const SGrammarValue& base, const SGrammarValue& index) const;
    std::uint32_t TypeOfConstant(std::uint32_t base, std::uint32_t name) const;
    EValue RootOf(const SGrammarValue& base) const;

    CNameRules& m_names;
    CTargetRules& m_targets;
    CVersionRules& m_versions;
};

} // namespace Kesh::CodeAnalyzer
