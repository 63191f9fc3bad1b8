#pragma once

#include "Grammar/FlowRules.h"
#include "Grammar/MagicMethodRules.h"
#include "Grammar/RuleSet.h"
#include "Grammar/TypeRules.h"

namespace Kesh::CodeAnalyzer {

/// Functions, parameters, closures.
class CFunctionRules final : public CRuleSet
{
public:
    CFunctionRules(CRuleScopes& scopes, CTypeRules& types, CFlowRules& flow)
        : CRuleSet(scopes), m_types(types), m_flow(flow)
    {
    }

    void BeginFunction(const SGrammarValue& word, const SGrammarValue& name);
    void BeginMethod(const SGrammarValue& word, const SGrammarValue& name);
    void BeginHook(const SGrammarValue& name);
    void BeginClosure(const SGrammarValue& word);
    void BeginBody(const SGrammarValue& brace);
    void BeginArrow();
    void NoBody(const SGrammarValue& semicolon);
    void EndFunction();
    void Parameter(const SGrammarValue& variable);
    void ReferenceParameter(const SGrammarValue& variable);
    void Variadic(const SGrammarValue& dots, const SGrammarValue& variable);
    void DefaultValue(const SGrammarValue& value);
    void EndParameter();
    void BeginPromotion(const SGrammarValue& modifiers);
    void EndPromotion();
    void BeginParameterHooks(const SGrammarValue& brace);
    void LexicalVariable(const SGrammarValue& variable);
    void StaticVariable(const SGrammarValue& variable);
    void StaticValue(const SGrammarValue& value);
    void GlobalVariable(const SGrammarValue& variable);

private:
    void PushFunction(SFunctionScope::EKind kind, std::uint32_t token);
    void AddParameter(std::uint32_t variable);
    void SetReference(const SGrammarValue& word);
    void CheckMethod(std::uint32_t name);

    CTypeRules& m_types;
    CFlowRules& m_flow;
    CMagicMethodRules m_magicMethods{m_scopes};
};

} // namespace Kesh::CodeAnalyzer
