#pragma once

#include "Grammar/AttributeRules.h"
#include "Grammar/ClassRules.h"
#include "Grammar/FileRules.h"
#include "Grammar/FlowRules.h"
#include "Grammar/FunctionRules.h"
#include "Grammar/Inheritance/InheritanceRules.h"
#include "Grammar/ListRules.h"
#include "Grammar/NameRules.h"
#include "Grammar/TargetRules.h"
#include "Grammar/TypeRules.h"
#include "Grammar/ValueRules.h"
#include "Grammar/VersionRules.h"

namespace Kesh::CodeAnalyzer {

/// The rules of PHP beyond its grammar that need no other file, by subject. One document at a time.
class CPhpRules
{
public:
    /// `tokens` outlives the rules.
    explicit CPhpRules(const CGrammarTokens& tokens) : m_scopes(tokens) {}

    /// A new document. `version` as IGrammarCheck::SetPhpVersion() takes it.
    void Begin(std::int32_t version);
    /// The end of the document.
    void Finish();
    void Forget(std::uint32_t from) { m_scopes.Forget(from); }
    void Distrust() { m_scopes.Distrust(); }
    const std::vector<SRuleReport>& Reports() const { return m_scopes.Reports(); }

    void Report(std::int32_t code, const SGrammarValue& value) { m_scopes.Report(code, value.first); }
    void Needs(EFeature feature, const SGrammarValue& value) { m_scopes.Needs(feature, value.first); }
    void Needs(EFeature feature, std::uint32_t token) { m_scopes.Needs(feature, token); }

private:
    CRuleScopes m_scopes;

public:
    CNameRules names{m_scopes};
    CTypeRules types{m_scopes, names};
    CTargetRules targets{m_scopes};
    CVersionRules versions{m_scopes};
    CValueRules values{m_scopes, names, targets, versions};
    CListRules lists{m_scopes, targets};
    CFlowRules flow{m_scopes, names};
    CFunctionRules functions{m_scopes, types, flow};
    CClassRules classes{m_scopes, names, types};
    CFileRules files{m_scopes, names};
    CInheritanceRules inheritance{m_scopes};
    CAttributeRules attributes{m_scopes};
};

} // namespace Kesh::CodeAnalyzer
