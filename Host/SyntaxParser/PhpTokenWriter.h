#pragma once

#include "Kesh/SyntaxParser/ITokenSource.h"
#include "SyntaxParser/PhpLexer.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Kesh::SyntaxParser {

/// Hands on the tokens that the lexer cuts, as PHP's grammar knows them: compound operators and casts in one
/// piece, the code inside strings and attributes cut as well. Linear in the text.
class CPhpTokenWriter
{
public:
    /// With no handlers it hands on nothing; IsWanted() spares the work.
    CPhpTokenWriter(std::wstring_view text, std::vector<ITokenHandler*> handlers);

    bool IsWanted() const { return !m_handlers.empty(); }

    /// Whether all that follows is data, behind a `__halt_compiler();`.
    bool IsInData() const { return m_halt < 0; }

    /// The place of what is written next: a line and where its characters begin.
    void Seek(std::int64_t line, const wchar_t* lineStart)
    {
        m_line = line;
        m_lineStart = lineStart;
    }
    /// Text that PHP prints first and that is no part of the text here. Before anything else.
    void WriteMark() { Send(EPhpTokenKind::InlineHtml, m_text, m_text, {}, {}); }
    /// A token that the lexer has cut, of a kind other than Count.
    void Write(EPhpTokenKind kind, const wchar_t* begin, const wchar_t* end)
    {
        if (IsPlain[static_cast<std::size_t>(kind)] && begin >= m_written && m_halt == 0)
            Send(kind, begin, end, {begin - m_lineStart, m_line}, {end - m_lineStart, m_line});
        else
            WriteCut(kind, begin, end);
    }
    /// The tokens of a stretch of code without strings, which the scanner has cut as one.
    void WriteStretch(const wchar_t* begin, const wchar_t* end);
    /// A string from its prefix on; its content ends at `close`, the limit when there is no closing quote.
    void WriteString(const wchar_t* begin, const wchar_t* content, const wchar_t* close);
    /// `begin` is its prefix or `<<<`.
    void WriteHeredoc(const wchar_t* begin, const CPhpLexer::SHeredoc& heredoc);
    /// Only a comment that does not end, or that begins with `#[`, is anything to the grammar.
    void WriteComment(const wchar_t* begin, const wchar_t* end);
    /// From `#[` to its `]`.
    void WriteAttribute(const wchar_t* begin, const wchar_t* end);
    /// The end of the text, to which the place has been set.
    void Finish();

private:
    /// What surrounds a place inside of a string or an attribute.
    struct SMode
    {
        enum EKind : std::uint8_t { Code, Quoted, Heredoc } kind = Code;
        wchar_t closing = L'\0';            ///< the quote, or the bracket that ends the code
        std::uint32_t open = 0;             ///< brackets of that kind open in the code
        CPhpLexer::SHeredoc heredoc{};      ///< body and closing label
        const wchar_t* indentEnd = nullptr; ///< where the closing label's indentation ends, after `indent`
        const wchar_t* indent = nullptr;    ///< null: lines need no indentation
        bool plain = false;                 ///< a here-document without code
    };

    /// The kinds whose tokens are what the lexer cuts, whatever stands around.
    static constexpr auto IsPlain = [] {
        using K = EPhpTokenKind;
        std::array<bool, static_cast<std::size_t>(K::Count)> plain{};
        plain.fill(true);
        for (const K kind : {K::InlineHtml, K::OpenRound,  K::Number,      K::BitAnd, K::Plus,   K::Minus,
                             K::Times,      K::Divide,     K::Dot,         K::Modulo, K::BitOr,  K::BitXor,
                             K::ShiftLeft,  K::ShiftRight, K::Power,       K::Enum,   K::Public, K::Protected,
                             K::Private,    K::YieldFrom,  K::HaltCompiler})
            plain[static_cast<std::size_t>(kind)] = false;
        return plain;
    }();

    void WriteCut(EPhpTokenKind kind, const wchar_t* begin, const wchar_t* end);
    void Put(EPhpTokenKind kind, const wchar_t* begin, const wchar_t* end);
    void PutLines(EPhpTokenKind kind, const wchar_t* begin, const wchar_t* end);
    void Send(EPhpTokenKind kind, const wchar_t* begin, const wchar_t* end, CIterator start,
              CIterator endPlace)
    {
        if (m_halt < 0)
            return;
        m_block[m_inBlock] = {kind, start, endPlace, {begin, static_cast<std::size_t>(end - begin)}};
        if (++m_inBlock == m_block.size())
            SendBlock();
        m_written = end;
        m_last = kind;
    }
    void SendBlock();
    void PutText(EPhpTokenKind kind, const wchar_t* begin, const wchar_t* end);
    void Pass(const wchar_t* begin, const wchar_t* end);
    void WriteOne(EPhpTokenKind kind, const wchar_t* begin, const wchar_t* end);
    void WriteHtml(const wchar_t* begin, const wchar_t* end);
    void CountHalt(EPhpTokenKind kind);

    const wchar_t* CastEnd(const wchar_t* begin, EPhpTokenKind& kind) const;
    bool BeginsEnum(const wchar_t* p) const;
    bool LimitsWriting(const wchar_t* p) const;
    bool PrecedesVariable(const wchar_t* p) const;

    void WriteMixed(SMode mode, const wchar_t* p, const wchar_t* end);
    const wchar_t* StepCode(const wchar_t* p, const wchar_t* end);
    const wchar_t* StepText(const wchar_t* p, const wchar_t* end);
    const wchar_t* OpenString(const wchar_t* p, const wchar_t* content, const wchar_t* end);
    const wchar_t* OpenHeredoc(const wchar_t* p, const wchar_t* after);
    SMode BeginHeredoc(const wchar_t* begin, const CPhpLexer::SHeredoc& heredoc);
    const wchar_t* CheckIndent(const SMode& mode, const wchar_t* line);
    const wchar_t* WriteCode(const wchar_t* p, const wchar_t* end);
    const wchar_t* WriteOffset(const wchar_t* p, const wchar_t* end);

    std::vector<ITokenHandler*> m_handlers;
    std::array<SPhpToken, 64> m_block; ///< tokens on their way
    std::size_t m_inBlock = 0;
    CPhpLexer m_lexer; ///< cuts what lies inside of strings
    const wchar_t* m_text;
    const wchar_t* m_limit;
    const wchar_t* m_lineStart;
    std::int64_t m_line = 0;
    const wchar_t* m_written; ///< what begins before has been written
    EPhpTokenKind m_last = EPhpTokenKind::End;
    std::vector<SMode> m_modes;
    int m_halt = 0;            ///< tokens still due after __halt_compiler; -1: what follows is data
    bool m_badHeredoc = false; ///< one inside of a string did not end: nor does the next
};

} // namespace Kesh::SyntaxParser
