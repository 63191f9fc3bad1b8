#include "Grammar/GrammarReporter.h"

#include "Grammar/FixEdits.h"
#include "Grammar/OpenStrings.h"

#include <algorithm>
#include <cwchar>
#include <string_view>

namespace Kesh::CodeAnalyzer {

using SyntaxParser::SScheme;

namespace {

using K = SyntaxParser::EPhpTokenKind;

constexpr const char* OpenedHere = "It is opened here";
constexpr const char* TextEndsHere = "The text ends here";

/// The code for a token that is missing, where that does not depend on its place.
std::int32_t MissingCode(K kind)
{
    switch (kind) {
    case K::Semicolon: return Code::MissingSemicolon;
    case K::CloseRound: return Code::MissingCloseRound;
    case K::CloseSquare: return Code::MissingCloseSquare;
    case K::CloseBrace: return Code::MissingCloseBrace;
    case K::OpenRound: return Code::MissingOpenRound;
    case K::OpenBrace: return Code::MissingOpenBrace;
    case K::Comma: return Code::MissingComma;
    case K::Colon: return Code::MissingColon;
    case K::DoubleArrow: return Code::MissingDoubleArrow;
    case K::Assign: return Code::MissingAssign;
    case K::Dot:
    case K::Arrow:
    case K::DoubleColon:
    case K::Question:
    case K::OpenSquare: return Code::MissingOperator;
    case K::Endif:
    case K::Endforeach:
    case K::Endwhile:
    case K::Endfor:
    case K::Endswitch: return Code::MissingEndWord;
    case K::Quote: return Code::StringWithoutEnd;
    case K::Try:
    case K::If: return Code::BranchWithoutStatement;
    default: return Code::MissingWord;
    }
}

bool IsOperator(K kind)
{
    return ClassOf(kind) == SyntaxParser::EPhpTokenClass::Operator;
}

/// Whether what is missing before the token will have stood on the token's own line.
bool KeepsCompany(K kind)
{
    switch (kind) {
    case K::Semicolon:
    case K::Comma:
    case K::CloseRound:
    case K::CloseSquare:
    case K::OpenBrace:
    case K::DoubleArrow:
    case K::DoubleColon:
    case K::Else:
    case K::Elseif:
    case K::Catch:
    case K::Finally: return true;
    default: return IsOperator(kind);
    }
}

/// Whether what is missing belongs directly before the wrong token rather than after the token before that.
bool StandsAtToken(std::int32_t code, K kind)
{
    switch (kind) {
    case K::As:
    case K::Function:
    case K::Class:
    case K::Try:
    case K::If:
    case K::Case:
    case K::Catch: return true;
    default: return code == Code::MissingOperator;
    }
}

} // namespace

void CGrammarReporter::Begin(std::int32_t version, const std::wstring& versionFrom)
{
    m_diagnostics.clear();
    m_version = version;
    m_versionFrom = versionFrom;
}

SGrammarDiagnostic& CGrammarReporter::Add(std::int32_t code, SScheme span)
{
    SGrammarDiagnostic& diagnostic = m_diagnostics.emplace_back();
    diagnostic.error = {span, code, FindKind(code)->severity};
    return diagnostic;
}

// Where something is missing behind a token: at its last character.
SScheme CGrammarReporter::GapBehind(std::uint32_t token) const
{
    SScheme span = m_tokens.Span(token);
    if (span.end.x > 0)
        span.start = {span.end.x - 1, span.end.y};
    return span;
}

void CGrammarReporter::AddFound(SGrammarDiagnostic& diagnostic, const char* place, std::uint32_t token) const
{
    if (m_tokens[token].kind == K::End)
        diagnostic.details.arguments.push_back({place, L"the end of the file", SArgument::Key});
    else
        diagnostic.details.arguments.push_back({place, std::wstring(m_tokens.Text(token))});
}

void CGrammarReporter::ReportRepair(const SGrammarHalt& halt, const SGrammarRepair& repair)
{
    const std::uint32_t stop = halt.stop;
    if (ReportLateString(stop) || ReportLostName(stop) || ReportLostFunction(stop) || ReportForHead(halt))
        return;
    if (EndsNumber(stop)) {
        const SScheme span{m_tokens.Span(stop - 1).start, m_tokens.Span(stop).end};
        Add(Code::BadNumber, span)
            .details.arguments.push_back(
                {"found", std::wstring(m_tokens.Text(stop - 1)) += m_tokens.Text(stop)});
        return;
    }
    const SGrammarHalt place{halt.parser, stop - repair.back, halt.open, halt.description};
    switch (repair.way) {
    case SGrammarRepair::Insert:
        if (repair.inserted.front() != K::While || !ReportLoneDo(halt))
            ReportMissing(place, repair.inserted.front());
        break;
    case SGrammarRepair::Replace: ReportWrong(place, repair.inserted.front()); break;
    case SGrammarRepair::Word: ReportMistyped(place, repair.inserted.front()); break;
    default: ReportOdd(place); break;
    }
}

// Something stands where another token should.
void CGrammarReporter::ReportWrong(const SGrammarHalt& halt, K kind)
{
    const std::wstring text(TextOf(kind));
    if (text.empty() || kind == K::Quote || m_tokens[halt.stop].kind == K::End) {
        ReportOdd(halt);
        return;
    }
    SGrammarDiagnostic& diagnostic = Add(Code::WrongToken, m_tokens.Span(halt.stop));
    AddFound(diagnostic, "found", halt.stop);
    diagnostic.details.arguments.push_back({"expected", text});
    diagnostic.details.fixes.push_back({EFix::Replace, {{diagnostic.error.pos, text}}});
    OfferOtherBracket(diagnostic, halt);
}

// The other bracket of a pair that does not match may be the wrong one; a brace that opens what is called is.
void CGrammarReporter::OfferOtherBracket(SGrammarDiagnostic& diagnostic, const SGrammarHalt& halt) const
{
    if (halt.open.empty())
        return;
    const std::uint32_t opened = halt.open.back();
    std::vector<STextEdit> edits = CFixEdits(m_tokens).OtherBracket(opened, m_tokens[halt.stop].kind);
    if (edits.empty())
        return;
    auto& fixes = diagnostic.details.fixes;
    const bool isFirst = m_tokens[opened].kind == K::OpenBrace;
    fixes.insert(isFirst ? fixes.begin() : fixes.end(), {EFix::Replace, std::move(edits)});
}

// A variable without its `$` is taken for a name.
void CGrammarReporter::OfferDollar(SGrammarDiagnostic& diagnostic, std::uint32_t stop) const
{
    auto& fixes = diagnostic.details.fixes;
    if (m_tokens[stop].kind == K::Identifier)
        fixes.push_back({EFix::Insert, {CFixEdits(m_tokens).Dollar(stop)}});
    else if (stop > 0 && m_tokens[stop - 1].kind == K::Identifier)
        fixes.insert(fixes.begin(), {EFix::Insert, {CFixEdits(m_tokens).Dollar(stop - 1)}});
}

void CGrammarReporter::ReportMistyped(const SGrammarHalt& halt, K kind)
{
    SGrammarDiagnostic& diagnostic = Add(Code::MistypedWord, m_tokens.Span(halt.stop));
    AddFound(diagnostic, "found", halt.stop);
    const std::wstring text(TextOf(kind));
    diagnostic.details.arguments.push_back({"expected", text});
    diagnostic.details.fixes.push_back({EFix::Replace, {{diagnostic.error.pos, text}}});
}

void CGrammarReporter::ReportOpenString(std::uint32_t opening, std::uint32_t end)
{
    SGrammarDiagnostic& diagnostic = Add(Code::StringWithoutEnd, m_tokens.Span(opening));
    const SyntaxParser::CIterator place = m_tokens.Span(end).end;
    diagnostic.details.related.push_back({{place, place}, TextEndsHere});
}

void CGrammarReporter::ReportLostQuote(std::uint32_t quote)
{
    const SGrammarToken& token = m_tokens[quote];
    Add(Code::StringWithoutEnd, {{token.column, token.line}, {token.column + 1, token.line}});
}

// Whether the wrong token is what a number was to go on with.
bool CGrammarReporter::EndsNumber(std::uint32_t stop) const
{
    return stop > 0 && m_tokens[stop - 1].kind == K::Number && m_tokens[stop].kind == K::Identifier &&
           m_tokens[stop - 1].text + m_tokens[stop - 1].size == m_tokens[stop].text;
}

// Whether the line before is a label of `switch`, which a semicolon may end, but a colon does.
bool CGrammarReporter::EndsLabel(const SGrammarHalt& halt) const
{
    std::uint32_t first = halt.stop - 1;
    while (first > 0 && !m_tokens.LeadsLine(first))
        --first;
    const K kind = m_tokens[first].kind;
    return (kind == K::Case || kind == K::Default) && halt.parser.Accepts(GrammarSymbol(K::Colon));
}

void CGrammarReporter::ReportMissing(const SGrammarHalt& halt, K kind)
{
    const std::uint32_t stop = halt.stop;
    if (kind == K::Semicolon && stop > 0 && EndsLabel(halt))
        kind = K::Colon;
    std::int32_t code = MissingCode(kind);
    // Two values with nothing between them, or none where one should be.
    const bool isValue = kind == K::Variable || kind == K::Identifier;
    if (isValue)
        code = halt.parser.Accepts(GrammarSymbol(K::Number)) ? Code::MissingOperand
               : kind == K::Variable                         ? Code::MissingVariable
                                                             : Code::MissingName;
    const bool atToken = (isValue && !m_tokens.LeadsLine(stop)) || stop == 0 || StandsAtToken(code, kind) ||
                         (KeepsCompany(m_tokens[stop].kind) && m_tokens.LeadsLine(stop));
    SGrammarDiagnostic& diagnostic = Add(code, atToken ? m_tokens.Span(stop) : GapBehind(stop - 1));
    AddFound(diagnostic, "found", stop);
    const std::wstring text(TextOf(kind));
    if (code == Code::MissingVariable)
        OfferDollar(diagnostic, stop);
    if (isValue || stop == 0 || text.empty())
        return;
    if (code == Code::MissingWord || code == Code::MissingEndWord)
        diagnostic.details.arguments.push_back({"expected", text});
    const bool closes = kind == K::CloseRound || kind == K::CloseSquare || kind == K::CloseBrace;
    const std::uint32_t opened = halt.open.empty() ? NoToken : halt.open.back();
    if (closes && opened != NoToken)
        diagnostic.details.related.push_back({m_tokens.Span(opened), OpenedHere});
    for (STextEdit& edit : CFixEdits(m_tokens).Insertions(kind, stop, opened))
        diagnostic.details.fixes.push_back({EFix::Insert, {std::move(edit)}});
}

void CGrammarReporter::ReportBrace(const SBraceGuess& guess)
{
    switch (guess.way) {
    case SBraceGuess::CloseMissing: ReportMissingClosing(guess.token, guess.opened); break;
    case SBraceGuess::OpenMissing: ReportMissingOpening(guess.token); break;
    case SBraceGuess::CloseOdd: ReportOddClosing(guess.token, guess.opened); break;
    case SBraceGuess::OpenOdd: ReportOddOpening(guess.token); break;
    }
}

void CGrammarReporter::ReportMissingOpening(std::uint32_t token)
{
    SGrammarDiagnostic& diagnostic = Add(Code::MissingOpenBrace, GapBehind(token - 1));
    AddFound(diagnostic, "found", token);
    const SyntaxParser::CIterator place = m_tokens.Span(token - 1).end;
    diagnostic.details.fixes.push_back({EFix::Insert, {{{place, place}, L" {"}}});
}

void CGrammarReporter::ReportOddOpening(std::uint32_t token)
{
    SGrammarDiagnostic& diagnostic = Add(Code::OutOfPlace, m_tokens.Span(token));
    AddFound(diagnostic, "found", token);
    diagnostic.details.fixes.push_back({EFix::Remove, {CFixEdits(m_tokens).Removal(token)}});
}

void CGrammarReporter::ReportMissingClosing(std::uint32_t token, std::uint32_t opened)
{
    SGrammarDiagnostic& diagnostic = Add(Code::MissingCloseBrace, GapBehind(token - 1));
    AddFound(diagnostic, "found", token);
    diagnostic.details.related.push_back({m_tokens.Span(opened), OpenedHere});
    diagnostic.details.fixes.push_back({EFix::Insert, {CFixEdits(m_tokens).ClosingBrace(token - 1, opened)}});
}

void CGrammarReporter::ReportOddClosing(std::uint32_t token, std::uint32_t opened)
{
    SGrammarDiagnostic& diagnostic = Add(Code::OddCloseBrace, m_tokens.Span(token));
    diagnostic.details.related.push_back({m_tokens.Span(opened), "It closes what is opened here"});
    diagnostic.details.fixes.push_back({EFix::Remove, {CFixEdits(m_tokens).Removal(token)}});
}

void CGrammarReporter::ReportOdd(const SGrammarHalt& halt)
{
    SGrammarDiagnostic& diagnostic = Add(OddCode(halt), m_tokens.Span(halt.stop));
    if (m_tokens[halt.stop].kind == K::End)
        return;
    AddFound(diagnostic, "found", halt.stop);
    diagnostic.details.fixes.push_back({EFix::Remove, {CFixEdits(m_tokens).Removal(halt.stop)}});
    OfferOtherBracket(diagnostic, halt);
    if (diagnostic.error.code == Code::OutOfPlace)
        OfferDollar(diagnostic, halt.stop);
}

std::int32_t CGrammarReporter::OddCode(const SGrammarHalt& halt) const
{
    const CPhpGrammarParser& parser = halt.parser;
    const K kind = m_tokens[halt.stop].kind;
    switch (kind) {
    case K::CloseRound: return Code::OddCloseRound;
    case K::CloseSquare: return Code::OddCloseSquare;
    case K::CloseBrace: return Code::OddCloseBrace;
    case K::Comma: return Code::OddComma;
    case K::End: return Code::UnfinishedFile;
    case K::Else:
    case K::Elseif:
    case K::Case:
    case K::Default:
    case K::Catch:
    case K::Finally:
    case K::Endif:
    case K::Endfor:
    case K::Endforeach:
    case K::Endwhile:
    case K::Endswitch:
    case K::Enddeclare: return Code::BranchWithoutStatement;
    case K::Public:
    case K::Protected:
    case K::Private:
    case K::Var:
    case K::PublicSet:
    case K::ProtectedSet:
    case K::PrivateSet:
        // No member begins in the midst of something else.
        if (parser.Accepts(GrammarSymbol(StatementMark)) || m_tokens.LeadsLine(halt.stop))
            return Code::MemberOutsideClass;
        break;
    default: break;
    }
    const bool inClass = parser.Accepts(GrammarSymbol(MemberMark)) &&
                         !parser.Accepts(GrammarSymbol(StatementMark)) &&
                         parser.Accepts(GrammarSymbol(K::CloseBrace));
    if (inClass)
        return Code::StatementInClass;
    if (IsOperator(kind))
        return Code::OddOperator;
    return ClassOf(kind) == SyntaxParser::EPhpTokenClass::Word ? Code::WordOutOfPlace : Code::OutOfPlace;
}

// What the line before had to go on with; End where it could have ended or that is not plain.
SyntaxParser::EPhpTokenKind CGrammarReporter::ExpectedBeforeLine(const SGrammarHalt& halt) const
{
    if (halt.stop == 0 || !halt.description.leadsLine || halt.parser.Accepts(GrammarSymbol(StatementMark)) ||
        halt.parser.Accepts(GrammarSymbol(MemberMark)))
        return K::End;
    if (halt.parser.Accepts(GrammarSymbol(K::Number)))
        return K::Variable;
    for (const K kind : {K::Identifier, K::Variable, K::OpenRound, K::OpenBrace})
        if (halt.parser.Accepts(GrammarSymbol(kind)))
            return kind;
    return K::End;
}

// What would have to come first is told all the same.
void CGrammarReporter::ReportUnrepaired(const SGrammarHalt& halt)
{
    const std::uint32_t stop = halt.stop;
    if (ReportLateString(stop) || ReportLostName(stop) || ReportLostFunction(stop) || ReportForHead(halt))
        return;
    const auto& closers = halt.description.closers;
    const bool closes = !closers.empty() && halt.parser.Accepts(GrammarSymbol(closers.front()));
    const bool isEnd = m_tokens[stop].kind == K::End;
    if (stop > 0 && halt.parser.Accepts(GrammarSymbol(K::Semicolon)) && halt.description.leadsLine &&
        !(isEnd && closes))
        ReportMissing(halt, K::Semicolon);
    else if (stop > 0 && closes && (isEnd || closers.front() != K::CloseBrace))
        ReportMissing(halt, closers.front());
    else if (const K expected = ExpectedBeforeLine(halt); expected != K::End)
        ReportMissing(halt, expected);
    else
        ReportOdd(halt);
}

void CGrammarReporter::ReportLexical(std::uint32_t token)
{
    std::int32_t code = Code::BadCharacter;
    switch (m_tokens[token].kind) {
    case K::BadNumber: code = Code::BadNumber; break;
    case K::BadEscape: code = Code::BadEscape; break;
    case K::BadComment: code = Code::CommentWithoutEnd; break;
    case K::BadString: code = Code::StringWithoutEnd; break;
    case K::BadHeredoc: code = Code::HeredocWithoutEnd; break;
    case K::BadIndent: code = Code::HeredocIndent; break;
    default: break;
    }
    // What ends nowhere is told of where it begins.
    if (code == Code::StringWithoutEnd && m_tokens[token].size == 0) {
        for (const std::uint32_t opening : OpenStrings(m_tokens, token))
            if (m_tokens[opening].kind == K::Quote || m_tokens[opening].kind == K::Backtick) {
                ReportOpenString(opening, token);
                return;
            }
    } else if (code == Code::StringWithoutEnd || code == Code::HeredocWithoutEnd) {
        ReportOpenString(token, token);
        m_diagnostics.back().error.code = code;
        return;
    }
    SGrammarDiagnostic& diagnostic = Add(code, m_tokens.Span(token));
    AddFound(diagnostic, "found", token);
    if (code == Code::BadCharacter)
        OfferBraces(diagnostic, token);
}

// A key in quotes may stand between the brackets of a string's variable only when braces are around all of
// it.
void CGrammarReporter::OfferBraces(SGrammarDiagnostic& diagnostic, std::uint32_t token) const
{
    const wchar_t* p = m_tokens[token].text;
    const bool isKey = token > 1 && *p == L'\'' && m_tokens[token - 1].kind == K::OpenSquare &&
                       m_tokens[token - 1].text + 1 == p && m_tokens[token - 2].kind == K::Variable;
    if (!isKey)
        return;
    const wchar_t* end = p + 1 + std::wcscspn(p + 1, L"'\n");
    if (*end != L'\'' || end[1] != L']')
        return;
    const SScheme variable = m_tokens.Span(token - 2);
    SScheme whole = variable;
    const wchar_t* text = m_tokens[token - 2].text;
    whole.end.x = whole.start.x + (end + 2 - text);
    diagnostic.details.fixes.push_back({EFix::Replace, {{whole, L'{' + std::wstring(text, end + 2) + L'}'}}});
}

// What needs the newest version says enough: with that one, the place holds nothing that is too new.
void CGrammarReporter::KeepTheNewestOfEachPlace()
{
    std::vector<SGrammarDiagnostic> kept;
    kept.reserve(m_diagnostics.size());
    std::size_t newest = 0; // behind the last one of its kind
    for (SGrammarDiagnostic& diagnostic : m_diagnostics) {
        const bool tooNew = diagnostic.error.code == Code::TooNew;
        if (tooNew && newest > 0 && kept[newest - 1].error.pos.start == diagnostic.error.pos.start) {
            // One digit on each side of the dot: they compare as texts.
            if (*kept[newest - 1].details.Find("since") < *diagnostic.details.Find("since"))
                kept[newest - 1] = std::move(diagnostic);
            continue;
        }
        kept.push_back(std::move(diagnostic));
        if (tooNew)
            newest = kept.size();
    }
    m_diagnostics = std::move(kept);
}

void CGrammarReporter::Finish()
{
    std::stable_sort(m_diagnostics.begin(), m_diagnostics.end(),
                     [](const SGrammarDiagnostic& a, const SGrammarDiagnostic& b) {
                         return a.error.pos.start < b.error.pos.start;
                     });
    KeepTheNewestOfEachPlace();
}

} // namespace Kesh::CodeAnalyzer
