#pragma once

#include "Grammar/GrammarFeed.h"
#include "Grammar/GrammarTokens.h"
#include "Grammar/RuleReport.h"
#include "Kesh/SyntaxParser/ITokenSource.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// Another cut of a text in which a quote was lost or is one too many: from a token on, what was taken for
/// strings is code, and the other way round.
struct SQuoteCut
{
    std::uint32_t token = NoToken;      ///< the first one that is cut otherwise; NoToken: all is well
    const wchar_t* stringEnd = nullptr; ///< of the string that begins there; null: none does
    const wchar_t* next = nullptr;      ///< where the code goes on, on the same line
    std::uint32_t quote = NoToken;      ///< the token that begins with the quote to tell of
    bool isSure = false;                ///< so much passes behind it that what comes then is another mistake
};

/// Finds the cut with which the most lines are code that the grammar takes.
class CQuoteSearch
{
public:
    /// All outlive it.
    CQuoteSearch(const CGrammarTokens& tokens, const CGrammarFeed& feed, SyntaxParser::ITokenSource& source)
        : m_tokens(tokens), m_feed(feed), m_source(source)
    {
    }

    /// Whether a string around the token looks as if it began where another should have ended, or the other
    /// way round; none that begins before `first` is looked at.
    bool MayHelp(std::uint32_t stop, std::uint32_t first);
    /// The best cut for what MayHelp() has found. `replay` stands before First(). `isSure`: a string does not
    /// end, so that any cut is better than none.
    SQuoteCut Run(const CGrammarProbe& replay, bool isSure);
    /// The tokens from `cut.token` on to the end of the text.
    std::vector<SyntaxParser::SPhpToken> TokensOf(const SQuoteCut& cut) const;
    /// The first token that Run() looks at.
    std::uint32_t First() const { return m_first; }

private:
    using K = SyntaxParser::EPhpTokenKind;

    struct SPassed
    {
        std::int64_t lines;
        bool isEnded; ///< the statement had to be ended for that
    };

    void TryQuote(std::uint32_t quote);
    void Try(const SQuoteCut& cut);
    SPassed WhatPasses(const SQuoteCut& cut) const;
    std::vector<SyntaxParser::SPhpToken> CutFrom(const SQuoteCut& cut, std::wstring_view code) const;
    CGrammarProbe ProbeBefore(std::uint32_t token) const;
    const wchar_t* TextOfQuote(std::uint32_t token) const;
    std::uint32_t EndOfString(std::uint32_t opening) const;
    bool IsSuspicious(std::uint32_t opening) const;

    const CGrammarTokens& m_tokens;
    const CGrammarFeed& m_feed;
    SyntaxParser::ITokenSource& m_source;
    std::uint32_t m_stop = 0;
    std::uint32_t m_first = 0;
    std::vector<std::uint32_t> m_quotes; ///< tokens that begin strings
    CGrammarProbe m_replay;
    SQuoteCut m_best;
    std::int64_t m_bestLines = 0;
};

} // namespace Kesh::CodeAnalyzer
