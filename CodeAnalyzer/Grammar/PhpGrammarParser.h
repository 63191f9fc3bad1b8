#pragma once

#include "Grammar/GrammarValue.h"
#include "Kesh/SyntaxParser/ITokenSource.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace Kesh::CodeAnalyzer {

class CPhpRules;

/// A terminal symbol of the grammar.
using TGrammarSymbol = std::int16_t;

/// Kinds with which only a statement or a member can begin: words may also name arguments.
constexpr auto StatementMark = SyntaxParser::EPhpTokenKind::InlineHtml;
constexpr auto MemberMark = SyntaxParser::EPhpTokenKind::PublicSet;

/// The symbol for a kind of token; -1 for one that the grammar never sees.
TGrammarSymbol GrammarSymbol(SyntaxParser::EPhpTokenKind kind);
/// The symbol for `$a{0}`, which only its place tells from other braces.
TGrammarSymbol OffsetBraceSymbol();

/// The states of a parse at one moment, to try out what could follow. It looks at the parser's stack without
/// changing it, and is good until the parser goes on.
class CGrammarProbe
{
public:
    /// Before the first token of a document, of no parser.
    CGrammarProbe() = default;

    /// Takes the symbol if the grammar allows it next; otherwise the probe is of no further use.
    bool Take(TGrammarSymbol symbol);
    bool Accepts(TGrammarSymbol symbol) const
    {
        CGrammarProbe probe = *this;
        return probe.Take(symbol);
    }

    /// As those of the parser.
    std::size_t Depth() const { return static_cast<std::size_t>(m_depth) + m_above.size(); }
    int SymbolAt(std::size_t depth) const;
    bool ShiftsAt(std::size_t depth, TGrammarSymbol symbol) const;
    void Pop(std::size_t depth) { Drop(static_cast<int>(Depth() - depth)); }

private:
    friend class CPhpGrammarParser;
    static constexpr std::int16_t First = 0; ///< the state before any token

    CGrammarProbe(const std::int16_t* below, std::ptrdiff_t depth) : m_below(below), m_depth(depth) {}
    int StateAt(std::size_t depth) const
    {
        const auto below = static_cast<std::size_t>(m_depth);
        return depth <= below ? m_below[depth] : m_above[depth - below - 1];
    }
    void Drop(int count);

    const std::int16_t* m_below = &First;
    std::ptrdiff_t m_depth = 0;
    std::vector<std::int16_t> m_above; ///< states on top of what is left of the parser's
};

/// Bison's parser, fed token by token.
class CPhpGrammarParser
{
public:
    explicit CPhpGrammarParser(CPhpRules& rules);
    ~CPhpGrammarParser();
    CPhpGrammarParser(const CPhpGrammarParser&) = delete;
    CPhpGrammarParser& operator=(const CPhpGrammarParser&) = delete;

    /// A new document.
    void Begin();
    /// False when the symbol cannot stand here; the parser is then as before it.
    bool Push(TGrammarSymbol symbol, const SGrammarValue& value);
    /// Whether the symbol could stand here.
    bool Accepts(TGrammarSymbol symbol) const;
    CGrammarProbe Probe() const;

    /// How deep the stack is, and what symbol stands at a depth. 0 is the bottom.
    std::size_t Depth() const;
    int SymbolAt(std::size_t depth) const;
    /// The first token of what stands at a depth.
    std::uint32_t TokenAt(std::size_t depth) const;
    /// Whether a statement (or, with another symbol, what begins so) may begin above this depth.
    bool ShiftsAt(std::size_t depth, TGrammarSymbol symbol) const;
    /// Drops what stands above the depth.
    void Pop(std::size_t depth);

private:
    struct SState;

    CPhpRules& m_rules;
    std::unique_ptr<SState> m_state;
};

} // namespace Kesh::CodeAnalyzer
