#include "Grammar/GrammarRecovery.h"

#include "Grammar/BraceIndents.h"

#include <algorithm>
#include <utility>

namespace Kesh::CodeAnalyzer {

namespace {

using K = SyntaxParser::EPhpTokenKind;

/// So many tokens after one error another one is its own: fewer where a statement has been left for the next.
constexpr std::uint32_t SettledInStatement = 4;
constexpr std::uint32_t SettledAtStatement = 2;
/// After so many errors nobody reads on.
constexpr std::size_t MostStops = 100;

bool BeginsSomething(K kind)
{
    return IsWordKind(kind) || kind == K::Variable || kind == K::Identifier;
}

} // namespace

void CGrammarRecovery::Begin()
{
    m_keptReports.clear();
    m_skip = {};
    m_gaveUp = m_dead = false;
    m_resumed = m_settled = 0;
    m_stops = m_trials = 0;
}

bool CGrammarRecovery::LeadsLine(std::uint32_t token) const
{
    return token == 0 || (m_tokens[token - 1].line != m_tokens[token].line &&
                          m_tokens.Span(token - 1).end.y != m_tokens[token].line);
}

void CGrammarRecovery::OnLexicalError(std::uint32_t token)
{
    if (token < m_resumed)
        return;
    m_reporter.ReportLexical(token);
    m_resumed = token + 1;
    m_settled = SettledInStatement;
}

void CGrammarRecovery::Resolve(std::unique_ptr<SGrammarParse>& parse, std::uint32_t& next)
{
    parse->rules.Distrust();
    if (++m_stops > MostStops)
        m_dead = true;
    else if (!ResolveByBraces(parse, next))
        ResolveByRepair(*parse, next);
}

// Whether a brace somewhere before is missing or too many, as the indentation tells.
bool CGrammarRecovery::ResolveByBraces(std::unique_ptr<SGrammarParse>& parse, std::uint32_t& next)
{
    constexpr std::size_t mostGuesses = 6;
    constexpr std::size_t mostTrials = 24;
    const std::uint32_t stop = next;
    if (m_gaveUp)
        return false;
    for (const SBraceGuess& guess : GuessBraces(m_tokens, stop + 1, mostGuesses)) {
        const auto& edits = m_feed.Edits();
        const bool known = std::any_of(edits.begin(), edits.end(),
                                       [&](const SGrammarEdit& edit) { return edit.token == guess.token; });
        if (known || guess.token > stop || guess.token < m_resumed)
            continue;
        if (++m_trials > mostTrials)
            return false;
        if (!TryEdit(parse, next,
                     guess.missing ? SGrammarEdit{guess.token, {K::CloseBrace}, 0}
                                   : SGrammarEdit{guess.token, {}, 1}))
            continue;
        if (guess.missing)
            m_reporter.ReportMissingBrace(guess.token, guess.opened, stop);
        else
            m_reporter.ReportOddBrace(guess.token, guess.opened, stop);
        m_reporter.Last()->resumed = m_tokens.Span(next - 1).end;
        m_resumed = next;
        m_settled = 0; // the whole window behind the brace has passed
        return true;
    }
    return false;
}

// Parses all anew with one more edit; takes the result over when that leads beyond the wrong token for good.
bool CGrammarRecovery::TryEdit(std::unique_ptr<SGrammarParse>& parse, std::uint32_t& next,
                               const SGrammarEdit& edit)
{
    std::vector<SGrammarEdit> before = m_feed.Edits();
    m_feed.AddEdit(edit);
    m_trial->rules.Begin(m_feed.Version());
    m_trial->parser.Begin();
    m_trial->rules.Distrust();
    std::uint32_t token = 0;
    while (token < m_tokens.Count() && m_feed.Feed(*m_trial, token))
        ++token;
    const bool passes = token > next && (token == m_tokens.Count() || token - next > Window);
    if (!passes) {
        m_feed.SetEdits(std::move(before));
        return false;
    }
    const auto& reports = parse->rules.Reports();
    m_keptReports.insert(m_keptReports.end(), reports.begin(), reports.end());
    std::swap(parse, m_trial);
    next = token;
    return true;
}

SGrammarStop CGrammarRecovery::Describe(const SGrammarParse& parse, std::uint32_t stop,
                                        const std::vector<std::uint32_t>& open) const
{
    constexpr std::size_t mostClosers = 6;
    SGrammarStop result;
    for (std::uint32_t i = stop; i < m_tokens.Count() && i < stop + Window; ++i) {
        const K kind = m_feed.KindInPlace(parse, i);
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

// What comes so soon is about the same mistake; so is what is missing where __halt_compiler stands too early.
bool CGrammarRecovery::IsAboutTheSame(std::uint32_t stop) const
{
    const bool halted =
        m_tokens[stop].kind == K::End && stop >= 4 && m_tokens[stop - 4].kind == K::HaltCompiler;
    return halted || (m_resumed > 0 && stop < m_resumed + m_settled);
}

void CGrammarRecovery::ResolveByRepair(SGrammarParse& parse, std::uint32_t stop)
{
    const std::vector<std::uint32_t> open = OpenBrackets(m_tokens, stop);
    const SGrammarStop description = Describe(parse, stop, open);
    const SGrammarRepair repair = FindRepair(parse.parser.Probe(), description);
    const SGrammarHalt halt{parse.parser, stop, open, description};
    const bool follows = IsAboutTheSame(stop);
    if (repair.accepted == 0) {
        if (!follows)
            m_reporter.ReportUnrepaired(halt);
        if (SGrammarDiagnostic* last = m_reporter.Last())
            last->repaired = false;
        GiveUpStatement(parse, stop);
        return;
    }
    if (!follows)
        m_reporter.ReportRepair(halt, repair);
    m_feed.AddEdit({stop, repair.inserted, repair.dropped});
    m_resumed = stop + repair.dropped;
    m_settled = SettledInStatement;
    if (SGrammarDiagnostic* last = m_reporter.Last(); last && !follows)
        last->resumed = m_tokens.Span(m_resumed - (repair.dropped ? 1 : 0)).start;
}

// Nothing small helps: the statement is given up.
void CGrammarRecovery::GiveUpStatement(SGrammarParse& parse, std::uint32_t stop)
{
    CPhpGrammarParser& parser = parse.parser;
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
}

void CGrammarRecovery::Resume(SGrammarParse& parse, std::uint32_t& next, std::uint32_t at)
{
    m_skip.active = false;
    m_settled = at == next ? SettledAtStatement : SettledInStatement;
    next = m_resumed = at;
    // What cannot stand here either must not be met for ever.
    if (at == m_skip.from && at < m_tokens.Count() && m_tokens[at].kind != K::End &&
        !parse.parser.Accepts(GrammarSymbol(m_tokens[at].kind)))
        next = m_resumed = at + 1;
    if (SGrammarDiagnostic* last = m_reporter.Last())
        last->resumed =
            next < m_tokens.Count() ? m_tokens.Span(next).start : m_tokens.Span(m_tokens.Count() - 1).end;
}

// One token of what is given up.
void CGrammarRecovery::Skip(SGrammarParse& parse, std::uint32_t& next)
{
    const std::uint32_t token = next++;
    const K kind = m_tokens[token].kind;
    const bool outside = m_skip.round == 0 && m_skip.brace == 0;
    switch (kind) {
    case K::End:
        m_skip.active = false;
        next = m_tokens.Count();
        return;
    case K::OpenRound: ++m_skip.round; return;
    case K::CloseRound: m_skip.round -= m_skip.round > 0; return;
    case K::OpenBrace:
        if (outside && token > m_skip.from && !m_skip.inClass)
            Resume(parse, next, token);
        else
            ++m_skip.brace;
        return;
    case K::CodeBrace:
    case K::DollarBrace: ++m_skip.brace; return;
    case K::CloseBrace:
        if (m_skip.brace == 0)
            Resume(parse, next, token);
        else if (--m_skip.brace == 0 && m_skip.round == 0)
            Resume(parse, next, token + 1);
        return;
    case K::Semicolon:
    case K::CloseTag:
        if (m_skip.brace == 0 && (m_skip.round == 0 || m_feed.NextCharacter(token) != L'$'))
            Resume(parse, next, token + 1);
        return;
    default: break;
    }
    if (token > m_skip.from && m_skip.brace == 0 && LeadsLine(token) && IsWordKind(kind) &&
        kind != K::MagicConstant)
        Resume(parse, next, token);
}

} // namespace Kesh::CodeAnalyzer
