#include "Grammar/PhpGrammarChecker.h"

namespace Kesh::CodeAnalyzer {

using SyntaxParser::EPhpTokenKind;
using SyntaxParser::SScheme;
using K = EPhpTokenKind;

namespace {

const wchar_t* TextOf(K kind)
{
    switch (kind) {
    case K::Semicolon: return L";";
    case K::CloseRound: return L")";
    case K::CloseSquare: return L"]";
    case K::CloseBrace: return L"}";
    case K::OpenRound: return L"(";
    case K::OpenSquare: return L"[";
    case K::OpenBrace: return L"{";
    case K::Comma: return L",";
    case K::Colon: return L":";
    case K::DoubleArrow: return L"=>";
    case K::Assign: return L"=";
    case K::As: return L"as";
    case K::While: return L"while";
    case K::Function: return L"function";
    case K::Class: return L"class";
    case K::Catch: return L"catch";
    case K::Case: return L"case";
    case K::If: return L"if";
    case K::Try: return L"try";
    case K::Endif: return L"endif";
    case K::Endforeach: return L"endforeach";
    case K::Endwhile: return L"endwhile";
    case K::Endfor: return L"endfor";
    case K::Endswitch: return L"endswitch";
    default: return L"";
    }
}

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
    return kind >= K::Assign && kind <= K::Decrement;
}

} // namespace

void CPhpGrammarChecker::Add(std::int32_t code, SScheme span, std::uint32_t stop)
{
    SGrammarDiagnostic diagnostic;
    diagnostic.error = {span, code, SeverityError};
    diagnostic.stop = diagnostic.resumed = m_tokens.Span(stop).start;
    m_diagnostics.push_back(std::move(diagnostic));
}

// Where something is missing behind a token: at its last character.
SScheme CPhpGrammarChecker::GapBehind(std::uint32_t token) const
{
    SScheme span = m_tokens.Span(token);
    if (span.end.x > 0)
        span.start = {span.end.x - 1, span.end.y};
    return span;
}

namespace {

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

} // namespace

void CPhpGrammarChecker::ReportRepair(std::uint32_t stop, const SGrammarRepair& repair,
                                      const std::vector<std::uint32_t>& open)
{
    if (EndsLateString(stop)) {
        Add(Code::StringWithoutEnd, m_tokens.Span(stop - 1), stop);
        return;
    }
    if (EndsNumber(stop))
        Add(Code::BadNumber, {m_tokens.Span(stop - 1).start, m_tokens.Span(stop).end}, stop);
    else if (repair.inserted.empty() || repair.dropped > 0)
        ReportOdd(stop);
    else
        ReportMissing(repair.inserted.front(), stop, open);
}

// Whether the wrong token follows directly on a string of several lines, which then began where one should
// have ended.
bool CPhpGrammarChecker::EndsLateString(std::uint32_t stop) const
{
    if (stop == 0)
        return false;
    const SGrammarToken& before = m_tokens[stop - 1];
    const bool isString = before.kind == K::String || before.kind == K::BadEscape;
    return isString && before.text + before.size == m_tokens[stop].text &&
           before.View().find(L'\n') != std::wstring_view::npos;
}

// Whether the wrong token is what a number was to go on with.
bool CPhpGrammarChecker::EndsNumber(std::uint32_t stop) const
{
    return stop > 0 && m_tokens[stop - 1].kind == K::Number && m_tokens[stop].kind == K::Identifier &&
           m_tokens[stop - 1].text + m_tokens[stop - 1].size == m_tokens[stop].text;
}

void CPhpGrammarChecker::ReportMissing(K kind, std::uint32_t stop, const std::vector<std::uint32_t>& open)
{
    const CPhpGrammarParser& parser = m_parse->parser;
    const bool takesOperand = parser.Accepts(GrammarSymbol(K::Number));
    std::int32_t code = MissingCode(kind);
    // Two values with nothing between them, or none where one should be.
    if (kind == K::Variable || kind == K::Identifier) {
        code = takesOperand          ? Code::MissingOperand
               : kind == K::Variable ? Code::MissingVariable
                                     : Code::MissingName;
        Add(code, m_tokens.Span(stop), stop);
        return;
    }
    if (stop == 0) {
        Add(code, m_tokens.Span(stop), stop);
        return;
    }
    const bool atToken = code == Code::MissingOperator || kind == K::As || kind == K::Function ||
                         kind == K::Class || kind == K::Try || kind == K::If || kind == K::Case ||
                         kind == K::Catch;
    Add(code,
        atToken || (KeepsCompany(m_tokens[stop].kind) && LeadsLine(stop)) ? m_tokens.Span(stop)
                                                                          : GapBehind(stop - 1),
        stop);
    SGrammarDiagnostic& diagnostic = m_diagnostics.back();
    diagnostic.insertion = TextOf(kind);
    diagnostic.insertAt = m_tokens.Span(stop - 1).end;
    if (kind == K::CloseRound || kind == K::CloseSquare || kind == K::CloseBrace) {
        if (!open.empty()) {
            diagnostic.related = m_tokens.Span(open.back());
            diagnostic.relatedKey = "The bracket is opened here";
        }
    } else if (code == Code::MissingWord || code == Code::MissingEndWord) {
        diagnostic.subject = diagnostic.insertion;
    }
}

void CPhpGrammarChecker::ReportOdd(std::uint32_t stop)
{
    Add(OddCode(stop), m_tokens.Span(stop), stop);
    m_diagnostics.back().removable = m_tokens[stop].kind != K::End;
    m_diagnostics.back().subject = m_tokens.Text(stop);
}

std::int32_t CPhpGrammarChecker::OddCode(std::uint32_t token) const
{
    const CPhpGrammarParser& parser = m_parse->parser;
    const K kind = m_tokens[token].kind;
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
    case K::PrivateSet: return Code::MemberOutsideClass;
    default: break;
    }
    const bool inClass = parser.Accepts(GrammarSymbol(MemberMark)) &&
                         !parser.Accepts(GrammarSymbol(StatementMark)) &&
                         parser.Accepts(GrammarSymbol(K::CloseBrace));
    if (inClass)
        return Code::StatementInClass;
    if (IsOperator(kind))
        return Code::OddOperator;
    if (kind >= K::Abstract)
        return Code::WordOutOfPlace;
    return Code::OutOfPlace;
}

// Nothing small helps; what would have to come first is told all the same.
void CPhpGrammarChecker::ReportUnrepaired(std::uint32_t stop, const std::vector<std::uint32_t>& open)
{
    const CPhpGrammarParser& parser = m_parse->parser;
    if (EndsLateString(stop)) {
        Add(Code::StringWithoutEnd, m_tokens.Span(stop - 1), stop);
        return;
    }
    const SGrammarStop description = DescribeStop(stop, open);
    const bool closes =
        !description.closers.empty() && parser.Accepts(GrammarSymbol(description.closers.front()));
    if (stop > 0 && parser.Accepts(GrammarSymbol(K::Semicolon)) && description.leadsLine)
        ReportMissing(K::Semicolon, stop, open);
    else if (stop > 0 && closes &&
             (m_tokens[stop].kind == K::End || description.closers.front() != K::CloseBrace))
        ReportMissing(description.closers.front(), stop, open);
    else
        ReportOdd(stop);
}

void CPhpGrammarChecker::ReportLexical(std::uint32_t token)
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
    Add(code, m_tokens.Span(token), token);
}

void CPhpGrammarChecker::AddRuleReports()
{
    const auto& reports = m_parse->rules.Reports();
    m_keptReports.insert(m_keptReports.end(), reports.begin(), reports.end());
    for (const SRuleReport& report : m_keptReports) {
        const std::uint32_t token = std::min(report.token, m_tokens.Count() - 1);
        Add(report.code, m_tokens.Span(token), token);
        SGrammarDiagnostic& diagnostic = m_diagnostics.back();
        diagnostic.stopsParse = false;
        diagnostic.resumed = m_tokens.Span(token).end;
        if (report.related != NoToken) {
            diagnostic.related = m_tokens.Span(report.related);
            diagnostic.relatedKey = "The first one is here";
        }
    }
}

} // namespace Kesh::CodeAnalyzer
