#include "SyntaxParser/PhpTokenWriter.h"

#include <algorithm>
#include <utility>

namespace Kesh::SyntaxParser {

using K = EPhpTokenKind;

namespace {

bool IsDigit(wchar_t c)
{
    return c >= L'0' && c <= L'9';
}

bool IsHexDigit(wchar_t c)
{
    return IsDigit(c) || ((c | 0x20) >= L'a' && (c | 0x20) <= L'f');
}

/// The first `\u{` in a string that names no code point; `end` when there is none.
const wchar_t* FindBadEscape(const wchar_t* p, const wchar_t* end)
{
    constexpr std::uint32_t LastCodePoint = 0x10FFFF;
    for (; (p = std::find(p, end, L'\\')) != end; p += 2) {
        if (end - p < 3 || p[1] != L'u' || p[2] != L'{') {
            if (end - p < 2)
                return end;
            continue;
        }
        std::uint32_t code = 0;
        const wchar_t* digit = p + 3;
        for (; digit < end && IsHexDigit(*digit) && code <= LastCodePoint; ++digit)
            code = code * 16 +
                   static_cast<std::uint32_t>(IsDigit(*digit) ? *digit - L'0' : (*digit | 0x20) - L'a' + 10);
        if (digit == p + 3 || digit >= end || *digit != L'}' || code > LastCodePoint)
            return p;
    }
    return end;
}

} // namespace

// Text of a string; what is wrong with an escape is told instead of it.
void CPhpTokenWriter::PutText(K kind, const wchar_t* begin, const wchar_t* end)
{
    const wchar_t* bad = FindBadEscape(begin, end);
    if (bad == end) {
        PutLines(kind, begin, end);
        return;
    }
    Pass(begin, bad);
    Put(K::BadEscape, bad, std::min(bad + 3, end));
    Pass(bad, end);
    m_written = end;
}

void CPhpTokenWriter::WriteComment(const wchar_t* begin, const wchar_t* end)
{
    const bool isBlock = end - begin >= 2 && begin[0] == L'/' && begin[1] == L'*';
    if (isBlock) {
        const bool closed = end - begin >= 4 && end[-1] == L'/' && end[-2] == L'*';
        if (!closed && end == m_limit)
            PutLines(K::BadComment, begin, end);
    } else if (*begin == L'#' && end - begin >= 2 && begin[1] == L'[') {
        WriteAttribute(begin, end);
    }
}

void CPhpTokenWriter::WriteAttribute(const wchar_t* begin, const wchar_t* end)
{
    Put(K::AttributeStart, begin, begin + 2);
    SMode code;
    code.closing = L']';
    WriteMixed(code, begin + 2, end);
}

void CPhpTokenWriter::WriteString(const wchar_t* begin, const wchar_t* content, const wchar_t* close)
{
    const wchar_t quote = content[-1];
    const bool closed = close < m_limit;
    const wchar_t* end = closed ? close + 1 : close;
    if (quote == L'\'') {
        PutLines(closed ? K::String : K::BadString, begin, end);
        return;
    }
    if (quote == L'"' && closed && std::find(content, close, L'$') == close) {
        PutText(K::String, begin, end);
        return;
    }
    m_modes.clear();
    const wchar_t* p = OpenString(begin, content, end);
    if (m_modes.empty())
        return;
    const SMode mode = m_modes.back();
    WriteMixed(mode, p, end);
}

void CPhpTokenWriter::WriteHeredoc(const wchar_t* begin, const CPhpLexer::SHeredoc& heredoc)
{
    if (!heredoc.closing) {
        PutLines(K::BadHeredoc, begin, heredoc.end);
        return;
    }
    const SMode mode = BeginHeredoc(begin, heredoc);
    WriteMixed(mode, heredoc.body, heredoc.end);
}

CPhpTokenWriter::SMode CPhpTokenWriter::BeginHeredoc(const wchar_t* begin, const CPhpLexer::SHeredoc& heredoc)
{
    PutLines(K::HeredocStart, begin, heredoc.body);
    SMode mode;
    mode.kind = SMode::Heredoc;
    mode.heredoc = heredoc;
    mode.plain = heredoc.body[-1] == L'\'';
    mode.indent = heredoc.closing;
    while (mode.indent > heredoc.body && (mode.indent[-1] == L' ' || mode.indent[-1] == L'\t'))
        --mode.indent;
    mode.indentEnd = heredoc.closing;
    return mode;
}

// Code and text in turn, until the outermost of them ends.
void CPhpTokenWriter::WriteMixed(SMode mode, const wchar_t* p, const wchar_t* end)
{
    m_modes.assign(1, mode);
    while (p < end && !m_modes.empty())
        p = m_modes.back().kind == SMode::Code ? StepCode(p, end) : StepText(p, end);
    // An attribute without its end is told by the brackets; a string is not.
    if (!m_modes.empty() && mode.kind != SMode::Code)
        Put(K::BadString, end, end);
    m_modes.clear();
    m_written = std::max(m_written, end);
}

// One token of the code.
const wchar_t* CPhpTokenWriter::StepCode(const wchar_t* p, const wchar_t* end)
{
    if (*p == L'#' && p[1] == L'[') { // cut by its parts: its bracket counts as any other
        Put(K::AttributeStart, p, p + 2);
        m_modes.back().open += m_modes.back().closing == L']';
        return p + 2;
    }
    m_lexer.EnterPhp();
    const auto [after, token, kind] = m_lexer.Next(p);
    if (token == EPhpToken::End)
        return end;
    switch (token) {
    case EPhpToken::SingleQuote: {
        const wchar_t* close = m_lexer.FindQuote(after, L'\'').end;
        // The scanner handles what follows an attribute that is never closed.
        PutLines(close < end ? K::String : K::BadString, p, close < end ? close + 1 : end);
        return m_written;
    }
    case EPhpToken::DoubleQuote:
    case EPhpToken::Backtick: return OpenString(p, after, end);
    case EPhpToken::Heredoc: return OpenHeredoc(p, after);
    case EPhpToken::HashComment:
    case EPhpToken::BlockComment:
    case EPhpToken::DocComment:
    case EPhpToken::LineComment:
    case EPhpToken::Blank: Pass(p, after); return after;
    default: break;
    }
    SMode& mode = m_modes.back();
    const wchar_t opening = mode.closing == L']' ? L'[' : L'{';
    if (*p == mode.closing && after == p + 1 && mode.open == 0) {
        Put(kind, p, after);
        m_modes.pop_back();
        return after;
    }
    if (after == p + 1 && *p == opening)
        ++mode.open;
    else if (after == p + 1 && *p == mode.closing)
        --mode.open;
    Write(kind, p, after);
    return std::max(m_written, after);
}

// A string inside of code, or the outermost one: whole when it holds no code, else its quote.
const wchar_t* CPhpTokenWriter::OpenString(const wchar_t* p, const wchar_t* content, const wchar_t* end)
{
    const wchar_t quote = content[-1];
    if (quote == L'"') {
        for (const wchar_t* at = content; at < end; ++at) {
            if (*at == L'\\') {
                ++at;
            } else if (*at == quote) {
                PutText(K::String, p, at + 1);
                return at + 1;
            } else if ((*at == L'$' && (CPhpLexer::IsWordStart(at[1]) || at[1] == L'{')) ||
                       (*at == L'{' && at[1] == L'$')) {
                break;
            }
        }
    }
    Put(quote == L'"' ? K::Quote : K::Backtick, p, content);
    SMode mode;
    mode.kind = SMode::Quoted;
    mode.closing = quote;
    m_modes.push_back(mode);
    return content;
}

const wchar_t* CPhpTokenWriter::OpenHeredoc(const wchar_t* p, const wchar_t* after)
{
    // Each is searched for its end, so that many in one another would take long.
    constexpr std::size_t DeepestHeredoc = 16;
    CPhpLexer::SHeredoc heredoc{after, nullptr, m_limit};
    if (!m_badHeredoc && m_modes.size() < DeepestHeredoc)
        heredoc = m_lexer.FindHeredoc(after);
    if (!heredoc.closing) {
        m_badHeredoc = true;
        PutLines(K::BadHeredoc, p, heredoc.end);
        return heredoc.end;
    }
    const SMode mode = BeginHeredoc(p, heredoc);
    m_modes.push_back(mode);
    return heredoc.body;
}

// A stretch of text up to the next code, or that code's beginning, or the end of the string.
const wchar_t* CPhpTokenWriter::StepText(const wchar_t* p, const wchar_t* end)
{
    const SMode mode = m_modes.back();
    const bool isHeredoc = mode.kind == SMode::Heredoc;
    const wchar_t* stop = isHeredoc ? mode.heredoc.closing : end;
    const wchar_t* at = p;
    for (; at < stop; ++at) {
        if (isHeredoc && *at == L'\n') {
            if (const wchar_t* bad = CheckIndent(mode, at + 1)) {
                Pass(p, at + 1);
                Put(K::BadIndent, at + 1, bad);
                p = at + 1;
            }
        }
        if (mode.plain)
            continue;
        if (*at == L'\\') {
            // The line break of a here-document ends a line all the same.
            at += at + 1 < stop && !(isHeredoc && at[1] == L'\n');
        } else if (!isHeredoc && *at == mode.closing) {
            break;
        } else if (*at == L'$' && (CPhpLexer::IsWordStart(at[1]) || at[1] == L'{')) {
            break;
        } else if (*at == L'{' && at[1] == L'$') {
            break;
        }
    }
    at = std::min(at, stop);
    if (at > p) {
        if (mode.plain)
            PutLines(K::StringPart, p, at);
        else
            PutText(K::StringPart, p, at);
    }
    if (at >= stop) {
        if (isHeredoc) {
            Put(K::HeredocEnd, mode.heredoc.closing, mode.heredoc.end);
            m_modes.pop_back();
            return mode.heredoc.end;
        }
        return end;
    }
    if (!isHeredoc && *at == mode.closing) {
        Put(mode.closing == L'"' ? K::Quote : K::Backtick, at, at + 1);
        m_modes.pop_back();
        return at + 1;
    }
    return WriteCode(at, end);
}

// Where the blanks of a line end that is indented less than the closing label; null for a good line.
const wchar_t* CPhpTokenWriter::CheckIndent(const SMode& mode, const wchar_t* line)
{
    const wchar_t* wanted = mode.indent;
    const wchar_t* p = line;
    if (line == mode.indent) { // the closing label's own line
        const bool mixed = std::find(mode.indent, mode.indentEnd, L' ') != mode.indentEnd &&
                           std::find(mode.indent, mode.indentEnd, L'\t') != mode.indentEnd;
        return mixed ? mode.indentEnd : nullptr;
    }
    for (; wanted < mode.indentEnd; ++wanted, ++p) {
        if (*p == L'\n' || *p == L'\r')
            return nullptr;
        if (*p != *wanted)
            return p;
    }
    return nullptr;
}

// The code that begins at `p`: a variable with what belongs to it, or what a brace encloses.
const wchar_t* CPhpTokenWriter::WriteCode(const wchar_t* p, const wchar_t* end)
{
    SMode code;
    code.closing = L'}';
    if (*p == L'{') {
        Put(K::CodeBrace, p, p + 1);
        m_modes.push_back(code);
        return p + 1;
    }
    if (p[1] == L'{') {
        Put(K::DollarBrace, p, p + 2);
        const wchar_t* word = p + 2;
        const wchar_t* wordEnd = m_lexer.SkipWord(word);
        m_modes.push_back(code);
        if (wordEnd > word && (*wordEnd == L'}' || *wordEnd == L'[')) {
            Put(K::StringVariable, word, wordEnd);
            return wordEnd;
        }
        return word;
    }
    const wchar_t* after = m_lexer.SkipWord(p + 1);
    Put(K::Variable, p, after);
    if (*after == L'[')
        return WriteOffset(after, end);
    const bool nullsafe = *after == L'?' && after[1] == L'-' && after[2] == L'>';
    const bool arrow = *after == L'-' && after[1] == L'>';
    const wchar_t* member = after + (nullsafe ? 3 : 2);
    if ((nullsafe || arrow) && member < end && CPhpLexer::IsWordStart(*member)) {
        Put(nullsafe ? K::NullsafeArrow : K::Arrow, after, member);
        const wchar_t* memberEnd = m_lexer.SkipWord(member);
        Put(K::Identifier, member, memberEnd);
        return memberEnd;
    }
    return after;
}

// `[`, a number, a word or a variable, `]`: that much may follow a variable in a string.
const wchar_t* CPhpTokenWriter::WriteOffset(const wchar_t* p, const wchar_t* end)
{
    Put(K::OpenSquare, p, p + 1);
    const wchar_t* begin = ++p;
    if (*p == L'$' && CPhpLexer::IsWordStart(p[1])) {
        p = m_lexer.SkipWord(p + 1);
        Put(K::Variable, begin, p);
    } else {
        const bool negative = *p == L'-';
        p += negative;
        if (IsDigit(*p)) {
            while (IsDigit(*p) || CPhpLexer::IsWordChar(*p))
                ++p;
        } else if (!negative) {
            p = m_lexer.SkipWord(p);
        }
        if (p > begin + negative)
            Put(K::StringName, begin, p);
    }
    if (p < end && *p == L']') {
        Put(K::CloseSquare, p, p + 1);
        return p + 1;
    }
    const wchar_t* after = std::min(p + 1, end);
    PutLines(K::BadCharacter, p, after);
    return after;
}

} // namespace Kesh::SyntaxParser
