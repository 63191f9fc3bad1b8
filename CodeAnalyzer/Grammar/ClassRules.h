#pragma once

#include "Grammar/NameRules.h"
#include "Grammar/RuleSet.h"
#include "Grammar/TypeRules.h"

namespace Kesh::CodeAnalyzer {

/// Classes and their members.
class CClassRules final : public CRuleSet
{
public:
    CClassRules(CRuleScopes& scopes, CNameRules& names, CTypeRules& types)
        : CRuleSet(scopes), m_names(names), m_types(types)
    {
    }

    void BeginModifiers() { m_scopes.modifiers = {}; }
    void NoModifiers() { m_scopes.modifiers = {}; }
    void ClassModifier(const SGrammarValue& word);
    void MemberModifier(const SGrammarValue& word);
    void AnonymousModifiers(const SGrammarValue& word);
    void BeginClass(EClassKind kind, const SGrammarValue& word, const SGrammarValue& name);
    void Extends(const SGrammarValue& name);
    void Implements(const SGrammarValue& name);
    void EnumType(const SGrammarValue& type);
    void EndClass();
    void TraitName(const SGrammarValue& name);
    /// A modifier in a rule for a method of a trait.
    void AliasModifier(const SGrammarValue& word);
    void TraitUse(const SGrammarValue& word);
    void BeginProperties();
    void BeginProperties(const SGrammarValue& type);
    void Property(const SGrammarValue& variable);
    void Property(const SGrammarValue& variable, const SGrammarValue& value);
    void BeginHooks(const SGrammarValue& variable);
    void BeginHooks(const SGrammarValue& variable, const SGrammarValue& value);
    void ConstantType(const SGrammarValue& type);
    void ClassConstant(const SGrammarValue& name, const SGrammarValue& value);
    void EndConstants();
    void EnumCase(const SGrammarValue& word, const SGrammarValue& name);
    void EnumCase(const SGrammarValue& word, const SGrammarValue& name, const SGrammarValue& value);

private:
    void AddProperty(std::uint32_t variable, const SGrammarValue* value);
    void AddConstant(std::uint32_t name);
    void MakeLate();

    CNameRules& m_names;
    CTypeRules& m_types;
};

} // namespace Kesh::CodeAnalyzer
