#pragma once

#include "Grammar/RuleSet.h"
#include "Grammar/TargetRules.h"

namespace Kesh::CodeAnalyzer {

/// Arrays and lists, arguments, attributes.
class CListRules final : public CRuleSet
{
public:
    void Begin() { m_scalarSpread = NoToken; }
    CListRules(CRuleScopes& scopes, CTargetRules& targets) : CRuleSet(scopes), m_targets(targets) {}

    SGrammarValue ArrayValue(const SGrammarValue& first, const SGrammarValue& elements);
    SGrammarValue ListValue(const SGrammarValue& first, const SGrammarValue& elements);
    SGrammarValue NoElement() const;
    SGrammarValue Element(const SGrammarValue& value) const;
    SGrammarValue KeyedElement(const SGrammarValue& key, const SGrammarValue& value) const;
    SGrammarValue ReferenceElement(const SGrammarValue& value);
    SGrammarValue KeyedReferenceElement(const SGrammarValue& key, const SGrammarValue& value);
    SGrammarValue SpreadElement(const SGrammarValue& dots, const SGrammarValue& value);
    SGrammarValue ListElement(const SGrammarValue& list);
    SGrammarValue KeyedListElement(const SGrammarValue& key, const SGrammarValue& list);
    SGrammarValue NextElement(const SGrammarValue& before, const SGrammarValue& comma,
                              const SGrammarValue& element);
    SGrammarValue NoArguments(const SGrammarValue& bracket) const;
    SGrammarValue CallableSyntax(const SGrammarValue& bracket) const;
    SGrammarValue EndArguments(const SGrammarValue& bracket, const SGrammarValue& arguments) const;
    SGrammarValue NextArgument(const SGrammarValue& before, const SGrammarValue& argument);
    SGrammarValue PlainArgument(const SGrammarValue& value);
    SGrammarValue NamedArgument(const SGrammarValue& name, const SGrammarValue& value);
    SGrammarValue UnpackedArgument(const SGrammarValue& dots, const SGrammarValue& value);
    void ExitArguments(const SGrammarValue& arguments);
    void AttributeArguments(const SGrammarValue& arguments);
    void Attribute(const SGrammarValue& start, const SGrammarValue& end);

private:
    std::uint32_t m_scalarSpread = NoToken; ///< the last `...` before what is surely no array
    bool CanBeTarget(const SGrammarValue& grouped) const;

    CTargetRules& m_targets;
};

} // namespace Kesh::CodeAnalyzer
