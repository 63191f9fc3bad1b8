#pragma once

#include "Grammar/NameRules.h"
#include "Grammar/RuleSet.h"

#include <vector>

namespace Kesh::CodeAnalyzer {

/// Loops, jumps, results.
class CFlowRules final : public CRuleSet
{
public:
    CFlowRules(CRuleScopes& scopes, CNameRules& names) : CRuleSet(scopes), m_names(names) {}
    void Begin() { m_matchDefaults.clear(); }

    void BeginLoop() { OpenBlock(SBlock::Loop); }
    void EndLoop() { CloseBlock(); }
    void BeginSwitch() { OpenBlock(SBlock::Switch); }
    void EndSwitch() { CloseBlock(); }
    void BeginFinally() { OpenBlock(SBlock::Finally); }
    void EndFinally() { CloseBlock(); }
    void DefaultCase(const SGrammarValue& word);
    void Leave(const SGrammarValue& word);
    void Leave(const SGrammarValue& word, const SGrammarValue& depth);
    void Goto(const SGrammarValue& label);
    void Label(const SGrammarValue& label);
    void Return(const SGrammarValue& word);
    void Return(const SGrammarValue& word, const SGrammarValue& value);
    void YieldFrom(const SGrammarValue& word);
    void YieldHere(const SGrammarValue& word);
    void YieldValue(const SGrammarValue& word);
    void ThrowHere(const SGrammarValue& word);
    void TryAlone(const SGrammarValue& word, const SGrammarValue& catches);
    void CatchType(const SGrammarValue& name);
    void CatchVariable(const SGrammarValue& variable);
    void MatchHead(const SGrammarValue& word, const SGrammarValue& arguments);
    void DefaultArm(const SGrammarValue& word);
    void EndMatch();

    // Of a function that ends.
    void ResolveJumps(const SFunctionScope& scope);
    void CheckReturns(const SFunctionScope& scope);

private:
    bool BeginsStatement(std::uint32_t word) const;
    void OpenBlock(SBlock::EKind kind);
    void CloseBlock();

    std::vector<std::uint32_t> m_matchDefaults; ///< the default arm of each open match; NoToken: none yet

    CNameRules& m_names;
};

} // namespace Kesh::CodeAnalyzer
