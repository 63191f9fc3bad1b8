#pragma once

#include "SyntaxParser/MarkupText.h"

#include <cstddef>

namespace Kesh::SyntaxParser {

enum class ECssToken : char {
    Space, ///< also "<!--", "-->" and CDATA marks, which mean nothing
    Ident,
    Function, ///< with its "("
    AtKeyword,
    Hash,
    String,
    Url, ///< url(...) without quotes, whole
    Number,
    Percentage,
    Dimension,
    Colon,
    Semicolon,
    Comma,
    Period,
    Star,
    Bar,
    Ampersand,
    Combinator, ///< ">", "+" or "~"
    ParenOpen,
    ParenClose,
    SquareOpen,
    SquareClose,
    BraceOpen,
    BraceClose,
    Other,
    End
};

struct SCssToken
{
    ECssToken kind = ECssToken::End;
    SStretch place;
};

/// Cuts CSS into tokens, without comments. Reads a scanned text (see CMarkupText) up to the next NUL.
class CCssScanner
{
public:
    explicit CCssScanner(const wchar_t* text) : m_text(text), m_cursor(text) {}

    void SetPos(std::size_t offset) { m_cursor = m_text + offset; }
    std::size_t GetPos() const { return static_cast<std::size_t>(m_cursor - m_text); }
    SCssToken Next();

private:
    void SkipComment();
    void SkipUrl();

    const wchar_t* m_text;
    const wchar_t* m_cursor;
};

} // namespace Kesh::SyntaxParser
