#pragma once

#include "Styles/ConditionCheck.h"
#include "Styles/SelectorCheck.h"

namespace Kesh::CodeAnalyzer {

/// Judges the names, places and preludes of at-rules.
class CAtRuleCheck
{
public:
    CAtRuleCheck(const CStyleText& text, CStyleFindings& findings, CConditionCheck& conditions,
                 CSelectorCheck& selectors)
        : m_text(text), m_findings(findings), m_conditions(conditions), m_selectors(selectors)
    {
    }

    void Begin(const SBlocks& blocks)
    {
        m_blocks = &blocks;
        m_hasRules = false;
    }

    void Check(const SStyleRule& rule);
    /// A rule with a selector, after which no sheet is imported.
    void NoteRule() { m_hasRules = true; }

private:
    bool CheckName(const SStyleRule& rule);
    void CheckImport(const SStyleRule& rule);
    void CheckNames(const SStyleRule& rule, bool isDashed);
    void CheckScope(const SStyleRule& rule);
    void Fail(const SStyleRule& rule, STokens at);

    const CStyleText& m_text;
    CStyleFindings& m_findings;
    CConditionCheck& m_conditions;
    CSelectorCheck& m_selectors;
    const SBlocks* m_blocks = nullptr;
    bool m_hasRules = false;
};

} // namespace Kesh::CodeAnalyzer
