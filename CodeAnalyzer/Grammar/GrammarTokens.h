#pragma once

#include "Kesh/SyntaxParser/ITokenSource.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// A token of the document being checked.
struct SGrammarToken
{
    const wchar_t* text;
    std::uint32_t size;
    std::uint32_t line;
    std::uint32_t column;
    SyntaxParser::EPhpTokenKind kind;

    std::wstring_view View() const { return {text, size}; }
};

/// The tokens of a document so far, so that whatever was recognised can be looked up by index.
class CGrammarTokens
{
public:
    void Clear() { m_tokens.clear(); }
    void Reserve(std::size_t count) { m_tokens.reserve(count); }
    std::uint32_t Add(const SyntaxParser::SPhpToken& token)
    {
        m_tokens.emplace_back(token.text.data(), static_cast<std::uint32_t>(token.text.size()),
                              static_cast<std::uint32_t>(token.start.y),
                              static_cast<std::uint32_t>(token.start.x), token.kind);
        return static_cast<std::uint32_t>(m_tokens.size() - 1);
    }
    void Add(const SGrammarToken& token) { m_tokens.push_back(token); }
    /// Forgets the token and all behind it.
    void Truncate(std::uint32_t token) { m_tokens.resize(token); }
    std::uint32_t Count() const { return static_cast<std::uint32_t>(m_tokens.size()); }
    const SGrammarToken& operator[](std::uint32_t index) const { return m_tokens[index]; }
    /// Whether no PHP holds it.
    bool IsBad(std::uint32_t index) const
    {
        return ClassOf(m_tokens[index].kind) == SyntaxParser::EPhpTokenClass::Bad;
    }
    std::wstring_view Text(std::uint32_t index) const { return m_tokens[index].View(); }
    /// The text with small letters; for names, which know no other difference.
    std::wstring Lower(std::uint32_t index) const;
    SyntaxParser::SScheme Span(std::uint32_t index) const;
    /// Whether it is the first of its line.
    bool LeadsLine(std::uint32_t index) const
    {
        return index == 0 || (m_tokens[index - 1].line != m_tokens[index].line &&
                              Span(index - 1).end.y != m_tokens[index].line);
    }

private:
    std::vector<SGrammarToken> m_tokens;
};

/// A copy with small ASCII letters.
std::wstring LowerAscii(std::wstring_view text);

} // namespace Kesh::CodeAnalyzer
