#pragma once

#include "SyntaxParser/PhpToken.h"

#include <string_view>
#include <vector>

namespace Kesh::SyntaxParser {

/// Cuts a text into PHP tokens. Every character lies in exactly one; linear in the text whatever it holds.
/// The text must be followed by a NUL character, as that of a std::wstring is.
class CPhpLexer
{
public:
    explicit CPhpLexer(std::wstring_view text);

    /// The next token; End at the end of the text.
    EPhpToken Next();

    /// Passes a single space between two other tokens, the commonest token of all; false when there is none.
    bool NextSpace()
    {
        const wchar_t* p = m_cursor;
        if (!m_inPhp || *p != L' ' || p[1] == L' ' || p[1] == L'\t' || p[1] == L'\r' || p[1] == L'\n')
            return false;
        m_begin = p;
        m_cursor = p + 1;
        return true;
    }

    const wchar_t* Begin() const { return m_begin; }   ///< of the last token
    const wchar_t* Cursor() const { return m_cursor; } ///< its end
    const wchar_t* Limit() const { return m_limit; }
    /// Goes on at `cursor`, which must lie between Begin() and Limit().
    void SetCursor(const wchar_t* cursor) { m_cursor = cursor; }

    /// The first character at or after `p` that is neither blank nor in a comment.
    const wchar_t* SkipBlanks(const wchar_t* p) const;
    /// The end of the word at `p`; `p` itself when there is none.
    const wchar_t* SkipWord(const wchar_t* p) const;
    /// The closing quote of the string whose content begins at `p`; the limit when there is none. Code
    /// between
    /// `{$` and `}` may hold quotes of its own.
    const wchar_t* FindQuote(const wchar_t* p, wchar_t quote) const;
    /// The end of the closing label of the here-document whose label begins at `p`; the limit without one.
    const wchar_t* FindHeredocEnd(const wchar_t* p) const;

    static bool IsWordStart(wchar_t c);
    static bool IsWordChar(wchar_t c);

private:
    EPhpToken NextInHtml();
    EPhpToken NextInPhp();
    /// The token ends at `end`.
    EPhpToken Cut(const wchar_t* end, EPhpToken token)
    {
        m_cursor = end;
        return token;
    }
    EPhpToken LexLineComment(const wchar_t* p, EPhpToken token);
    EPhpToken LexBlockComment(const wchar_t* p);
    EPhpToken LexHash(const wchar_t* p);
    const wchar_t* FindAttributeEnd(const wchar_t* p) const;
    const wchar_t* FindCommentEnd(const wchar_t* p) const;
    const wchar_t* FindLineCommentEnd(const wchar_t* p) const;
    const wchar_t* FindCode(const wchar_t* p, wchar_t closing) const;
    bool StartsAt(const wchar_t* p, const char* lower) const;

    const wchar_t* m_begin;
    const wchar_t* m_cursor;
    const wchar_t* m_limit;
    bool m_inPhp = false;
    bool m_openAttribute = false; ///< an attribute did not close, so no later one will
};

} // namespace Kesh::SyntaxParser
