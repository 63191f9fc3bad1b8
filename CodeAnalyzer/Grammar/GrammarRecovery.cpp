#include "Grammar/GrammarRecovery.h"

#include "Grammar/BraceIndents.h"
#include "Grammar/OpenStrings.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace Kesh::CodeAnalyzer {

namespace {

using K = SyntaxParser::EPhpTokenKind;

/// How many tokens before a wrong one the mistake is looked for.
constexpr std::uint32_t MostBack = 32;
/// How often a document is parsed anew.
constexpr std::size_t MostTrials = 40;
/// How many tokens from the wrong one on must pass for a brace to be the mistake.
constexpr std::uint32_t BraceWindow = 8;
/// After so many errors nobody reads on.
constexpr std::size_t MostStops = 100;

bool BeginsSomething(K kind)
{
    return IsWordKind(kind) || kind == K::Variable || kind == K::Identifier;
}

} // namespace

void CGrammarRecovery::Begin(SyntaxParser::ITokenSource* source)
{
    m_source = source && !source->GetText().empty() ? source : nullptr;
    m_cutAnew = false;
    m_keptReports.clear();
    m_told.clear();
    m_skip = {};
    m_quiet.Begin();
    m_replay = {};
    m_dead = false;
    m_replayed = m_resumed = 0;
    m_stops = m_trials = m_looks = 0;
}

bool CGrammarRecovery::OnLexicalError(std::unique_ptr<SGrammarParse>& parse, std::uint32_t& next)
{
    const std::uint32_t token = next;
    const K kind = m_tokens[token].kind;
    // Each look goes through all tokens before.
    if (m_source && (kind == K::BadString || kind == K::BadCharacter) && ++m_looks <= MostStops) {
        CQuoteSearch search(m_tokens, m_feed, *m_source);
        const std::vector<std::uint32_t> open = OpenStrings(m_tokens, token);
        const bool isSure = kind == K::BadString && (m_tokens[token].size > 0 || !open.empty());
        const bool isInString =
            isSure || (!open.empty() && m_tokens[open.front()].line < m_tokens[token].line);
        const std::uint32_t first = open.empty() ? token : open.front();
        if (isInString && first >= m_resumed && search.MayHelp(first, m_resumed) &&
            CutAnew(parse, next, search, isSure))
            return true;
    }
    if (token < m_resumed || m_quiet.IsActive())
        return false;
    const std::int32_t version = m_feed.Version();
    if (version != 0 && ((kind == K::BadNumber && version < GoneSince::BadOctal) ||
                         (kind == K::BadEscape && version < GoneSince::BadEscape)))
        return false;
    m_reporter.ReportLexical(token);
    m_resumed = token + 1;
    m_quiet.Start(true);
    return false;
}

void CGrammarRecovery::Resolve(std::unique_ptr<SGrammarParse>& parse, std::uint32_t& next)
{
    if (m_stops == 0)
        parse->rules.Forget(BackFrom(next));
    parse->rules.Distrust();
    if (++m_stops > MostStops)
        m_dead = true;
    else if (!ResolveByRule(parse, next) && !ResolveByQuotes(parse, next) && !ResolveByBraces(parse, next))
        ResolveByRepair(parse, next);
}

// Whether a rule has told of the mistake: a method without a body is followed by one.
bool CGrammarRecovery::ResolveByRule(std::unique_ptr<SGrammarParse>& parse, std::uint32_t& next)
{
    const auto& reports = parse->rules.Reports();
    const bool isTold = m_tokens[next].kind == K::OpenBrace && next > 0 &&
                        std::any_of(reports.begin(), reports.end(), [next](const SRuleReport& report) {
                            return report.code == Code::BodyMissing && report.token == next - 1;
                        });
    return isTold && ++m_trials <= MostTrials && TryEdit(parse, next, {next - 1, {}, 1}, next + 1);
}

namespace {

// The brackets that a parse has open, the outermost first.
std::vector<std::uint32_t> OpenIn(const CPhpGrammarParser& parser)
{
    static const TGrammarSymbol opening[]{GrammarSymbol(K::OpenRound), GrammarSymbol(K::OpenSquare),
                                          GrammarSymbol(K::OpenBrace), GrammarSymbol(K::AttributeStart),
                                          GrammarSymbol(K::CodeBrace), GrammarSymbol(K::DollarBrace)};
    static const TGrammarSymbol closing[]{GrammarSymbol(K::CloseRound), GrammarSymbol(K::CloseSquare),
                                          GrammarSymbol(K::CloseBrace)};
    std::vector<std::uint32_t> open;
    for (std::size_t depth = 0; depth <= parser.Depth(); ++depth) {
        const int symbol = parser.SymbolAt(depth);
        if (std::find(std::begin(opening), std::end(opening), symbol) != std::end(opening))
            open.push_back(parser.TokenAt(depth));
        // A pair of them stays there until all that it belongs to has come.
        else if (!open.empty() &&
                 std::find(std::begin(closing), std::end(closing), symbol) != std::end(closing))
            open.pop_back();
    }
    return open;
}

} // namespace

// Whether a quote near by is missing or too many, so that code and strings have changed places.
bool CGrammarRecovery::ResolveByQuotes(std::unique_ptr<SGrammarParse>& parse, std::uint32_t& next)
{
    if (!m_source)
        return false;
    CQuoteSearch search(m_tokens, m_feed, *m_source);
    if (!search.MayHelp(next, m_resumed))
        return false;
    // What a small repair puts right needs no other cut; what is in a string says nothing of that.
    const SGrammarStop description = Describe(*parse, next, OpenIn(parse->parser));
    const SGrammarRepair repair = FindRepair(description);
    const bool isWhole = repair.way != SGrammarRepair::None && repair.isWhole &&
                         OpenStrings(m_tokens, std::min(next + Window, m_tokens.Count())).empty();
    return !isWhole && CutAnew(parse, next, search, false);
}

// Has m_replay stand before the token.
bool CGrammarRecovery::ReplayTo(std::uint32_t token)
{
    if (token < m_replayed) {
        m_replay = {};
        m_replayed = 0;
    }
    while (m_replayed < token && m_feed.Feed(m_replay, m_replayed))
        ++m_replayed;
    return m_replayed == token;
}

bool CGrammarRecovery::CutAnew(std::unique_ptr<SGrammarParse>& parse, std::uint32_t& next,
                               CQuoteSearch& search, bool isSure)
{
    if (++m_trials > MostTrials || !ReplayTo(search.First()))
        return false;
    const SQuoteCut cut = search.Run(m_replay, isSure);
    if (cut.token == NoToken)
        return false;
    const std::vector<SyntaxParser::SPhpToken> tokens = search.TokensOf(cut);
    if (!IsAboutTheSame(next)) {
        m_told.push_back(cut.token);
        if (isSure)
            m_reporter.ReportLexical(next);
        else
            m_reporter.ReportLostQuote(cut.quote);
    }
    m_tokens.Truncate(cut.token);
    for (const SyntaxParser::SPhpToken& token : tokens)
        m_tokens.Add(token);
    std::vector<SGrammarEdit> edits = m_feed.Edits();
    std::erase_if(edits, [&](const SGrammarEdit& edit) { return edit.token >= cut.token; });
    m_feed.SetEdits(std::move(edits));
    m_trial->rules.Begin(m_feed.Version());
    m_trial->parser.Begin();
    m_trial->rules.Distrust();
    std::uint32_t token = 0;
    while (token < cut.token && m_feed.Feed(*m_trial, token))
        ++token;
    const auto& reports = parse->rules.Reports();
    std::copy_if(reports.begin(), reports.end(), std::back_inserter(m_keptReports),
                 [&](const SRuleReport& report) { return report.token < cut.token; });
    std::swap(parse, m_trial);
    next = token;
    m_resumed = cut.token + 1;
    m_cutAnew = true;
    if (cut.isSure)
        m_quiet.Begin();
    else
        m_quiet.Start(true);
    return true;
}

namespace {

// Whether the edit is that of the guess, or more.
bool HasEdit(const SGrammarEdit& edit, const SBraceGuess& guess)
{
    const K inserted = guess.way == SBraceGuess::CloseMissing ? K::CloseBrace : K::OpenBrace;
    const bool drops = guess.way == SBraceGuess::CloseOdd || guess.way == SBraceGuess::OpenOdd;
    return edit.token == guess.token &&
           (edit.givesUp || edit.dropped > 0 || drops ||
            std::find(edit.inserted.begin(), edit.inserted.end(), inserted) != edit.inserted.end());
}

SGrammarEdit EditOf(const CGrammarTokens& tokens, const SBraceGuess& guess)
{
    switch (guess.way) {
    case SBraceGuess::CloseMissing:
        switch (guess.opened > 0 ? tokens[guess.opened - 1].kind : K::End) {
        case K::Try:
            if (tokens[guess.token].kind != K::Catch && tokens[guess.token].kind != K::Finally)
                return {guess.token, {K::CloseBrace, K::Finally, K::OpenBrace, K::CloseBrace}, 0};
            break;
        case K::Do:
            if (tokens[guess.token].kind != K::While)
                return {guess.token,
                        {K::CloseBrace, K::While, K::OpenRound, K::Variable, K::CloseRound, K::Semicolon},
                        0};
            break;
        default: break;
        }
        return {guess.token, {K::CloseBrace}, 0};
    case SBraceGuess::OpenMissing: return {guess.token, {K::OpenBrace}, 0};
    default: return {guess.token, {}, 1};
    }
}

} // namespace

// Whether a brace somewhere before is missing or too many, as the indentation tells.
bool CGrammarRecovery::ResolveByBraces(std::unique_ptr<SGrammarParse>& parse, std::uint32_t& next)
{
    constexpr std::size_t mostGuesses = 6;
    const std::uint32_t stop = next;
    const bool follows = IsAboutTheSame(stop);
    for (const SBraceGuess& guess : GuessBraces(m_tokens, stop + 1, mostGuesses)) {
        const auto& edits = m_feed.Edits();
        const bool known = std::any_of(edits.begin(), edits.end(),
                                       [&](const SGrammarEdit& edit) { return HasEdit(edit, guess); });
        if (known || guess.token > stop)
            continue;
        if (++m_trials > MostTrials)
            return false;
        if (!TryEdit(parse, next, EditOf(m_tokens, guess), stop + BraceWindow))
            continue;
        // What was said of a block when another brace ended it.
        std::erase_if(m_keptReports,
                      [&](const SRuleReport& report) { return report.token + 1 == guess.opened; });
        if (follows || (guess.way == SBraceGuess::CloseMissing && HasLostBrace(guess.opened, guess.token)))
            return true;
        m_reporter.ReportBrace(guess);
        m_quiet.Begin(); // the whole window behind the brace has passed
        return true;
    }
    return false;
}

// Parses all anew with one more edit; takes the result over when it leads that far.
bool CGrammarRecovery::TryEdit(std::unique_ptr<SGrammarParse>& parse, std::uint32_t& next,
                               const SGrammarEdit& edit, std::uint32_t enough)
{
    std::vector<SGrammarEdit> before = m_feed.Edits();
    m_feed.AddEdit(edit);
    m_trial->rules.Begin(m_feed.Version());
    m_trial->parser.Begin();
    m_trial->rules.Distrust();
    std::uint32_t token = 0;
    CGrammarQuiet quiet;
    for (; token < m_tokens.Count() && m_feed.Feed(*m_trial, token); ++token) {
        if (token == next)
            quiet.Start(true);
        if (token >= next)
            quiet.Pass(m_trial->parser, m_tokens[token].kind);
    }
    if (token <= next || (token < m_tokens.Count() && token < enough)) {
        m_feed.SetEdits(std::move(before));
        return false;
    }
    const auto& reports = parse->rules.Reports();
    m_keptReports.insert(m_keptReports.end(), reports.begin(), reports.end());
    std::swap(parse, m_trial);
    m_quiet = quiet;
    if (edit.token < m_replayed) {
        m_replay = {};
        m_replayed = 0;
    }
    next = m_resumed = token;
    return true;
}

namespace {

// How many modifiers stand before the token, if the first of them leads its line.
std::size_t ModifiersBefore(const CGrammarTokens& tokens, std::uint32_t token)
{
    std::uint32_t first = token;
    for (; first > 0; --first) {
        const K kind = tokens[first - 1].kind;
        if (kind != K::Public && kind != K::Protected && kind != K::Private && kind != K::Static &&
            kind != K::Final && kind != K::Abstract && kind != K::Readonly)
            break;
    }
    return first < token && tokens.LeadsLine(first) ? token - first : 0;
}

} // namespace

SGrammarStop CGrammarRecovery::Describe(const SGrammarParse& parse, std::uint32_t stop,
                                        const std::vector<std::uint32_t>& open)
{
    constexpr std::size_t mostClosers = 6;
    SGrammarStop result;
    AddWhatCameBefore(result, stop);
    result.probes.push_back(parse.parser.Probe());
    for (std::uint32_t i = stop; i < m_tokens.Count() && i < stop + Window; ++i)
        result.kinds.push_back(m_feed.WordKind(i));
    for (std::uint32_t i = stop - static_cast<std::uint32_t>(result.back); i <= stop; ++i)
        result.words.push_back(m_tokens[i].kind == K::Identifier ? NearWords(m_tokens.Text(i))
                                                                 : std::vector<SNearWord>{});
    result.leadsLine = m_tokens.LeadsLine(stop);
    result.isNoDeeper = result.leadsLine && stop > 0 && m_tokens[stop].column <= IndentOf(m_tokens, stop - 1);
    result.isInLinesBlock = stop > 0 && !open.empty() && m_tokens[open.back()].kind == K::OpenBrace &&
                            m_tokens[open.back()].line == m_tokens[stop - 1].line;
    result.modifiers = ModifiersBefore(m_tokens, stop);
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

// The token from which on the mistake may be: of the statement that has stopped, behind the last repair.
std::uint32_t CGrammarRecovery::BackFrom(std::uint32_t stop) const
{
    std::uint32_t from = stop;
    while (from > m_resumed && from + MostBack > stop) {
        const K kind = m_tokens[from - 1].kind;
        if (kind == K::Semicolon || kind == K::OpenBrace || kind == K::CloseBrace || kind == K::CloseTag)
            break;
        --from;
    }
    return from;
}

void CGrammarRecovery::AddWhatCameBefore(SGrammarStop& result, std::uint32_t stop)
{
    const std::uint32_t from = BackFrom(stop);
    if (from < m_replayed)
        return;
    while (m_replayed < from && m_feed.Feed(m_replay, m_replayed))
        ++m_replayed;
    if (m_replayed != from)
        return;
    CGrammarProbe probe = m_replay;
    for (std::uint32_t i = from; i < stop; ++i) {
        result.probes.push_back(probe);
        result.kinds.push_back(m_feed.WordKind(i));
        if (!m_feed.Feed(probe, i)) {
            result.probes.clear();
            result.kinds.clear();
            return;
        }
    }
    result.back = stop - from;
}

namespace {

// Whether the token stands where a brace should end a block: on a line indented less than the one before.
bool IsInPlaceOfBrace(const CGrammarTokens& tokens, std::uint32_t token)
{
    if (token == 0 || !tokens.LeadsLine(token) || tokens[token].kind == K::CloseBrace)
        return false;
    std::uint32_t first = token - 1;
    while (first > 0 && tokens[first - 1].line == tokens[token - 1].line)
        --first;
    return tokens[token].column < tokens[first].column;
}

} // namespace

// Whether what has been told before is why a block has no end: it is about a brace that opens one, or about
// what stands where the end of one should.
bool CGrammarRecovery::HasLostBrace(std::uint32_t opened, std::uint32_t token) const
{
    const auto isCause = [&](std::uint32_t at) {
        return m_tokens[at].kind == K::OpenBrace || IsInPlaceOfBrace(m_tokens, at);
    };
    return std::any_of(m_told.begin(), m_told.end(), [&](std::uint32_t told) {
        return told + 1 >= opened && told < token && (isCause(told) || (told > opened && isCause(told - 1)));
    });
}

// The end of the file, where only a brace is open that a repair has put there.
bool CGrammarRecovery::IsOfOwnBrace(std::uint32_t stop, const std::vector<std::uint32_t>& open) const
{
    const auto& edits = m_feed.Edits();
    if (m_tokens[stop].kind != K::End || open.empty())
        return false;
    return (m_tokens[open.back()].kind == K::OpenBrace && HasLostBrace(open.back(), stop)) ||
           std::any_of(edits.begin(), edits.end(), [&](const SGrammarEdit& edit) {
               return edit.token == open.back() && std::find(edit.inserted.begin(), edit.inserted.end(),
                                                             K::OpenBrace) != edit.inserted.end();
           });
}

// Nothing has parsed yet since the last error; or __halt_compiler stands too early.
bool CGrammarRecovery::IsAboutTheSame(std::uint32_t stop) const
{
    const bool halted =
        m_tokens[stop].kind == K::End && stop >= 4 && m_tokens[stop - 4].kind == K::HaltCompiler;
    return halted || m_quiet.IsActive();
}

void CGrammarRecovery::ResolveByRepair(std::unique_ptr<SGrammarParse>& parse, std::uint32_t& next)
{
    const std::uint32_t stop = next;
    const std::vector<std::uint32_t> open = OpenIn(parse->parser);
    const SGrammarStop description = Describe(*parse, stop, open);
    const SGrammarRepair repair = FindRepair(description);
    const bool follows = IsAboutTheSame(stop) || IsOfOwnBrace(stop, open);
    if (!follows)
        m_told.push_back(stop - repair.back);
    const SGrammarHalt halt{parse->parser, stop, open, description};
    if (repair.way == SGrammarRepair::None) {
        if (!follows)
            m_reporter.ReportUnrepaired(halt);
        GiveUpStatement(*parse, stop);
        return;
    }
    if (!follows)
        m_reporter.ReportRepair(halt, repair);
    m_quiet.Start(true);
    if (!Apply(parse, next, repair))
        GiveUpStatement(*parse, stop);
}

bool CGrammarRecovery::Apply(std::unique_ptr<SGrammarParse>& parse, std::uint32_t& next,
                             const SGrammarRepair& repair)
{
    const SGrammarEdit edit{next - repair.back, repair.inserted, repair.dropped};
    if (repair.back > 0)
        return ++m_trials <= MostTrials && TryEdit(parse, next, edit, next + repair.accepted);
    m_feed.AddEdit(edit);
    m_resumed = next + repair.dropped;
    return true;
}

// Nothing small helps: the statement is given up.
void CGrammarRecovery::GiveUpStatement(SGrammarParse& parse, std::uint32_t stop)
{
    const SStatementPlace place = StatementPlaceOf(parse.parser);
    m_skip = {true, stop, place.round, place.brace, place.inClass};
    parse.parser.Pop(place.depth);
}

void CGrammarRecovery::Resume(SGrammarParse& parse, std::uint32_t& next, std::uint32_t at)
{
    m_skip.active = false;
    // What cannot stand here either must not be met for ever.
    const bool isStuck = at == m_skip.from && at < m_tokens.Count() && m_tokens[at].kind != K::End &&
                         !parse.parser.Accepts(GrammarSymbol(m_tokens[at].kind));
    next = m_resumed = isStuck ? at + 1 : at;
    m_feed.AddEdit({m_skip.from, {}, next - m_skip.from, true});
    m_quiet.Start(false);
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
    if (token > m_skip.from && m_skip.brace == 0 && m_tokens.LeadsLine(token) && IsWordKind(kind) &&
        kind != K::MagicConstant)
        Resume(parse, next, token);
}

} // namespace Kesh::CodeAnalyzer
