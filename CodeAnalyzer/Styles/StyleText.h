#pragma once

#include "Kesh/SyntaxParser/IMarkupTokens.h"

#include <string>
#include <string_view>
#include <vector>

namespace Kesh::CodeAnalyzer {

using SyntaxParser::EStyleTokenKind;
using SyntaxParser::SMarkupSpan;
using SyntaxParser::SStyleToken;

/// The index of a token; the count of tokens stands for the end.
using TTokenIndex = std::size_t;

/// Tokens that follow each other; `end` is exclusive.
struct STokens
{
    TTokenIndex begin = 0;
    TTokenIndex end = 0;

    bool IsEmpty() const { return begin >= end; }
};

/// The tokens of one style.
class CStyleText
{
public:
    void Begin(const SyntaxParser::IMarkupPlaces& places, SMarkupSpan whole)
    {
        m_places = &places;
        m_whole = whole;
        m_tokens.clear();
    }
    void Add(const SStyleToken& token) { m_tokens.push_back(token); }
    /// Makes the checkers pass over a token.
    void Hide(TTokenIndex index) { m_tokens[index].kind = EStyleTokenKind::Comment; }

    const SyntaxParser::IMarkupPlaces& Places() const { return *m_places; }
    SMarkupSpan Whole() const { return m_whole; }
    TTokenIndex Size() const { return m_tokens.size(); }
    const SStyleToken& operator[](TTokenIndex index) const { return m_tokens[index]; }
    EStyleTokenKind KindOf(TTokenIndex index) const { return m_tokens[index].kind; }
    bool Is(TTokenIndex index, EStyleTokenKind kind) const
    {
        return index < m_tokens.size() && m_tokens[index].kind == kind;
    }
    bool IsSign(TTokenIndex index, wchar_t sign) const;
    /// Space or a comment.
    bool IsBlank(TTokenIndex index) const
    {
        return m_tokens[index].kind == EStyleTokenKind::Space ||
               m_tokens[index].kind == EStyleTokenKind::Comment;
    }
    /// Whether the token is made by PHP alone.
    bool IsIsland(TTokenIndex index) const;
    bool IsTouched(TTokenIndex index) const { return m_places->IsTouched(m_tokens[index].span); }
    bool IsTouched(STokens tokens) const { return m_places->IsTouched(SpanOf(tokens)); }
    bool HasNewline(TTokenIndex index) const;

    std::wstring_view Text(TTokenIndex index) const { return m_places->Text(m_tokens[index].span); }
    /// The ASCII of a name in lower case: without "@", "#" or "(", escapes as they are, every other character
    /// as DEL.
    std::string NameOf(TTokenIndex index) const;

    SMarkupSpan SpanOf(STokens tokens) const;
    /// The end of the last token before `index`, blanks left out: where something is missing.
    SMarkupSpan EndBefore(TTokenIndex index) const;

    /// The last token before `index` that is no blank; Size(): there is none.
    TTokenIndex Before(TTokenIndex index) const;
    TTokenIndex SkipBlanks(TTokenIndex index, TTokenIndex end) const;
    TTokenIndex SkipBlanks(TTokenIndex index) const { return SkipBlanks(index, Size()); }
    /// Without blanks at both ends.
    STokens Trimmed(STokens tokens) const;

private:
    const SyntaxParser::IMarkupPlaces* m_places = nullptr;
    SMarkupSpan m_whole;
    std::vector<SStyleToken> m_tokens;
};

/// ASCII in lower case; every other character as DEL.
std::string StyleLower(std::wstring_view text);

} // namespace Kesh::CodeAnalyzer
