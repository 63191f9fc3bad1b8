#include "Parsers/StatementDetails.h"

namespace Kesh::CodeAnalyzer {

using SyntaxParser::CIterator;

namespace {

/// The end of the last token that begins before a place; the place itself where there is none.
CIterator EndBefore(const CGrammarTokens& tokens, CIterator place)
{
    std::uint32_t first = 0;
    for (std::uint32_t count = tokens.Count(); count > 0;) {
        const std::uint32_t half = count / 2;
        const SGrammarToken& token = tokens[first + half];
        if (CIterator{token.column, token.line} < place) {
            first += half + 1;
            count -= half + 1;
        } else {
            count = half;
        }
    }
    return first == 0 ? place : tokens.Span(first - 1).end;
}

} // namespace

SDetails StatementDetails(const SCAError& error, const CGrammarTokens& tokens)
{
    SDetails details;
    const auto insert = [&](const wchar_t* text) {
        if (tokens.Count() == 0)
            return;
        const CIterator place = EndBefore(tokens, error.pos.start);
        details.fixes.push_back({EFix::Insert, {{{place, place}, text}}});
    };
    switch (error.code) {
    case Code::UnendedStatement: insert(L";"); break;
    case Code::MissingBody: insert(L"{"); break;
    case Code::OddSemicolon: details.fixes.push_back({EFix::Remove, {{error.pos, {}}}}); break;
    default: break;
    }
    return details;
}

} // namespace Kesh::CodeAnalyzer
