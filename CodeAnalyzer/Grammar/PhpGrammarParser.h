#pragma once

#include "Grammar/GrammarValue.h"
#include "Kesh/SyntaxParser/ITokenSource.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Kesh::CodeAnalyzer {

class CPhpRules;

/// A terminal symbol of the grammar.
using TGrammarSymbol = std::int16_t;

/// Kinds with which only a statement or a member can begin: words may also name arguments.
constexpr auto StatementMark = SyntaxParser::EPhpTokenKind::InlineHtml;
constexpr auto MemberMark = SyntaxParser::EPhpTokenKind::PublicSet;

/// By kind.
extern const TGrammarSymbol GrammarSymbols[];
/// The symbol for a kind of token; -1 for one that the grammar never sees.
inline TGrammarSymbol GrammarSymbol(SyntaxParser::EPhpTokenKind kind)
{
    return GrammarSymbols[static_cast<std::size_t>(kind)];
}
/// The symbol for `$a{0}`, which only its place tells from other braces.
TGrammarSymbol OffsetBraceSymbol();

/// A place of the parser's stack: the state it stands in, and what is kept of the symbol that led there.
struct SGrammarPlace
{
    std::int16_t state;
    SGrammarValue value;
};

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
    static constexpr SGrammarPlace First{}; ///< before any token

    CGrammarProbe(const SGrammarPlace* below, std::ptrdiff_t depth) : m_below(below), m_depth(depth) {}
    int StateAt(std::size_t depth) const
    {
        const auto below = static_cast<std::size_t>(m_depth);
        return depth <= below ? m_below[depth].state : m_above[depth - below - 1];
    }
    void Drop(int count);

    const SGrammarPlace* m_below = &First;
    std::ptrdiff_t m_depth = 0;
    std::vector<std::int16_t> m_above; ///< states on top of what is left of the parser's
};

/// The parser, fed token by token; it goes by Bison's tables. Its stack grows on the heap, without a limit
/// that a document could reach.
class CPhpGrammarParser
{
public:
    /// `rules` outlive it.
    explicit CPhpGrammarParser(CPhpRules& rules);
    CPhpGrammarParser(const CPhpGrammarParser&) = delete;
    CPhpGrammarParser& operator=(const CPhpGrammarParser&) = delete;

    /// A new document.
    void Begin();
    /// False when the symbol cannot stand here; what must have ended before it is then reduced, and nothing
    /// else.
    bool Push(TGrammarSymbol symbol, std::uint32_t token);
    /// Whether the symbol could stand here.
    bool Accepts(TGrammarSymbol symbol) const;
    CGrammarProbe Probe() const;

    /// How deep the stack is, and what symbol stands at a depth. 0 is the bottom.
    std::size_t Depth() const { return static_cast<std::size_t>(m_top - m_stack.data()); }
    int SymbolAt(std::size_t depth) const;
    /// The first token of what stands at a depth.
    std::uint32_t TokenAt(std::size_t depth) const { return m_stack[depth].value.first; }
    /// Whether a statement (or, with another symbol, what begins so) may begin above this depth.
    bool ShiftsAt(std::size_t depth, TGrammarSymbol symbol) const;
    /// Drops what stands above the depth.
    void Pop(std::size_t depth) { m_top = &m_stack[depth]; }

private:
    SGrammarPlace* Reduce(int number, SGrammarPlace* top);
    SGrammarPlace* ReduceWhateverFollows(SGrammarPlace* top);
    SGrammarPlace* Put(int state, SGrammarPlace* top);
    void Grow();

    CPhpRules& m_rules;
    std::vector<SGrammarPlace> m_stack;
    SGrammarPlace* m_top = nullptr;
    const SGrammarPlace* m_limit = nullptr; ///< where the stack must grow
};

} // namespace Kesh::CodeAnalyzer
