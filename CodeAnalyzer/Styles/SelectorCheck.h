#pragma once

#include "Styles/StyleBlocks.h"
#include "Styles/StyleFindings.h"

#include <string>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// Judges selectors. The first slip of a selector list ends its check. No recursion.
class CSelectorCheck
{
public:
    CSelectorCheck(const CStyleText& text, CStyleFindings& findings) : m_text(text), m_findings(findings) {}

    void Begin(const SBlocks& blocks) { m_blocks = &blocks; }

    /// Relative ones may begin with a combinator.
    void CheckList(STokens list, bool isRelative);
    /// Places in time: "from", "to", percentages.
    void CheckKeyframes(STokens list);

private:
    struct SList
    {
        STokens tokens;
        bool isRelative;
        bool mayBeEmpty;
    };
    enum class EState : std::uint8_t { Begin, Compound, Combinator };

    bool CheckOne(const SList& list);
    TTokenIndex ReadSimple(TTokenIndex index, const SList& list, bool isFirst);
    TTokenIndex ReadPseudo(TTokenIndex index, const SList& list);
    TTokenIndex ReadArguments(TTokenIndex function, const std::string& name);
    bool CheckAttribute(TTokenIndex open);
    bool CheckNth(STokens formula, TTokenIndex function);
    TTokenIndex Fail(STokens at);
    TTokenIndex FailPseudo(TTokenIndex colon, TTokenIndex name, const std::string& written);
    TTokenIndex After(TTokenIndex open) const;
    STokens Inside(TTokenIndex open) const { return {open + 1, m_blocks->ends[open].end}; }

    static constexpr TTokenIndex Failed = static_cast<TTokenIndex>(-1);

    const CStyleText& m_text;
    CStyleFindings& m_findings;
    const SBlocks* m_blocks = nullptr;
    std::vector<SList> m_waiting; ///< the arguments of functions
};

} // namespace Kesh::CodeAnalyzer
