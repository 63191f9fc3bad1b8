#pragma once

#include "Grammar/BraceIndents.h"
#include "Grammar/GrammarDiagnostic.h"
#include "Grammar/GrammarRepair.h"
#include "Grammar/GrammarTokens.h"
#include "Grammar/PhpGrammarParser.h"
#include "Grammar/PhpRules.h"
#include "Kesh/SyntaxParser/ITokenSource.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace Kesh::SyntaxParser {
class ISPDocument;
}

namespace Kesh::CodeAnalyzer {

/// Checks the PHP of a document against the whole grammar, in the pass that also delivers its regions. One
/// thread at a time; no nesting and no size of a document costs more than linear time and memory on the heap.
class CPhpGrammarChecker final : public SyntaxParser::ITokenHandler
{
public:
    CPhpGrammarChecker();
    ~CPhpGrammarChecker();
    CPhpGrammarChecker(const CPhpGrammarChecker&) = delete;
    CPhpGrammarChecker& operator=(const CPhpGrammarChecker&) = delete;

    /// Follows the document's tokens from now on; false when its host hands none on. Lives as long as the
    /// document is parsed.
    bool Follow(SyntaxParser::ISPDocument& document);
    /// Before each pass: whether to check it, and for which version, as IGrammarCheck::SetPhpVersion() takes
    /// it.
    void Expect(bool wanted, std::int32_t version);
    /// Whether the expected pass has been checked to its end.
    bool HasVerdict() const { return m_wanted && m_complete; }

    /// Whether the grammar takes the whole text as it is; other rules of the language may be broken.
    bool Accepts() const;
    /// The tokens of that pass; all of them if the grammar accepts the text.
    const CGrammarTokens& Tokens() const { return m_tokens; }
    /// What that pass has found, in document order.
    const std::vector<SGrammarDiagnostic>& Diagnostics() const { return m_diagnostics; }

    bool BeginTokens() override;
    void AddToken(const SyntaxParser::SPhpToken& token) override;
    void EndTokens(SyntaxParser::CIterator end) override;

private:
    using K = SyntaxParser::EPhpTokenKind;

    /// A change of the text that the parse goes by: what it takes to stand before a token, and how many
    /// tokens from that one on it takes not to stand there.
    struct SEdit
    {
        std::uint32_t token;
        std::vector<K> inserted;
        std::uint32_t dropped;
    };
    /// Rules and parser, which change together.
    struct SParse
    {
        explicit SParse(const CGrammarTokens& tokens) : rules(tokens), parser(rules) {}

        CPhpRules rules;
        CPhpGrammarParser parser;
    };
    /// The search for a place to go on at, after an error that nothing small puts right.
    struct SSkip
    {
        bool active = false;
        std::uint32_t from = 0;
        std::uint32_t round = 0; ///< brackets still open of what was given up
        std::uint32_t brace = 0;
        bool inClass = false;
    };

    void Pump(bool ended);
    bool Feed(SParse& parse, std::uint32_t token);
    bool PushKind(SParse& parse, K kind, std::uint32_t token);
    bool ApplyEdit(SParse& parse, std::uint32_t token, bool& dropped);
    bool PushBad(SParse& parse, std::uint32_t token);
    K KindInPlace(const SParse& parse, std::uint32_t token) const;
    wchar_t NextCharacter(std::uint32_t token) const;

    void Resolve();
    bool ResolveByBraces(std::uint32_t stop);
    bool TryEdit(const SEdit& edit, std::uint32_t stop);
    void AddEdit(const SEdit& edit);
    void ResolveByRepair(std::uint32_t stop);
    void GiveUpStatement(std::uint32_t stop);
    void Skip(std::uint32_t token);
    bool LeadsLine(std::uint32_t token) const;
    SGrammarStop DescribeStop(std::uint32_t stop, const std::vector<std::uint32_t>& open) const;

    void Add(std::int32_t code, SyntaxParser::SScheme span, std::uint32_t stop);
    SyntaxParser::SScheme GapBehind(std::uint32_t token) const;
    void ReportRepair(std::uint32_t stop, const SGrammarRepair& repair,
                      const std::vector<std::uint32_t>& open);
    void ReportUnrepaired(std::uint32_t stop, const std::vector<std::uint32_t>& open);
    void ReportMissing(K kind, std::uint32_t stop, const std::vector<std::uint32_t>& open);
    void ReportOdd(std::uint32_t stop);
    void ReportLexical(std::uint32_t token);
    bool EndsNumber(std::uint32_t stop) const;
    bool EndsLateString(std::uint32_t stop) const;
    std::int32_t OddCode(std::uint32_t token) const;
    void AddRuleReports();

    std::int32_t m_version = 0;
    bool m_wanted = false;
    bool m_complete = false;
    CGrammarTokens m_tokens;
    std::unique_ptr<SParse> m_parse;
    std::unique_ptr<SParse> m_trial;
    std::vector<SEdit> m_edits;             ///< in the order of their tokens
    std::vector<SRuleReport> m_keptReports; ///< of rules, from a parse that another has replaced
    bool m_gaveUp = false;                  ///< a statement: the parse cannot be done again
    std::uint32_t m_next = 0;               ///< the token to feed next
    bool m_stalled = false;                 ///< it cannot be fed; more tokens are awaited
    bool m_dead = false;                    ///< too many errors: nothing more is looked at
    SSkip m_skip;
    std::uint32_t m_resumed = 0; ///< the token at which the parse last went on after an error
    std::uint32_t m_settled = 0; ///< tokens from there within which nothing new is told
    std::size_t m_stops = 0;
    std::size_t m_trials = 0;
    std::vector<SGrammarDiagnostic> m_diagnostics;
};

} // namespace Kesh::CodeAnalyzer
