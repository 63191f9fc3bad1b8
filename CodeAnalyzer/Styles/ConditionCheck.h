#pragma once

#include "Styles/ValueCheck.h"

#include <string>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// Judges the conditions of "@media", "@supports" and "@container". The first slip ends the check. No
/// recursion.
class CConditionCheck
{
public:
    CConditionCheck(const CStyleText& text, CStyleFindings& findings, CValueCheck& values)
        : m_text(text), m_findings(findings), m_values(values)
    {
    }

    void Begin(const SBlocks& blocks) { m_blocks = &blocks; }

    void CheckMedia(STokens list);
    void CheckSupports(STokens condition);
    /// A name may stand before the condition.
    void CheckContainer(STokens list);

private:
    bool CheckQuery(STokens query);
    bool CheckCondition(STokens condition);
    bool CheckWaiting();
    bool CheckGroup(STokens inside);
    bool CheckFeature(STokens inside, TTokenIndex colon);
    bool CheckRange(STokens inside);
    bool CheckName(STokens name, bool hasValue, std::string& known);
    bool CheckType(TTokenIndex token);
    bool Fail(STokens at);
    std::vector<STokens> SplitAtCommas(STokens list) const;
    TTokenIndex Next(TTokenIndex index, TTokenIndex end) const;
    bool IsGroup(TTokenIndex index) const
    {
        return m_text.Is(index, EStyleTokenKind::RoundOpen) || m_text.Is(index, EStyleTokenKind::Function);
    }

    const CStyleText& m_text;
    CStyleFindings& m_findings;
    CValueCheck& m_values;
    const SBlocks* m_blocks = nullptr;
    std::string m_rule;             ///< "@media/"
    std::vector<STokens> m_waiting; ///< what stands in brackets
};

} // namespace Kesh::CodeAnalyzer
