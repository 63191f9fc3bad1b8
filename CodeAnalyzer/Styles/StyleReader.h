#pragma once

#include "Styles/StyleBlocks.h"
#include "Styles/StyleFindings.h"

#include <string>
#include <vector>

namespace Kesh::CodeAnalyzer {

struct SStyleRule
{
    TTokenIndex begin = 0;
    std::string name; ///< the at-keyword in lower case; empty: the prelude is a selector
    STokens prelude;  ///< without blanks at its ends
    EBlock parent = EBlock::Rules;
    EBlock block = EBlock::Unknown; ///< what is in it
    bool hasBlock = false;
    bool isFaulty = false; ///< something in the prelude was reported
    bool isNested = false; ///< in a rule with a selector
};

struct SStyleDeclaration
{
    TTokenIndex name = 0;
    STokens value;         ///< without blanks at its ends
    bool isFaulty = false; ///< something in it was reported
    bool isHack = false;   ///< for one browser: a sign before the name
};

/// Hears of the rules of a style in the text's order.
class IStyleRules
{
public:
    /// Rules without a block have no end.
    virtual void BeginRule(const SStyleRule& rule) = 0;
    virtual void EndRule() = 0;
    virtual void Declare(const SStyleDeclaration& declaration) = 0;
    /// The style is not written in CSS alone, but for a translator into it.
    virtual void FindForeign() = 0;

protected:
    ~IStyleRules() = default;
};

/// Reads the rules and declarations of a style whose blocks are known, and reports statements that are
/// neither. Linear in time; no recursion.
class CStyleReader
{
public:
    CStyleReader(const CStyleText& text, const SBlocks& blocks, CStyleFindings& findings, IStyleRules& rules)
        : m_text(text), m_blocks(blocks), m_findings(findings), m_rules(rules)
    {
    }

    void Read(SyntaxParser::EStyleKind kind);

private:
    struct SLevel
    {
        SBlocks::SEnd end;
        EBlock block;
        bool isNested = false;
        bool isSilent = false; ///< nobody judges what is in it
    };

    TTokenIndex ReadStatement(TTokenIndex index);
    TTokenIndex ReadAtRule(TTokenIndex index);
    TTokenIndex ReadRule(TTokenIndex index);
    TTokenIndex ReadDeclaration(TTokenIndex index);
    TTokenIndex ReadValue(SStyleDeclaration declaration, TTokenIndex begin, TTokenIndex end);
    TTokenIndex ReadWithoutColon(TTokenIndex index, TTokenIndex name);
    TTokenIndex ReadStray(TTokenIndex index);
    TTokenIndex Enter(SStyleRule rule, TTokenIndex open);
    TTokenIndex EnterBare(TTokenIndex open);

    bool IsDeclaration(TTokenIndex index) const;
    TTokenIndex NameAt(TTokenIndex index) const;
    TTokenIndex FindEnd(TTokenIndex index, bool passesBlocks = false) const;
    TTokenIndex FindLostSemicolon(STokens value, bool isCustom) const;
    TTokenIndex EndOfImport(STokens prelude, TTokenIndex end) const;
    bool IsOpen(TTokenIndex index) const;
    bool ReportColon(SStyleDeclaration& declaration, STokens value, TTokenIndex colon);
    bool IsFaulty(STokens tokens) const;
    TTokenIndex Skip(TTokenIndex index) const;
    const SLevel& Level() const { return m_levels.back(); }

    const CStyleText& m_text;
    const SBlocks& m_blocks;
    CStyleFindings& m_findings;
    IStyleRules& m_rules;
    std::vector<SLevel> m_levels;
    TTokenIndex m_entered = static_cast<TTokenIndex>(-1); ///< the implied block last entered
    std::size_t m_splits = 0;
    bool m_isAfterBare = false; ///< the last statement was a name alone
};

} // namespace Kesh::CodeAnalyzer
