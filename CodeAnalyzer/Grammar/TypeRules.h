#pragma once

#include "Grammar/NameRules.h"
#include "Grammar/NameTokens.h"
#include "Grammar/RuleSet.h"

namespace Kesh::CodeAnalyzer {

/// What the name of a type, in small letters, stands for; a name of a newer version is a class.
std::uint32_t TypeOfName(std::wstring_view lower, std::int32_t version);

/// Types, and whether a default fits one.
class CTypeRules final : public CRuleSet
{
public:
    CTypeRules(CRuleScopes& scopes, CNameRules& names) : CRuleSet(scopes), m_names(names) {}
    void Begin() { EndType(); }

    SGrammarValue TypeName(const SGrammarValue& name);
    SGrammarValue Nullable(const SGrammarValue& mark, const SGrammarValue& type);
    SGrammarValue Union(const SGrammarValue& a, const SGrammarValue& b);
    SGrammarValue Intersection(const SGrammarValue& a, const SGrammarValue& b);
    void ParameterType(const SGrammarValue& type);
    void ReturnType(const SGrammarValue& type);

    // Of other rules.
    /// The type of a property or a class constant.
    void CheckPropertyType(std::uint32_t type, std::uint32_t token);
    /// A literal must be of its variable's type.
    void CheckDefault(std::uint32_t type, const SGrammarValue& value, bool nullAllowed);
    /// The type being read is complete.
    void EndType();
    /// All of a type that is now complete.
    void CheckWhole(const SGrammarValue& type);

private:
    void CheckLone(std::uint32_t type, std::uint32_t token);
    void CheckLastTypeName(std::uint32_t from);
    void ReportRedundant(std::uint32_t token, SRelatedToken other);

    CNameTokens m_typeNames{CNameTokens::ECase::IsOne}; ///< of the type being read
    bool m_isReported = false;                          ///< something of it is too much

    CNameRules& m_names;
};

} // namespace Kesh::CodeAnalyzer
