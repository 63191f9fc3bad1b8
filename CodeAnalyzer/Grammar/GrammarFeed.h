#pragma once

#include "Grammar/GrammarTokens.h"
#include "Grammar/PhpGrammarParser.h"
#include "Grammar/PhpRules.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// Rules and parser, which change together.
struct SGrammarParse
{
    explicit SGrammarParse(const CGrammarTokens& tokens) : rules(tokens), parser(rules) {}

    CPhpRules rules;
    CPhpGrammarParser parser;
};

/// Whether the kind is a word that may also be a name.
constexpr bool IsWordKind(SyntaxParser::EPhpTokenKind kind)
{
    return ClassOf(kind) == SyntaxParser::EPhpTokenClass::Word ||
           kind == SyntaxParser::EPhpTokenKind::MagicConstant;
}

/// A change of the text that a parse goes by: what it takes to stand before a token, and how many tokens from
/// that one on it takes not to stand there.
struct SGrammarEdit
{
    std::uint32_t token;
    std::vector<SyntaxParser::EPhpTokenKind> inserted;
    std::uint32_t dropped;
    bool givesUp = false; ///< first the statement that is open is given up
};

/// How much of a stack a statement that is given up leaves, and what was open in it.
struct SStatementPlace
{
    std::size_t depth = 0;
    bool inClass = false; ///< members come next
    std::uint32_t round = 0;
    std::uint32_t brace = 0;
};
template <class TStack> SStatementPlace StatementPlaceOf(const TStack& stack)
{
    using K = SyntaxParser::EPhpTokenKind;
    const TGrammarSymbol statement = GrammarSymbol(StatementMark);
    const TGrammarSymbol member = GrammarSymbol(MemberMark);
    SStatementPlace place{stack.Depth()};
    for (;; --place.depth) {
        const int symbol = stack.SymbolAt(place.depth);
        const bool takesStatement = stack.ShiftsAt(place.depth, statement);
        place.inClass = stack.ShiftsAt(place.depth, member) && !takesStatement;
        const bool inList =
            place.inClass && symbol != GrammarSymbol(K::OpenRound) && symbol != GrammarSymbol(K::Comma);
        if (place.depth == 0 || takesStatement || inList)
            return place;
        place.round += symbol == GrammarSymbol(K::OpenRound);
        place.brace += symbol == GrammarSymbol(K::OpenBrace) || symbol == GrammarSymbol(K::CodeBrace) ||
                       symbol == GrammarSymbol(K::DollarBrace);
    }
}

/// Hands tokens to a parse, as what each is in its place and in the version that is asked for.
class CGrammarFeed
{
public:
    /// `tokens` outlive it.
    explicit CGrammarFeed(const CGrammarTokens& tokens) : m_tokens(tokens) {}

    /// A new document.
    void Begin(std::int32_t version)
    {
        m_version = version;
        m_edits.clear();
    }
    std::int32_t Version() const { return m_version; }

    /// Whether the kind is one symbol in every place and version.
    static bool IsPlain(SyntaxParser::EPhpTokenKind kind)
    {
        return PlainKinds[static_cast<std::size_t>(kind)];
    }
    /// False when the token cannot stand there.
    bool Feed(SGrammarParse& parse, std::uint32_t token) const;
    /// The same for a probe.
    bool Feed(CGrammarProbe& probe, std::uint32_t token) const;
    /// What a word is where it stands, and in the version that is asked for; other kinds are what they are.
    SyntaxParser::EPhpTokenKind WordKind(std::uint32_t token) const;
    /// The first character behind a token that is no blank.
    wchar_t NextCharacter(std::uint32_t token) const;

    const std::vector<SGrammarEdit>& Edits() const { return m_edits; }
    void AddEdit(const SGrammarEdit& edit);
    /// Takes back what has been added since these were the edits.
    void SetEdits(std::vector<SGrammarEdit> edits) { m_edits = std::move(edits); }

private:
    using K = SyntaxParser::EPhpTokenKind;

    static constexpr auto PlainKinds = [] {
        std::array<bool, static_cast<std::size_t>(K::Count)> plain{};
        for (std::size_t kind = 0; kind < plain.size(); ++kind)
            plain[kind] = !IsWordKind(static_cast<K>(kind)) &&
                          ClassOf(static_cast<K>(kind)) != SyntaxParser::EPhpTokenClass::Bad;
        for (const K kind : {K::OpenTag, K::OpenBrace, K::OldCast, K::Spaceship, K::QualifiedName,
                             K::FullyQualifiedName, K::RelativeName})
            plain[static_cast<std::size_t>(kind)] = false;
        return plain;
    }();

    bool IsBehindUnfinishedLine(std::uint32_t token) const;
    bool TellsWhatIsImported(std::uint32_t word) const;
    void AskOfOldVersion(CPhpRules& rules, std::uint32_t token) const;
    template <class TSink> bool FeedTo(TSink sink, std::uint32_t token) const;
    template <class TSink> K KindFor(const TSink& sink, std::uint32_t token) const;
    template <class TSink> bool ApplyEdit(TSink& sink, std::uint32_t token, bool& dropped) const;

    const CGrammarTokens& m_tokens;
    std::int32_t m_version = 0;
    std::vector<SGrammarEdit> m_edits; ///< in the order of their tokens
};

} // namespace Kesh::CodeAnalyzer
