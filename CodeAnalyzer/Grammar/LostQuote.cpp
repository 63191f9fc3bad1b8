#include "Grammar/LostQuote.h"

#include "Grammar/OpenStrings.h"

#include <algorithm>
#include <cwchar>
#include <string>
#include <utility>

namespace Kesh::CodeAnalyzer {

using K = SyntaxParser::EPhpTokenKind;
using SyntaxParser::CIterator;
using SyntaxParser::SPhpToken;

namespace {

/// How many lines are cut anew to see whether they are code.
constexpr std::int64_t MostLines = 12;
/// How many must pass where a string may be right as it is.
constexpr std::int64_t EnoughLines = 2;
/// How many leave no doubt.
constexpr std::int64_t SureLines = 3;
/// How many characters are looked at for that.
constexpr std::size_t MostCharacters = 4000;
/// How many tokens around the wrong one a string is looked for, and how many strings are tried.
constexpr std::uint32_t MostBack = 16;
constexpr std::size_t MostQuotes = 6;
/// How many ends are tried for one.
constexpr int MostEnds = 24;

bool IsQuote(wchar_t c)
{
    return c == L'\'' || c == L'"' || c == L'`';
}

bool IsWordCharacter(wchar_t c)
{
    return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z') || (c >= L'0' && c <= L'9') || c == L'_' ||
           c == L'$' || c > 0x7F;
}

const wchar_t* EndOfLine(const wchar_t* p)
{
    return p + std::wcscspn(p, L"\r\n");
}

const wchar_t* BehindLines(const wchar_t* p)
{
    const wchar_t* const limit = p + MostCharacters;
    for (std::int64_t lines = 0; lines < MostLines && *p && p < limit; ++lines) {
        p += std::wcscspn(p, L"\n");
        p += *p != L'\0';
    }
    return p;
}

// Whether a string that has lost its quote is likely to have ended before the character.
bool MayEndBefore(const wchar_t* p)
{
    constexpr std::wstring_view behindStrings = L",;)]}.:=?";
    return behindStrings.find(*p) != std::wstring_view::npos || (*p == L' ' && p[-1] != L' ');
}

// Ends the statement before a token that leads its line; false where that is not allowed.
bool EndStatement(CGrammarProbe& probe, const CGrammarTokens& tokens, std::uint32_t token)
{
    if (token == 0 || !tokens.LeadsLine(token))
        return false;
    constexpr int mostClosers = 3;
    for (int i = 0; i < mostClosers && !probe.Accepts(GrammarSymbol(K::Semicolon)); ++i)
        for (const K closer : {K::CloseRound, K::CloseSquare})
            if (probe.Accepts(GrammarSymbol(closer))) {
                probe.Take(GrammarSymbol(closer));
                break;
            }
    return probe.Accepts(GrammarSymbol(K::Semicolon)) && probe.Take(GrammarSymbol(K::Semicolon));
}

} // namespace

const wchar_t* CQuoteSearch::TextOfQuote(std::uint32_t token) const
{
    const wchar_t* text = m_tokens[token].text;
    return text + (IsQuote(*text) ? 0 : 1); // behind the `b` of a binary string
}

// The token that ends the string.
std::uint32_t CQuoteSearch::EndOfString(std::uint32_t opening) const
{
    const K kind = m_tokens[opening].kind;
    if (kind != K::Quote && kind != K::Backtick)
        return opening;
    std::uint32_t i = opening + 1;
    for (std::uint32_t braces = 0; i + 1 < m_tokens.Count(); ++i) {
        const K at = m_tokens[i].kind;
        braces += at == K::CodeBrace || at == K::DollarBrace || at == K::OpenBrace;
        braces -= at == K::CloseBrace && braces > 0;
        if (at == kind && braces == 0)
            break;
    }
    // Where it does not end, the mark of the end is no part of the text.
    const std::uint32_t last = std::min(i, m_tokens.Count() - 1);
    return m_tokens[last].kind == K::End && last > opening ? last - 1 : last;
}

bool CQuoteSearch::IsSuspicious(std::uint32_t opening) const
{
    const std::uint32_t closing = EndOfString(opening);
    const SGrammarToken& last = m_tokens[closing];
    const wchar_t* const end = last.text + last.size;
    const wchar_t* const text = m_tokens[opening].text;
    const bool follows = opening > 0 && IsWordCharacter(text[-1]) && text == TextOfQuote(opening) &&
                         !IsWordKind(m_tokens[opening - 1].kind);
    return follows || IsWordCharacter(*end) || std::find(text, end, L'\n') != end;
}

bool CQuoteSearch::MayHelp(std::uint32_t stop, std::uint32_t first)
{
    m_stop = stop;
    // A string with code in it may have begun long before.
    std::uint32_t begin = stop;
    for (const std::uint32_t end : {stop, stop - (stop > 0)})
        if (const std::vector<std::uint32_t> open = OpenStrings(m_tokens, end); !open.empty())
            begin = std::min(begin, open.front());
    begin = begin > MostBack ? begin - MostBack : 0;
    // A quote in the midst of a string would be taken for the first one.
    if (const std::vector<std::uint32_t> open = OpenStrings(m_tokens, begin); !open.empty())
        begin = open.front();
    m_first = std::max(first, begin);
    m_quotes.clear();
    const auto line = m_tokens[stop].line;
    for (std::uint32_t i = m_first;
         i < m_tokens.Count() && (i <= stop || (m_tokens[i].line == line && i < stop + MostBack)); ++i) {
        const SGrammarToken& token = m_tokens[i];
        const bool opens = token.kind == K::String || token.kind == K::BadEscape || token.kind == K::Quote ||
                           token.kind == K::Backtick || (token.kind == K::BadString && token.size > 0);
        if (!opens || token.size == 0 || !IsQuote(*TextOfQuote(i)))
            continue;
        if (IsSuspicious(i))
            m_quotes.push_back(i);
        if (m_quotes.size() == MostQuotes)
            break;
        i = EndOfString(i);
    }
    return !m_quotes.empty();
}

SQuoteCut CQuoteSearch::Run(const CGrammarProbe& replay, bool isSure)
{
    m_replay = replay;
    m_best = {};
    m_bestLines = isSure ? -1 : EnoughLines - 1;
    for (const std::uint32_t quote : m_quotes)
        TryQuote(quote);
    return m_best;
}

void CQuoteSearch::TryQuote(std::uint32_t quote)
{
    const wchar_t* const text = TextOfQuote(quote);
    if (quote <= m_stop) {
        // It has lost its end.
        const wchar_t* const lineEnd = EndOfLine(text);
        int ends = 0;
        for (const wchar_t* end = text + 1; end < lineEnd && ends < MostEnds; ++end) {
            if (!MayEndBefore(end))
                continue;
            Try({quote, end, end, quote});
            ++ends;
        }
        Try({quote, lineEnd, lineEnd, quote});
        // It is one too many.
        Try({quote, nullptr, text + 1, quote});
    }
    // It ends what has lost its beginning.
    for (std::uint32_t token = std::min(quote, m_stop + 1); token-- > m_first;) {
        if (m_tokens[token].line != m_tokens[quote].line)
            return;
        Try({token, text + 1, text + 1, quote});
    }
}

void CQuoteSearch::Try(const SQuoteCut& cut)
{
    const SPassed passed = WhatPasses(cut);
    if (passed.lines <= m_bestLines)
        return;
    m_bestLines = passed.lines;
    m_best = cut;
    m_best.isSure = passed.lines >= SureLines && !passed.isEnded;
}

CGrammarProbe CQuoteSearch::ProbeBefore(std::uint32_t token) const
{
    CGrammarProbe probe = m_replay;
    for (std::uint32_t i = m_first; i < token; ++i)
        m_feed.Feed(probe, i);
    return probe;
}

// How many lines from the cut on the grammar takes, as far as they are looked at.
CQuoteSearch::SPassed CQuoteSearch::WhatPasses(const SQuoteCut& cut) const
{
    constexpr std::uint32_t context = 4; // that a word's kind may depend on
    CGrammarTokens tokens;
    for (std::uint32_t i = cut.token > context ? cut.token - context : 0; i < cut.token; ++i)
        tokens.Add(m_tokens[i]);
    const std::uint32_t first = tokens.Count();
    const std::wstring code(cut.next, BehindLines(cut.next));
    const std::vector<SPhpToken> cutTokens = CutFrom(cut, code);
    for (const SPhpToken& token : cutTokens)
        tokens.Add(token);
    CGrammarFeed feed(tokens);
    feed.Begin(m_feed.Version());
    CGrammarProbe probe = ProbeBefore(cut.token);
    std::uint32_t i = first;
    bool isEnded = false;
    for (; i < tokens.Count() && !tokens.IsBad(i); ++i) {
        const CGrammarProbe before = probe;
        if (feed.Feed(probe, i))
            continue;
        // What was to end the statement may have been taken for a part of the string.
        if (std::exchange(isEnded, true) || !EndStatement(probe = before, tokens, i) || !feed.Feed(probe, i))
            break;
    }
    if (i == tokens.Count())
        return {MostLines, isEnded};
    return {static_cast<std::int64_t>(tokens[i].line) - m_tokens[cut.token].line, isEnded};
}

std::vector<SPhpToken> CQuoteSearch::CutFrom(const SQuoteCut& cut, std::wstring_view code) const
{
    const SGrammarToken& from = m_tokens[cut.token];
    const CIterator begin{from.column, from.line};
    const CIterator place{begin.x + (cut.next - from.text), begin.y};
    std::vector<SPhpToken> tokens = m_source.Cut(code, place);
    std::erase_if(tokens, [](const SPhpToken& token) { return token.kind == K::OpenTag; });
    if (cut.stringEnd) {
        const CIterator end{begin.x + (cut.stringEnd - from.text), begin.y};
        const auto size = static_cast<std::size_t>(cut.stringEnd - from.text);
        tokens.insert(tokens.begin(), {K::String, begin, end, {from.text, size}});
    }
    return tokens;
}

std::vector<SPhpToken> CQuoteSearch::TokensOf(const SQuoteCut& cut) const
{
    const std::wstring_view text = m_source.GetText();
    return CutFrom(cut, text.substr(static_cast<std::size_t>(cut.next - text.data())));
}

} // namespace Kesh::CodeAnalyzer
