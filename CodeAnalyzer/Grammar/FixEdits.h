#pragma once

#include "Grammar/GrammarTokens.h"
#include "Grammar/RuleReport.h"
#include "Kesh/CodeAnalyzer/Diagnostic.h"

#include <cstdint>
#include <string>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// The edits that put a token where it is missing, or take one away, with the blanks and the line that belong
/// to it.
class CFixEdits
{
public:
    using K = SyntaxParser::EPhpTokenKind;

    /// `tokens` outlive it, and so does their text.
    explicit CFixEdits(const CGrammarTokens& tokens) : m_tokens(tokens) {}

    /// Ways to put a token of a kind before the token `stop`, which is not the first; the likeliest first.
    /// `opened` is the innermost bracket that is open there, or NoToken.
    std::vector<STextEdit> Insertions(K kind, std::uint32_t stop, std::uint32_t opened) const;
    /// The brace that ends, behind a token, the block that `opened` opens.
    STextEdit ClosingBrace(std::uint32_t behind, std::uint32_t opened) const;
    /// The `$` of a variable that is written like a name.
    STextEdit Dollar(std::uint32_t name) const { return Before(name, L"$"); }
    /// Makes of the bracket `opened` one that `closer` closes; empty: it does already, or is no bracket.
    std::vector<STextEdit> OtherBracket(std::uint32_t opened, K closer) const;
    /// Takes a token away, with its line when it is alone there.
    STextEdit Removal(std::uint32_t token) const;

private:
    const wchar_t* EndOf(std::uint32_t token) const { return m_tokens[token].text + m_tokens[token].size; }
    bool IsBehindPhp(std::uint32_t token) const;
    STextEdit Behind(std::uint32_t token, std::wstring text) const;
    STextEdit Before(std::uint32_t token, std::wstring text) const;
    STextEdit Closer(K kind, std::uint32_t stop, std::uint32_t opened) const;
    std::uint32_t EarlierClose(K kind, std::uint32_t stop, std::uint32_t opened) const;
    STextEdit OpeningBrace(std::uint32_t behind) const;
    std::uint32_t HeaderBefore(std::uint32_t brace) const;
    STextEdit Spaced(K kind, std::uint32_t stop) const;
    STextEdit EndWord(K kind, std::uint32_t stop) const;
    STextEdit OnOwnLine(std::uint32_t behind, const std::wstring& text) const;
    std::wstring IndentOfLine(std::uint32_t token) const;

    const CGrammarTokens& m_tokens;
};

} // namespace Kesh::CodeAnalyzer
