#pragma once

#include "Grammar/GrammarFeed.h"
#include "Grammar/GrammarQuiet.h"
#include "Grammar/GrammarReporter.h"
#include "Grammar/LostQuote.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// Has a parse go on behind a token that cannot follow: by another cut of the text where a quote was lost, by
/// a brace that the indentation asks for, by the small repair after which the most tokens pass, or by giving
/// the statement up.
class CGrammarRecovery
{
public:
    /// All outlive it.
    CGrammarRecovery(CGrammarTokens& tokens, CGrammarFeed& feed, CGrammarReporter& reporter)
        : m_tokens(tokens),
          m_feed(feed),
          m_reporter(reporter),
          m_trial(std::make_unique<SGrammarParse>(tokens))
    {
    }

    /// How many tokens from a wrong one on are looked at to put it right.
    static constexpr std::uint32_t Window = 40;

    /// A new document; `source`, which may be null, hands on its tokens and outlives the pass.
    void Begin(SyntaxParser::ITokenSource* source);
    /// The parse stands before the token `next`, which cannot follow; both may become others.
    void Resolve(std::unique_ptr<SGrammarParse>& parse, std::uint32_t& next);
    /// Whether the parse has given a statement up and looks for a place to go on at: tokens go to Skip().
    bool IsSkipping() const { return m_skip.active; }
    void Skip(SGrammarParse& parse, std::uint32_t& next);
    /// So many errors that nobody reads on.
    bool HasGivenUp() const { return m_dead; }
    bool HasStopped() const { return m_stops > 0; }
    /// The token before which the parse stands is one that no PHP holds: told once, unless it is about what
    /// was told just before. True when the text has been cut anew for it, and `next` may be another.
    bool OnLexicalError(std::unique_ptr<SGrammarParse>& parse, std::uint32_t& next);
    /// Whether further tokens are of no use: nothing is looked at any more, or all are known from another cut
    /// of the text.
    bool IsDeaf() const { return m_dead || m_cutAnew; }
    /// Whether what follows is still about the last error; then OnFed() is told of every token that passes.
    bool IsQuiet() const { return m_quiet.IsActive(); }
    void OnFed(const SGrammarParse& parse, std::uint32_t token)
    {
        m_quiet.Pass(parse.parser, m_tokens[token].kind);
    }
    /// What the rules had found before another parse took the place of the first.
    const std::vector<SRuleReport>& KeptReports() const { return m_keptReports; }

private:
    using K = SyntaxParser::EPhpTokenKind;

    /// The search for a place to go on at, after an error that nothing small puts right.
    struct SSkip
    {
        bool active = false;
        std::uint32_t from = 0;
        std::uint32_t round = 0; ///< brackets still open of what was given up
        std::uint32_t brace = 0;
        bool inClass = false;
    };

    bool ResolveByRule(std::unique_ptr<SGrammarParse>& parse, std::uint32_t& next);
    bool ResolveByQuotes(std::unique_ptr<SGrammarParse>& parse, std::uint32_t& next);
    bool CutAnew(std::unique_ptr<SGrammarParse>& parse, std::uint32_t& next, CQuoteSearch& search,
                 bool isSure);
    bool ReplayTo(std::uint32_t token);
    bool ResolveByBraces(std::unique_ptr<SGrammarParse>& parse, std::uint32_t& next);
    bool TryEdit(std::unique_ptr<SGrammarParse>& parse, std::uint32_t& next, const SGrammarEdit& edit,
                 std::uint32_t enough);
    void ResolveByRepair(std::unique_ptr<SGrammarParse>& parse, std::uint32_t& next);
    bool Apply(std::unique_ptr<SGrammarParse>& parse, std::uint32_t& next, const SGrammarRepair& repair);
    void GiveUpStatement(SGrammarParse& parse, std::uint32_t stop);
    void Resume(SGrammarParse& parse, std::uint32_t& next, std::uint32_t at);
    bool HasLostBrace(std::uint32_t opened, std::uint32_t token) const;
    bool IsOfOwnBrace(std::uint32_t stop, const std::vector<std::uint32_t>& open) const;
    bool IsAboutTheSame(std::uint32_t stop) const;
    SGrammarStop Describe(const SGrammarParse& parse, std::uint32_t stop,
                          const std::vector<std::uint32_t>& open);
    void AddWhatCameBefore(SGrammarStop& result, std::uint32_t stop);
    std::uint32_t BackFrom(std::uint32_t stop) const;

    CGrammarTokens& m_tokens;
    CGrammarFeed& m_feed;
    CGrammarReporter& m_reporter;
    std::unique_ptr<SGrammarParse> m_trial;
    std::vector<SRuleReport> m_keptReports;
    SSkip m_skip;
    CGrammarQuiet m_quiet;
    CGrammarProbe m_replay;       ///< a parse of what came before the last error
    std::uint32_t m_replayed = 0; ///< the token that it stands before
    SyntaxParser::ITokenSource* m_source = nullptr;
    bool m_cutAnew = false;
    bool m_dead = false;               ///< too many errors: nothing more is looked at
    std::uint32_t m_resumed = 0;       ///< the token at which the parse last went on after an error
    std::vector<std::uint32_t> m_told; ///< the tokens at which errors have been told
    std::size_t m_stops = 0;
    std::size_t m_looks = 0; ///< for lost quotes around what is no token
    std::size_t m_trials = 0;
};

} // namespace Kesh::CodeAnalyzer
