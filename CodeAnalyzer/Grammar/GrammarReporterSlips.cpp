// Slips that are known by their look, where the place at which the grammar stops says little.

#include "Grammar/FixEdits.h"
#include "Grammar/GrammarReporter.h"
#include "Grammar/OpenStrings.h"

namespace Kesh::CodeAnalyzer {

// The wrong token follows on a string of several lines, which then began where one should have ended.
bool CGrammarReporter::ReportLateString(std::uint32_t stop)
{
    const std::uint32_t opening = FindLateString(m_tokens, stop);
    if (opening == NoToken)
        return false;
    Add(Code::StringWithoutEnd, m_tokens.Span(opening));
    return true;
}

// A name is missing at the end of a line, and the word that begins the next one was taken for it.
bool CGrammarReporter::ReportLostName(std::uint32_t stop)
{
    if (stop < 2 || ClassOf(m_tokens[stop - 1].kind) != SyntaxParser::EPhpTokenClass::Word ||
        !m_tokens.LeadsLine(stop - 1))
        return false;
    const K before = m_tokens[stop - 2].kind;
    if (before != K::Function && before != K::Namespace)
        return false;
    AddFound(Add(Code::MissingName, GapBehind(stop - 2)), "found", stop - 1);
    return true;
}

// A method without its word, which was taken for the type of a property.
bool CGrammarReporter::ReportLostFunction(std::uint32_t stop)
{
    if (stop < 2 || m_tokens[stop].kind != K::OpenRound || m_tokens[stop - 1].kind != K::Identifier)
        return false;
    switch (m_tokens[stop - 2].kind) {
    case K::Public:
    case K::Protected:
    case K::Private:
    case K::Static:
    case K::Abstract:
    case K::Final: break;
    default: return false;
    }
    SGrammarDiagnostic& diagnostic = Add(Code::MissingWord, m_tokens.Span(stop - 1));
    AddFound(diagnostic, "found", stop - 1);
    diagnostic.details.arguments.push_back({"expected", std::wstring(TextOf(K::Function))});
    for (STextEdit& edit : CFixEdits(m_tokens).Insertions(K::Function, stop - 1, NoToken))
        diagnostic.details.fixes.push_back({EFix::Insert, {std::move(edit)}});
    return true;
}

// `do` alone on its line has taken the next statement for its body, and lacks its `while` behind that.
bool CGrammarReporter::ReportLoneDo(const SGrammarHalt& halt)
{
    std::size_t depth = halt.parser.Depth();
    const auto isLoop = [&](std::size_t at) {
        return halt.parser.TokenAt(at) < halt.stop && m_tokens[halt.parser.TokenAt(at)].kind == K::Do;
    };
    while (depth > 0 && !isLoop(depth))
        --depth;
    const std::uint32_t token = halt.parser.TokenAt(depth);
    if (depth == 0 || token + 1 >= halt.stop || !m_tokens.LeadsLine(token + 1) ||
        m_tokens[token + 1].column > m_tokens[token].column)
        return false;
    AddFound(Add(Code::MissingOpenBrace, GapBehind(token)), "found", token + 1);
    return true;
}

// `for` whose parts are told apart by commas, as far as it is plain which ones.
bool CGrammarReporter::ReportForHead(const SGrammarHalt& halt)
{
    if (m_tokens[halt.stop].kind != K::CloseRound || halt.open.empty())
        return false;
    const std::uint32_t bracket = halt.open.back();
    if (bracket == 0 || m_tokens[bracket - 1].kind != K::For)
        return false;
    constexpr std::size_t gaps = 2;
    std::vector<std::uint32_t> commas;
    std::size_t semicolons = 0;
    bool compares = false; // behind a comma, in front of any semicolon
    int depth = 0;
    for (std::uint32_t i = bracket + 1; i < halt.stop; ++i) {
        const K kind = m_tokens[i].kind;
        depth += kind == K::OpenRound || kind == K::OpenSquare || kind == K::OpenBrace;
        depth -= kind == K::CloseRound || kind == K::CloseSquare || kind == K::CloseBrace;
        if (depth == 0 && kind == K::Comma)
            commas.push_back(i);
        semicolons += depth == 0 && kind == K::Semicolon;
        const TGrammarSymbol symbol = GrammarSymbol(kind);
        compares |= !commas.empty() && semicolons == 0 &&
                    (symbol == GrammarSymbol(K::Less) || symbol == GrammarSymbol(K::Equal));
    }
    if (semicolons >= gaps)
        return false;
    // What stands before the only semicolon may be several values to begin with.
    const bool areMeant = semicolons + commas.size() == gaps && (semicolons == 0 || compares);
    if (!areMeant) {
        ReportMissing(halt, K::Semicolon);
        return true;
    }
    const std::wstring text(TextOf(K::Semicolon));
    SGrammarDiagnostic& diagnostic = Add(Code::WrongToken, m_tokens.Span(commas.front()));
    AddFound(diagnostic, "found", commas.front());
    diagnostic.details.arguments.push_back({"expected", text});
    SFix& fix = diagnostic.details.fixes.emplace_back();
    fix.kind = EFix::Replace;
    for (const std::uint32_t comma : commas)
        fix.edits.push_back({m_tokens.Span(comma), text});
    return true;
}

} // namespace Kesh::CodeAnalyzer
