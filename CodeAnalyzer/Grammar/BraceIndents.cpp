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

// The last token of the line, or of the lines, that what ends with a `}` on a line of its own begins with:
// the line before it that is indented alike. NoToken where what follows on that line is not indented deeper.
std::uint32_t FindHeadEnd(const CGrammarTokens& tokens, std::uint32_t closing)
{
    const std::uint32_t column = tokens[closing].column;
    std::uint32_t next = closing; // the first token of the line behind
    for (std::uint32_t i = closing; i-- > 0;) {
        if (i > 0 && tokens[i - 1].line == tokens[i].line)
            continue;
        if (tokens[i].column <= column)
            return tokens[i].column == column && next < closing && tokens[next].column > column ? next - 1
                                                                                                : NoToken;
        next = i;
    }
    return NoToken;
}

// Why the `}` on a line of its own closes nothing that is indented alike: its block was not opened, or was
// closed at once.
void GuessAtHead(std::vector<SBraceGuess>& guesses, const CGrammarTokens& tokens, std::uint32_t closing)
{
    const std::uint32_t last = FindHeadEnd(tokens, closing);
    if (last == NoToken || last == 0)
        return;
    if (EndsHeader(tokens[last].kind))
        guesses.push_back({SBraceGuess::OpenMissing, last + 1, NoToken});
    else if (tokens[last].kind == K::CloseBrace && tokens[last - 1].kind == K::OpenBrace)
        guesses.push_back({SBraceGuess::CloseOdd, last, last - 1});
}

// A block that is left open may have been opened twice.
SBraceGuess GuessLeftOpen(const CGrammarTokens& tokens, std::uint32_t opened, std::uint32_t token)
{
    if (tokens[opened + 1].kind == K::OpenBrace && tokens[opened + 1].line == tokens[opened].line)
        return {SBraceGuess::OpenOdd, opened + 1, opened};
    return {SBraceGuess::CloseMissing, token, opened};
}

} // namespace

bool EndsHeader(SyntaxParser::EPhpTokenKind kind)
{
    switch (kind) {
    case K::CloseRound:
    case K::Else:
    case K::Do:
    case K::Try:
    case K::Finally:
    case K::Identifier: return true;
    default: return false;
    }
}

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
        } else if (token.kind == K::CloseBrace && blocks.empty()) {
            if (leads)
                GuessAtHead(guesses, tokens, i);
        } else if (token.kind == K::CloseBrace) {
            const SBlock block = blocks.back();
            blocks.pop_back();
            if (tokens[block.token].kind != K::OpenBrace || token.line == block.line)
                continue;
            if (!leads) {
                if (tokens[i - 1].kind == K::CloseBrace && tokens[i - 1].column == indent &&
                    indent > block.indent)
                    guesses.push_back({SBraceGuess::CloseOdd, i, block.token});
                continue;
            }
            if (token.column < block.indent) {
                guesses.push_back(GuessLeftOpen(tokens, block.token, block.dedent ? block.dedent : i));
            } else if (token.column > block.indent) {
                GuessAtHead(guesses, tokens, i);
                guesses.push_back({SBraceGuess::CloseOdd, i, block.token});
            }
        }
    }
    // What is open at the end and has been left by its lines.
    for (auto block = blocks.rbegin(); block != blocks.rend() && guesses.size() < most; ++block)
        if (block->dedent && tokens[block->token].kind == K::OpenBrace)
            guesses.push_back(GuessLeftOpen(tokens, block->token, block->dedent));
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
