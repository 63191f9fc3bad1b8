#pragma once

#include "Grammar/GrammarTokens.h"
#include "Grammar/PhpGrammarParser.h"
#include "Grammar/PhpRules.h"

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

/// A change of the text that a parse goes by: what it takes to stand before a token, and how many tokens from
/// that one on it takes not to stand there.
struct SGrammarEdit
{
    std::uint32_t token;
    std::vector<SyntaxParser::EPhpTokenKind> inserted;
    std::uint32_t dropped;
};

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

    /// False when the token cannot stand there.
    bool Feed(SGrammarParse& parse, std::uint32_t token);
    SyntaxParser::EPhpTokenKind KindInPlace(const SGrammarParse& parse, std::uint32_t token) const;
    /// The first character behind a token that is no blank.
    wchar_t NextCharacter(std::uint32_t token) const;

    const std::vector<SGrammarEdit>& Edits() const { return m_edits; }
    void AddEdit(const SGrammarEdit& edit);
    /// Takes back what has been added since these were the edits.
    void SetEdits(std::vector<SGrammarEdit> edits) { m_edits = std::move(edits); }

private:
    using K = SyntaxParser::EPhpTokenKind;

    bool PushKind(SGrammarParse& parse, K kind, std::uint32_t token);
    bool PushBad(SGrammarParse& parse, std::uint32_t token);
    bool ApplyEdit(SGrammarParse& parse, std::uint32_t token, bool& dropped);

    const CGrammarTokens& m_tokens;
    std::int32_t m_version = 0;
    std::vector<SGrammarEdit> m_edits; ///< in the order of their tokens
};

/// Whether the kind is a word that may also be a name.
constexpr bool IsWordKind(SyntaxParser::EPhpTokenKind kind)
{
    return ClassOf(kind) == SyntaxParser::EPhpTokenClass::Word ||
           kind == SyntaxParser::EPhpTokenKind::MagicConstant;
}

} // namespace Kesh::CodeAnalyzer
