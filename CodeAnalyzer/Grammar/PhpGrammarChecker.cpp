#include "Grammar/PhpGrammarChecker.h"

#include "Kesh/SyntaxParser/ISPDocument.h"

#include <algorithm>
#include <boost/pointer_cast.hpp>
#include <utility>

namespace Kesh::CodeAnalyzer {

using SyntaxParser::CIterator;
using SyntaxParser::EPhpTokenKind;
using SyntaxParser::ITokenSource;
using SyntaxParser::SPhpToken;

namespace {

/// How many tokens from a wrong one on are looked at to put it right.
constexpr std::uint32_t Window = 9;
/// So many tokens after one error another one is its own: fewer where a statement has been left for the next.
constexpr std::uint32_t SettledInStatement = 4;
constexpr std::uint32_t SettledAtStatement = 2;
/// After so many errors nobody reads on.
constexpr std::size_t MostStops = 100;

bool IsWord(EPhpTokenKind kind)
{
    return (kind >= EPhpTokenKind::Abstract && kind < EPhpTokenKind::Count) ||
           kind == EPhpTokenKind::MagicConstant;
}

bool BeginsSomething(EPhpTokenKind kind)
{
    return IsWord(kind) || kind == EPhpTokenKind::Variable || kind == EPhpTokenKind::Identifier;
}

} // namespace

CPhpGrammarChecker::CPhpGrammarChecker()
    : m_parse(std::make_unique<SParse>(m_tokens)), m_trial(std::make_unique<SParse>(m_tokens))
{
}

CPhpGrammarChecker::~CPhpGrammarChecker() = default;

bool CPhpGrammarChecker::Follow(SyntaxParser::ISPDocument& document)
{
    const auto source =
        boost::dynamic_pointer_cast<ITokenSource>(document.GetComponent(L"ITokenSource").lock());
    if (source)
        source->AddTokenHandler(this);
    return source != nullptr;
}

void CPhpGrammarChecker::Expect(bool wanted, std::int32_t version)
{
    m_wanted = wanted;
    m_version = version;
    m_complete = false;
}

bool CPhpGrammarChecker::Accepts() const
{
    return m_stops == 0 && std::none_of(m_diagnostics.begin(), m_diagnostics.end(),
                                        [](const SGrammarDiagnostic& found) { return found.stopsParse; });
}

bool CPhpGrammarChecker::BeginTokens()
{
    if (!m_wanted)
        return false;
    m_tokens.Clear();
    m_parse->rules.Begin(m_version);
    m_parse->parser.Begin();
    m_edits.clear();
    m_keptReports.clear();
    m_gaveUp = false;
    m_diagnostics.clear();
    m_skip = {};
    m_next = m_resumed = m_settled = 0;
    m_stops = m_trials = 0;
    m_stalled = m_complete = false;
    m_dead = false;
    return true;
}

void CPhpGrammarChecker::AddToken(const SPhpToken& token)
{
    if (token.kind == EPhpTokenKind::OpenTag || m_dead)
        return;
    const std::uint32_t index = m_tokens.Add(token);
    if (m_next == index && !m_skip.active && Feed(*m_parse, index)) {
        ++m_next;
        return;
    }
    Pump(false);
}

void CPhpGrammarChecker::EndTokens(CIterator end)
{
    m_complete = true;
    if (!m_dead) {
        SPhpToken token;
        token.start = token.end = end;
        token.text = {L"", 0};
        m_tokens.Add(token);
        m_stalled = false;
        Pump(true);
    }
    m_parse->rules.Finish();
    AddRuleReports();
    std::stable_sort(m_diagnostics.begin(), m_diagnostics.end(),
                     [](const SGrammarDiagnostic& a, const SGrammarDiagnostic& b) {
                         return a.error.pos.start < b.error.pos.start;
                     });
}

// Feeds what has come, as far as that can be decided yet.
void CPhpGrammarChecker::Pump(bool ended)
{
    while (m_next < m_tokens.Count() && !m_dead) {
        if (m_skip.active) {
            Skip(m_next);
            continue;
        }
        if (!m_stalled && Feed(*m_parse, m_next)) {
            ++m_next;
            continue;
        }
        m_stalled = true;
        if (!ended && m_tokens.Count() - m_next < Window)
            return;
        m_stalled = false;
        Resolve();
    }
}

wchar_t CPhpGrammarChecker::NextCharacter(std::uint32_t token) const
{
    const wchar_t* p = m_tokens[token].text + m_tokens[token].size;
    while (*p == L' ' || *p == L'\t' || *p == L'\r' || *p == L'\n')
        ++p;
    return *p;
}

// What a word or a brace is where it stands, and in the version that is asked for.
EPhpTokenKind CPhpGrammarChecker::KindInPlace(const SParse& parse, std::uint32_t token) const
{
    const K kind = m_tokens[token].kind;
    const K before = token > 0 ? m_tokens[token - 1].kind : K::End;
    if (kind == K::OpenBrace) {
        if ((before != K::Variable && before != K::CloseSquare && before != K::CloseBrace &&
             before != K::Identifier && before != K::String))
            return kind;
        // People write it without a blank; with one it is mostly a body behind a head that was not closed.
        const SGrammarToken& last = m_tokens[token - 1];
        if (last.text + last.size != m_tokens[token].text)
            return kind;
        const CPhpGrammarParser& parser = parse.parser;
        return !parser.Accepts(GrammarSymbol(kind)) && parser.Accepts(OffsetBraceSymbol()) ? K::Count : kind;
    }
    if (!IsWord(kind) || kind == K::HaltCompiler)
        return kind;
    const bool afterRef = (before == K::BitAnd || before == K::BitAndBeforeVariable) && token > 1 &&
                          m_tokens[token - 2].kind == K::Function;
    if (before == K::Arrow || before == K::NullsafeArrow || before == K::DoubleColon ||
        before == K::Function || afterRef)
        return K::Identifier;
    if (kind == K::Match && m_version < 800 && NextCharacter(token) != L'(')
        return K::Identifier;
    if (kind == K::Fn && m_version < 704 && NextCharacter(token) != L'(' && NextCharacter(token) != L'&')
        return K::Identifier;
    return kind;
}

bool CPhpGrammarChecker::PushKind(SParse& parse, K kind, std::uint32_t token)
{
    const TGrammarSymbol symbol = kind == K::Count ? OffsetBraceSymbol() : GrammarSymbol(kind);
    return parse.parser.Push(symbol, {token, token, 0, 0, EValue::Other, EValue::Other});
}

bool CPhpGrammarChecker::ApplyEdit(SParse& parse, std::uint32_t token, bool& dropped)
{
    const auto after = std::upper_bound(m_edits.begin(), m_edits.end(), token,
                                        [](std::uint32_t t, const SEdit& edit) { return t < edit.token; });
    if (after == m_edits.begin())
        return true;
    const SEdit& edit = *(after - 1);
    if (edit.token == token) {
        for (const K kind : edit.inserted)
            if (!PushKind(parse, kind, token))
                return false;
    }
    dropped = token < edit.token + edit.dropped;
    return true;
}

void CPhpGrammarChecker::AddEdit(const SEdit& edit)
{
    m_edits.insert(std::upper_bound(m_edits.begin(), m_edits.end(), edit.token,
                                    [](std::uint32_t t, const SEdit& other) { return t < other.token; }),
                   edit);
}

bool CPhpGrammarChecker::Feed(SParse& parse, std::uint32_t token)
{
    bool dropped = false;
    if (!m_edits.empty() && !ApplyEdit(parse, token, dropped))
        return false;
    if (dropped)
        return true;
    const K kind = m_tokens[token].kind;
    if (kind < K::Abstract && kind != K::OpenBrace && kind != K::MagicConstant) {
        if (kind >= K::BadCharacter && kind <= K::BadIndent)
            return PushBad(parse, token);
        if (kind == K::OldCast && m_version >= 800)
            parse.rules.Report(Code::TooOld, token);
        else if (kind == K::Spaceship && m_version != 0 && m_version < 700)
            parse.rules.Report(Code::TooNew, token);
        return PushKind(parse, kind, token);
    }
    return PushKind(parse, KindInPlace(parse, token), token);
}

// What no PHP holds is told, and taken for what it was meant to be.
bool CPhpGrammarChecker::PushBad(SParse& parse, std::uint32_t token)
{
    if (&parse == m_parse.get() && token >= m_resumed) {
        ReportLexical(token);
        m_resumed = token + 1;
        m_settled = SettledInStatement;
    }
    const K kind = m_tokens[token].kind;
    switch (kind) {
    case K::BadNumber: PushKind(parse, K::Number, token); break;
    case K::BadString:
    case K::BadHeredoc:
        if (parse.parser.Accepts(GrammarSymbol(K::String)))
            PushKind(parse, K::String, token);
        break;
    case K::BadEscape:
        if (parse.parser.Accepts(GrammarSymbol(K::String)))
            PushKind(parse, K::String, token);
        else if (parse.parser.Accepts(GrammarSymbol(K::StringPart)))
            PushKind(parse, K::StringPart, token);
        break;
    default: break;
    }
    return true;
}

bool CPhpGrammarChecker::LeadsLine(std::uint32_t token) const
{
    return token == 0 || (m_tokens[token - 1].line != m_tokens[token].line &&
                          m_tokens.Span(token - 1).end.y != m_tokens[token].line);
}

// The parse stands before a token that cannot follow.
void CPhpGrammarChecker::Resolve()
{
    const std::uint32_t stop = m_next;
    m_parse->rules.Distrust();
    if (++m_stops > MostStops) {
        m_dead = true;
        return;
    }
    if (ResolveByBraces(stop))
        return;
    ResolveByRepair(stop);
}

// Whether a brace somewhere before is missing or too many, as the indentation tells.
bool CPhpGrammarChecker::ResolveByBraces(std::uint32_t stop)
{
    constexpr std::size_t mostGuesses = 6;
    constexpr std::size_t mostTrials = 24;
    if (m_gaveUp)
        return false;
    for (const SBraceGuess& guess : GuessBraces(m_tokens, stop + 1, mostGuesses)) {
        const bool known = std::any_of(m_edits.begin(), m_edits.end(),
                                       [&](const SEdit& edit) { return edit.token == guess.token; });
        if (known || guess.token > stop || guess.token < m_resumed)
            continue;
        if (++m_trials > mostTrials)
            return false;
        if (!TryEdit(guess.missing ? SEdit{guess.token, {K::CloseBrace}, 0} : SEdit{guess.token, {}, 1},
                     stop))
            continue;
        if (guess.missing) {
            Add(Code::MissingCloseBrace, GapBehind(guess.token - 1), stop);
            SGrammarDiagnostic& diagnostic = m_diagnostics.back();
            diagnostic.related = m_tokens.Span(guess.opened);
            diagnostic.relatedKey = "The bracket is opened here";
            diagnostic.insertion = L"}";
            diagnostic.insertAt = diagnostic.error.pos.end;
        } else {
            Add(Code::OddCloseBrace, m_tokens.Span(guess.token), stop);
            SGrammarDiagnostic& diagnostic = m_diagnostics.back();
            diagnostic.related = m_tokens.Span(guess.opened);
            diagnostic.relatedKey = "It closes the bracket that is opened here";
            diagnostic.removable = true;
        }
        m_diagnostics.back().resumed = m_tokens.Span(m_next - 1).end;
        m_resumed = m_next;
        m_settled = 0; // the whole window behind the brace has passed
        return true;
    }
    return false;
}

// Parses all anew with one more edit; takes the result over when that leads beyond the wrong token for good.
bool CPhpGrammarChecker::TryEdit(const SEdit& edit, std::uint32_t stop)
{
    const std::vector<SEdit> before = m_edits;
    AddEdit(edit);
    m_trial->rules.Begin(m_version);
    m_trial->parser.Begin();
    m_trial->rules.Distrust();
    std::uint32_t token = 0;
    while (token < m_tokens.Count() && Feed(*m_trial, token))
        ++token;
    const bool passes = token > stop && (token == m_tokens.Count() || token - stop > Window);
    if (!passes) {
        m_edits = before;
        return false;
    }
    const auto& reports = m_parse->rules.Reports();
    m_keptReports.insert(m_keptReports.end(), reports.begin(), reports.end());
    std::swap(m_parse, m_trial);
    m_next = token;
    return true;
}

SGrammarStop CPhpGrammarChecker::DescribeStop(std::uint32_t stop,
                                              const std::vector<std::uint32_t>& open) const
{
    constexpr std::size_t mostClosers = 6;
    SGrammarStop result;
    for (std::uint32_t i = stop; i < m_tokens.Count() && i < stop + Window; ++i) {
        const K kind = KindInPlace(*m_parse, i);
        result.ahead.push_back(kind == K::Count ? K::OpenBrace : kind);
    }
    result.before = stop > 0 ? m_tokens[stop - 1].kind : K::End;
    result.leadsLine = LeadsLine(stop);
    result.sameAsBefore = stop > 0 && m_tokens.Text(stop) == m_tokens.Text(stop - 1);
    for (auto bracket = open.rbegin(); bracket != open.rend() && result.closers.size() < mostClosers;
         ++bracket) {
        switch (m_tokens[*bracket].kind) {
        case K::OpenRound: result.closers.push_back(K::CloseRound); break;
        case K::OpenSquare:
        case K::AttributeStart: result.closers.push_back(K::CloseSquare); break;
        default:
            // What stands on a line of the block, or is indented deeper than it, still belongs to it.
            if (BeginsSomething(m_tokens[stop].kind) &&
                (!result.leadsLine || m_tokens[stop].column > IndentOf(m_tokens, *bracket)))
                return result;
            result.closers.push_back(K::CloseBrace);
            break;
        }
    }
    return result;
}

void CPhpGrammarChecker::ResolveByRepair(std::uint32_t stop)
{
    const std::vector<std::uint32_t> open = OpenBrackets(m_tokens, stop);
    const SGrammarRepair repair = FindRepair(m_parse->parser.Probe(), DescribeStop(stop, open));
    // What comes so soon is about the same mistake; so is what is missing where __halt_compiler stands too
    // early.
    const bool halted =
        m_tokens[stop].kind == K::End && stop >= 4 && m_tokens[stop - 4].kind == K::HaltCompiler;
    const bool follows = halted || (m_resumed > 0 && stop < m_resumed + m_settled);
    if (repair.accepted == 0) {
        if (!follows)
            ReportUnrepaired(stop, open);
        if (!m_diagnostics.empty())
            m_diagnostics.back().repaired = false;
        GiveUpStatement(stop);
        return;
    }
    if (!follows)
        ReportRepair(stop, repair, open);
    AddEdit({stop, repair.inserted, repair.dropped});
    m_resumed = stop + repair.dropped;
    m_settled = SettledInStatement;
    if (!follows && !m_diagnostics.empty())
        m_diagnostics.back().resumed = m_tokens.Span(m_resumed - (repair.dropped ? 1 : 0)).start;
}

// Nothing small helps: the statement is given up.
void CPhpGrammarChecker::GiveUpStatement(std::uint32_t stop)
{
    CPhpGrammarParser& parser = m_parse->parser;
    static const TGrammarSymbol statement = GrammarSymbol(StatementMark);
    static const TGrammarSymbol member = GrammarSymbol(MemberMark);
    std::size_t depth = parser.Depth();
    m_gaveUp = true;
    m_skip = {true, stop, 0, 0, false};
    for (;; --depth) {
        m_skip.inClass = parser.ShiftsAt(depth, member) && !parser.ShiftsAt(depth, statement);
        const bool inList = m_skip.inClass && parser.SymbolAt(depth) != GrammarSymbol(K::OpenRound) &&
                            parser.SymbolAt(depth) != GrammarSymbol(K::Comma);
        if (depth == 0 || parser.ShiftsAt(depth, statement) || inList)
            break;
        const int symbol = parser.SymbolAt(depth);
        m_skip.round += symbol == GrammarSymbol(K::OpenRound);
        m_skip.brace += symbol == GrammarSymbol(K::OpenBrace) || symbol == GrammarSymbol(K::CodeBrace) ||
                        symbol == GrammarSymbol(K::DollarBrace);
    }
    parser.Pop(depth);
    m_next = stop;
}

// One token of what is given up.
void CPhpGrammarChecker::Skip(std::uint32_t token)
{
    const auto resume = [&](std::uint32_t at) {
        m_skip.active = false;
        m_next = m_resumed = at;
        m_settled = at > token ? SettledAtStatement : SettledInStatement;
        // What cannot stand here either must not be met for ever.
        if (at == m_skip.from && at < m_tokens.Count() && m_tokens[at].kind != K::End &&
            !m_parse->parser.Accepts(GrammarSymbol(m_tokens[at].kind)))
            m_next = m_resumed = at + 1;
        if (!m_diagnostics.empty())
            m_diagnostics.back().resumed = m_next < m_tokens.Count()
                                               ? m_tokens.Span(m_next).start
                                               : m_tokens.Span(m_tokens.Count() - 1).end;
    };
    m_next = token + 1;
    const K kind = m_tokens[token].kind;
    const bool outside = m_skip.round == 0 && m_skip.brace == 0;
    switch (kind) {
    case K::End:
        m_skip.active = false;
        m_next = m_tokens.Count();
        return;
    case K::OpenRound: ++m_skip.round; return;
    case K::CloseRound: m_skip.round -= m_skip.round > 0; return;
    case K::OpenBrace:
        if (outside && token > m_skip.from && !m_skip.inClass) {
            resume(token);
            return;
        }
        ++m_skip.brace;
        return;
    case K::CodeBrace:
    case K::DollarBrace: ++m_skip.brace; return;
    case K::CloseBrace:
        if (m_skip.brace == 0) {
            resume(token);
        } else if (--m_skip.brace == 0 && m_skip.round == 0) {
            resume(token + 1);
        }
        return;
    case K::Semicolon:
    case K::CloseTag:
        if (m_skip.brace == 0 && (m_skip.round == 0 || NextCharacter(token) != L'$'))
            resume(token + 1);
        return;
    default: break;
    }
    if (token > m_skip.from && m_skip.brace == 0 && LeadsLine(token) && IsWord(kind) &&
        kind != K::MagicConstant)
        resume(token);
}

} // namespace Kesh::CodeAnalyzer
