#include "Grammar/BraceIndents.h"

#include <array>

namespace Kesh::CodeAnalyzer {

using K = SyntaxParser::EPhpTokenKind;

namespace {

/// Which sort of bracket a token opens or closes; None: none.
enum ESort : std::uint8_t { Round, Square, Brace, None };

ESort SortOpened(K kind)
{
    switch (kind) {
    case K::OpenRound: return Round;
    case K::OpenSquare:
    case K::AttributeStart: return Square;
    case K::OpenBrace:
    case K::CodeBrace:
    case K::DollarBrace: return Brace;
    default: return None;
    }
}

ESort SortClosed(K kind)
{
    switch (kind) {
    case K::CloseRound: return Round;
    case K::CloseSquare: return Square;
    case K::CloseBrace: return Brace;
    default: return None;
    }
}

struct SBlock
{
    std::uint32_t token;
    std::uint32_t indent;
    std::uint32_t line;
    std::uint32_t
        dedent; ///< the first token of the first line inside that is indented no more than the block's; 0
};

} // namespace

std::vector<SBraceGuess> GuessBraces(const CGrammarTokens& tokens, std::uint32_t end, std::size_t most)
{
    std::vector<SBraceGuess> guesses;
    std::vector<SBlock> blocks;
    std::uint32_t line = ~std::uint32_t{0};
    std::uint32_t indent = 0;
    for (std::uint32_t i = 0; i < end && guesses.size() < most; ++i) {
        const SGrammarToken& token = tokens[i];
        const bool leads = token.line != line;
        if (leads) {
            line = token.line;
            indent = token.column;
            if (!blocks.empty() && blocks.back().dedent == 0 && token.kind != K::CloseBrace &&
                token.kind != K::InlineHtml && token.kind != K::CloseTag && token.line > blocks.back().line &&
                indent <= blocks.back().indent)
                blocks.back().dedent = i;
        }
        if (token.kind == K::OpenBrace || token.kind == K::CodeBrace || token.kind == K::DollarBrace) {
            blocks.push_back({i, indent, token.line, 0});
        } else if (token.kind == K::CloseBrace && !blocks.empty()) {
            const SBlock block = blocks.back();
            blocks.pop_back();
            if (tokens[block.token].kind != K::OpenBrace || token.line == block.line || !leads)
                continue;
            if (token.column < block.indent)
                guesses.push_back({block.dedent ? block.dedent : i, true, block.token});
            else if (token.column > block.indent)
                guesses.push_back({i, false, block.token});
        }
    }
    // What is open at the end and has been left by its lines.
    for (auto block = blocks.rbegin(); block != blocks.rend() && guesses.size() < most; ++block)
        if (block->dedent && tokens[block->token].kind == K::OpenBrace)
            guesses.push_back({block->dedent, true, block->token});
    return guesses;
}

std::uint32_t IndentOf(const CGrammarTokens& tokens, std::uint32_t token)
{
    while (token > 0 && tokens[token - 1].line == tokens[token].line)
        --token;
    return tokens[token].column;
}

std::vector<std::uint32_t> OpenBrackets(const CGrammarTokens& tokens, std::uint32_t end)
{
    std::vector<std::uint32_t> open;
    std::array<std::vector<std::size_t>, 3> places; ///< in `open`, of each sort
    std::vector<std::size_t> blocks;                ///< likewise, of braces that are no part of a string
    for (std::uint32_t i = 0; i < end; ++i) {
        if (const ESort opened = SortOpened(tokens[i].kind); opened != None) {
            places[opened].push_back(open.size());
            if (tokens[i].kind == K::OpenBrace)
                blocks.push_back(open.size());
            open.push_back(i);
            continue;
        }
        const ESort closed = SortClosed(tokens[i].kind);
        if (closed == None || places[closed].empty())
            continue;
        // A bracket that closes another kind closes what was left open in between, but for a block.
        const std::size_t at = places[closed].back();
        if (closed != Brace && !blocks.empty() && blocks.back() > at)
            continue;
        open.resize(at);
        for (std::vector<std::size_t>* list : {&places[Round], &places[Square], &places[Brace], &blocks})
            while (!list->empty() && list->back() >= at)
                list->pop_back();
    }
    return open;
}

} // namespace Kesh::CodeAnalyzer
