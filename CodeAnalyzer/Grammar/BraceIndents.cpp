#include "Grammar/BraceIndents.h"

namespace Kesh::CodeAnalyzer {

using K = SyntaxParser::EPhpTokenKind;

namespace {

bool Opens(K kind)
{
    switch (kind) {
    case K::OpenRound:
    case K::OpenSquare:
    case K::OpenBrace:
    case K::AttributeStart:
    case K::CodeBrace:
    case K::DollarBrace: return true;
    default: return false;
    }
}

bool Closes(K kind)
{
    return kind == K::CloseRound || kind == K::CloseSquare || kind == K::CloseBrace;
}

K ClosingOf(K opening)
{
    switch (opening) {
    case K::OpenRound: return K::CloseRound;
    case K::OpenSquare:
    case K::AttributeStart: return K::CloseSquare;
    default: return K::CloseBrace;
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
    for (std::uint32_t i = 0; i < end; ++i) {
        const K kind = tokens[i].kind;
        if (Opens(kind)) {
            open.push_back(i);
        } else if (Closes(kind)) {
            // A bracket that closes another kind closes what was left open in between.
            for (std::size_t at = open.size(); at > 0; --at) {
                if (ClosingOf(tokens[open[at - 1]].kind) == kind) {
                    open.resize(at - 1);
                    break;
                }
                if (kind != K::CloseBrace && tokens[open[at - 1]].kind == K::OpenBrace)
                    break;
            }
        }
    }
    return open;
}

} // namespace Kesh::CodeAnalyzer
