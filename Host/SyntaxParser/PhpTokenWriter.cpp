#include "SyntaxParser/PhpTokenWriter.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace Kesh::SyntaxParser {

using K = EPhpTokenKind;

namespace {

/// What an operator becomes with `=` behind it.
constexpr auto Assignments = [] {
    std::array<K, static_cast<std::size_t>(K::Count)> kinds{};
    const auto set = [&kinds](K op, K assignment) { kinds[static_cast<std::size_t>(op)] = assignment; };
    set(K::Plus, K::PlusAssign);
    set(K::Minus, K::MinusAssign);
    set(K::Times, K::TimesAssign);
    set(K::Divide, K::DivideAssign);
    set(K::Dot, K::DotAssign);
    set(K::Modulo, K::ModuloAssign);
    set(K::BitAnd, K::AndAssign);
    set(K::BitOr, K::OrAssign);
    set(K::BitXor, K::XorAssign);
    set(K::ShiftLeft, K::ShiftLeftAssign);
    set(K::ShiftRight, K::ShiftRightAssign);
    set(K::Power, K::PowerAssign);
    return kinds;
}();

struct SCastName
{
    std::wstring_view name;
    K kind;
};
constexpr std::array<SCastName, 13> CastNames{{{L"int", K::Cast},
                                               {L"integer", K::Cast},
                                               {L"bool", K::Cast},
                                               {L"boolean", K::Cast},
                                               {L"float", K::Cast},
                                               {L"double", K::Cast},
                                               {L"string", K::Cast},
                                               {L"binary", K::Cast},
                                               {L"array", K::Cast},
                                               {L"object", K::Cast},
                                               {L"real", K::OldCast},
                                               {L"unset", K::OldCast},
                                               {L"void", K::VoidCast}}};

constexpr std::wstring_view SetSuffix = L"(set)";

std::wstring Lower(const wchar_t* begin, const wchar_t* end)
{
    std::wstring word(begin, end);
    std::transform(word.begin(), word.end(), word.begin(),
                   [](wchar_t c) { return c >= L'A' && c <= L'Z' ? c | 0x20 : c; });
    return word;
}

bool IsDigit(wchar_t c)
{
    return c >= L'0' && c <= L'9';
}

bool IsHexDigit(wchar_t c)
{
    return IsDigit(c) || ((c | 0x20) >= L'a' && (c | 0x20) <= L'f');
}

/// Octal as it begins, but not as it goes on.
bool IsBadNumber(const wchar_t* begin, const wchar_t* end)
{
    if (*begin != L'0')
        return false;
    bool bad = false;
    for (const wchar_t* p = begin; p < end; ++p) {
        if (!IsDigit(*p) && *p != L'_')
            return false;
        bad |= *p == L'8' || *p == L'9';
    }
    return bad;
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

CPhpTokenWriter::CPhpTokenWriter(std::wstring_view text, std::vector<ITokenHandler*> handlers)
    : m_handlers(std::move(handlers)),
      m_lexer(text),
      m_text(text.data()),
      m_limit(text.data() + text.size()),
      m_lineStart(text.data()),
      m_written(text.data())
{
    for (ITokenHandler* handler : m_handlers)
        handler->BeginTokens();
}

void CPhpTokenWriter::Finish()
{
    Seek(0, m_text);
    Pass(m_text, m_limit);
    for (ITokenHandler* handler : m_handlers)
        handler->EndTokens({m_limit - m_lineStart, m_line});
}

void CPhpTokenWriter::Put(K kind, const wchar_t* begin, const wchar_t* end)
{
    if (m_halt < 0)
        return;
    SPhpToken token;
    token.kind = kind;
    token.start = {begin - m_lineStart, m_line};
    token.end = {end - m_lineStart, m_line};
    token.text = {begin, static_cast<std::size_t>(end - begin)};
    for (ITokenHandler* handler : m_handlers)
        handler->AddToken(token);
    m_written = end;
    m_last = kind;
    if (m_halt > 0 || kind == K::HaltCompiler)
        CountHalt(kind);
}

// A piece that may hold line breaks.
void CPhpTokenWriter::PutLines(K kind, const wchar_t* begin, const wchar_t* end)
{
    if (m_halt < 0)
        return;
    SPhpToken token;
    token.kind = kind;
    token.start = {begin - m_lineStart, m_line};
    Pass(begin, end);
    token.end = {end - m_lineStart, m_line};
    token.text = {begin, static_cast<std::size_t>(end - begin)};
    for (ITokenHandler* handler : m_handlers)
        handler->AddToken(token);
    m_written = end;
    m_last = kind;
}

// `__halt_compiler ( ) ;`: after its last token comes data.
void CPhpTokenWriter::CountHalt(K kind)
{
    constexpr int TokensAfter = 3;
    if (kind == K::HaltCompiler && m_last != K::Arrow && m_last != K::DoubleColon)
        m_halt = TokensAfter;
    else if (--m_halt == 0 && (kind == K::Semicolon || kind == K::CloseTag))
        m_halt = -1;
}

void CPhpTokenWriter::Pass(const wchar_t* begin, const wchar_t* end)
{
    for (const wchar_t* p = begin; (p = std::find(p, end, L'\n')) != end;) {
        m_lineStart = ++p;
        ++m_line;
    }
}

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

void CPhpTokenWriter::Write(K kind, const wchar_t* begin, const wchar_t* end)
{
    if (begin < m_written) {
        if (end <= m_written)
            return;
        // The rest of what the lexer took for one operator, behind a `+=` or the like.
        const auto [rest, token, restKind] = m_lexer.Next(m_written);
        WriteOne(restKind, m_written, rest);
        return;
    }
    WriteOne(kind, begin, end);
}

void CPhpTokenWriter::WriteOne(K kind, const wchar_t* begin, const wchar_t* end)
{
    switch (kind) {
    case K::InlineHtml: WriteHtml(begin, end); return;
    case K::OpenRound: end = CastEnd(begin, kind); break;
    case K::Number:
        if (IsBadNumber(begin, end))
            kind = K::BadNumber;
        break;
    case K::BitAnd:
        if (*end != L'=' && PrecedesVariable(end))
            kind = K::BitAndBeforeVariable;
        [[fallthrough]];
    case K::Plus:
    case K::Minus:
    case K::Times:
    case K::Divide:
    case K::Dot:
    case K::Modulo:
    case K::BitOr:
    case K::BitXor:
    case K::ShiftLeft:
    case K::ShiftRight:
    case K::Power:
        if (*end == L'=' && end < m_limit) {
            kind = Assignments[static_cast<std::size_t>(kind)];
            ++end;
        }
        break;
    case K::Enum:
        if (!BeginsEnum(end))
            kind = K::Identifier;
        break;
    case K::Public:
    case K::Protected:
    case K::Private:
        if (LimitsWriting(end)) {
            kind = kind == K::Public ? K::PublicSet : kind == K::Protected ? K::ProtectedSet : K::PrivateSet;
            end += SetSuffix.size();
        }
        break;
    case K::YieldFrom: PutLines(kind, begin, end); return;
    default: break;
    }
    Put(kind, begin, end);
}

void CPhpTokenWriter::WriteStretch(const wchar_t* begin, const wchar_t* end)
{
    m_lexer.EnterPhp();
    for (const wchar_t* p = begin; p < end;) {
        const auto [after, token, kind] = m_lexer.Next(p);
        if (kind == K::Count)
            Pass(p, after);
        else
            Write(kind, p, after);
        p = after;
    }
}

void CPhpTokenWriter::WriteHtml(const wchar_t* begin, const wchar_t* end)
{
    // The first line may name the interpreter.
    if (begin == m_text && end - begin > 2 && begin[0] == L'#' && begin[1] == L'!') {
        const wchar_t* line = std::find(begin, end, L'\n');
        line = line == end ? end : line + 1;
        Pass(begin, line);
        begin = line;
    }
    if (m_last == K::CloseTag) {
        const wchar_t* p = begin;
        if (end - p >= 2 && p[0] == L'\r' && p[1] == L'\n')
            p += 2;
        else if (p < end && (*p == L'\n' || *p == L'\r'))
            ++p;
        Pass(begin, p);
        begin = p;
    }
    if (begin < end)
        PutLines(K::InlineHtml, begin, end);
}

// The end of the cast that the bracket at `begin` opens; of the bracket itself when it opens none.
const wchar_t* CPhpTokenWriter::CastEnd(const wchar_t* begin, K& kind) const
{
    const wchar_t* p = begin + 1;
    while (*p == L' ' || *p == L'\t')
        ++p;
    const wchar_t* word = p;
    constexpr std::ptrdiff_t LongestName = 7;
    while (p - word <= LongestName && ((*p >= L'a' && *p <= L'z') || (*p >= L'A' && *p <= L'Z')))
        ++p;
    const wchar_t* wordEnd = p;
    while (*p == L' ' || *p == L'\t')
        ++p;
    if (word == wordEnd || *p != L')')
        return begin + 1;
    const std::wstring name = Lower(word, wordEnd);
    for (const SCastName& cast : CastNames) {
        if (cast.name == name) {
            kind = cast.kind;
            return p + 1;
        }
    }
    return begin + 1;
}

// Whether what follows makes `enum` declare something.
bool CPhpTokenWriter::BeginsEnum(const wchar_t* p) const
{
    const wchar_t* name = m_lexer.SkipBlanks(p);
    if (name == p || !CPhpLexer::IsWordStart(*name))
        return false;
    const wchar_t* nameEnd = m_lexer.SkipWord(name);
    const std::wstring word = Lower(name, nameEnd);
    return word != L"extends" && word != L"implements";
}

// Whether `(set)` follows at once.
bool CPhpTokenWriter::LimitsWriting(const wchar_t* p) const
{
    return static_cast<std::size_t>(m_limit - p) >= SetSuffix.size() &&
           Lower(p, p + SetSuffix.size()) == SetSuffix;
}

bool CPhpTokenWriter::PrecedesVariable(const wchar_t* p) const
{
    const wchar_t* next = m_lexer.SkipBlanks(p);
    return *next == L'$' || (*next == L'.' && next[1] == L'.' && next[2] == L'.');
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
        PutLines(close < m_limit ? K::String : K::BadString, p, std::min(close + 1, m_limit));
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
    Put(K::BadCharacter, p, std::min(p + 1, end));
    return p;
}

} // namespace Kesh::SyntaxParser
