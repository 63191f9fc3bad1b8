#pragma once

#include "Kesh/SyntaxParser/ITokenSource.h"
#include "SyntaxParser/PhpToken.h"

#include <array>
#include <string_view>
#include <vector>

namespace Kesh::SyntaxParser {

/// Cuts a text into PHP tokens. Every character lies in exactly one; linear in the text whatever it holds.
/// The text must be followed by a NUL character, as that of a std::wstring is.
class CPhpLexer
{
public:
    /// Without short tags `<?` opens nothing unless `php` or `=` follows.
    explicit CPhpLexer(std::wstring_view text, bool shortTags = true);

    /// The next token; End at the end of the text.
    EPhpToken Next();

    /// A token, by its end, what it is to the scanner, and its kind in the grammar. The kind is finer, but
    /// says nothing of what the scanner cuts itself: Count stands for that.
    struct SCut
    {
        const wchar_t* end;
        EPhpToken token;
        EPhpTokenKind kind;
    };
    /// The same for a caller that keeps the place itself: the token at `begin`.
    SCut Next(const wchar_t* begin)
    {
        if (!m_inPhp)
            return NextInHtml(begin);
        const auto code = static_cast<char32_t>(*begin);
        const SLone lone = code < LoneTokens.size() ? LoneTokens[code] : SLone{};
        return lone.token != EPhpToken::End ? SCut{begin + 1, lone.token, lone.kind} : NextInPhp(begin);
    }
    /// Takes the token from `begin` to `end` for the last one.
    void Take(const wchar_t* begin, const wchar_t* end)
    {
        m_begin = begin;
        m_cursor = end;
    }
    bool IsInPhp() const { return m_inPhp; }
    /// Takes what comes next for PHP, whatever came before.
    void EnterPhp() { m_inPhp = true; }

    const wchar_t* Begin() const { return m_begin; }   ///< of the last token
    const wchar_t* Cursor() const { return m_cursor; } ///< its end
    const wchar_t* Limit() const { return m_limit; }
    /// Goes on at `cursor`, which must not lie before Begin() or after Limit().
    void SetCursor(const wchar_t* cursor) { m_cursor = cursor; }

    /// The first character at or after `p` that is neither blank nor in a comment.
    const wchar_t* SkipBlanks(const wchar_t* p) const;
    /// The end of the word at `p`; `p` itself when there is none.
    const wchar_t* SkipWord(const wchar_t* p) const;
    /// What a string holds.
    struct SContent
    {
        const wchar_t* end;
        bool mayHoldLines; ///< false: there is no line break in it
    };
    /// The content from `begin` to the closing quote, or to the limit when there is none. Code
    /// between `{$` or `${` and `}` may hold quotes of its own.
    SContent FindQuote(const wchar_t* begin, wchar_t quote) const;
    /// A here-document.
    struct SHeredoc
    {
        const wchar_t* body;    ///< after the opening label
        const wchar_t* closing; ///< its closing label; null when there is none
        const wchar_t* end;     ///< of the closing label; else the limit
    };
    /// The one whose label, or the blanks and the quote before it, begins at `p`.
    SHeredoc FindHeredoc(const wchar_t* p) const;

    static bool IsBlank(wchar_t c) { return c == L' ' || c == L'\t' || c == L'\r' || c == L'\n'; }
    static bool IsWordStart(wchar_t c);
    static bool IsWordChar(wchar_t c)
    {
        const auto code = static_cast<char32_t>(c);
        return code >= WordChars.size() || WordChars[code];
    }

private:
    bool OpensPhp(const wchar_t* p) const;
    bool IsLongTag(const wchar_t* p) const;

    /// What a word can hold, of the characters that are not all word characters.
    static constexpr auto WordChars = [] {
        std::array<bool, 0x80> chars{};
        for (const char c :
             std::string_view("_0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"))
            chars[static_cast<unsigned char>(c)] = true;
        return chars;
    }();

    struct SLone
    {
        EPhpToken token;
        EPhpTokenKind kind;
    };
    /// The tokens of one character that begin no other token: about half of all.
    static constexpr auto LoneTokens = [] {
        using T = EPhpToken;
        using K = EPhpTokenKind;
        std::array<SLone, 0x80> tokens{};
        tokens['('] = {T::OpenRound, K::OpenRound};
        tokens[')'] = {T::CloseRound, K::CloseRound};
        tokens['['] = {T::OpenSquare, K::OpenSquare};
        tokens[']'] = {T::CloseSquare, K::CloseSquare};
        tokens['{'] = {T::OpenBrace, K::OpenBrace};
        tokens['}'] = {T::CloseBrace, K::CloseBrace};
        tokens[','] = {T::Comma, K::Comma};
        tokens[';'] = {T::Semicolon, K::Semicolon};
        return tokens;
    }();
    /// The kinds of the other characters that stand alone.
    static constexpr auto SymbolKinds = [] {
        using K = EPhpTokenKind;
        std::array<EPhpTokenKind, 0x80> kinds{};
        kinds.fill(K::BadCharacter);
        kinds['+'] = K::Plus;
        kinds['-'] = K::Minus;
        kinds['*'] = K::Times;
        kinds['/'] = K::Divide;
        kinds['%'] = K::Modulo;
        kinds['|'] = K::BitOr;
        kinds['^'] = K::BitXor;
        kinds['~'] = K::Complement;
        kinds['!'] = K::Not;
        kinds['@'] = K::At;
        kinds['<'] = K::Less;
        kinds['>'] = K::Greater;
        return kinds;
    }();
    static EPhpTokenKind SymbolKind(wchar_t c)
    {
        const auto code = static_cast<char32_t>(c);
        return code < SymbolKinds.size() ? SymbolKinds[code] : EPhpTokenKind::BadCharacter;
    }

    SCut NextInHtml(const wchar_t* begin);
    SCut NextInPhp(const wchar_t* begin);
    SCut LexLineComment(const wchar_t* p, EPhpToken token) const;
    SCut LexBlockComment(const wchar_t* p) const;
    SCut LexHash(const wchar_t* p);
    static const wchar_t* SkipWordChars(const wchar_t* p)
    {
        while (IsWordChar(*p))
            ++p;
        return p;
    }
    const wchar_t* FindAttributeEnd(const wchar_t* p) const;
    const wchar_t* FindCommentEnd(const wchar_t* p) const;
    const wchar_t* FindLineCommentEnd(const wchar_t* p) const;
    const wchar_t* FindCode(const wchar_t* p, wchar_t closing) const;
    bool StartsAt(const wchar_t* p, const char* lower) const;

    const wchar_t* m_begin;
    const wchar_t* m_cursor;
    const wchar_t* m_limit;
    bool m_inPhp = false;
    bool m_shortTags;
    bool m_openAttribute = false; ///< an attribute did not close, so no later one will
};

} // namespace Kesh::SyntaxParser
