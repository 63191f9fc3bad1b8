#include "SyntaxParser/PhpTokenWriter.h"

#include <algorithm>
#include <array>
#include <cwchar>
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

} // namespace

CPhpTokenWriter::CPhpTokenWriter(std::wstring_view text, std::vector<ITokenHandler*> handlers)
    : m_handlers(std::move(handlers)),
      m_lexer(text),
      m_text(text.data()),
      m_limit(text.data() + text.size()),
      m_lineStart(text.data()),
      m_written(text.data())
{
    std::erase_if(m_handlers, [](ITokenHandler* handler) { return !handler->BeginTokens(); });
}

void CPhpTokenWriter::SendBlock()
{
    for (ITokenHandler* handler : m_handlers)
        handler->AddTokens(m_block.data(), m_inBlock);
    m_inBlock = 0;
}

void CPhpTokenWriter::Finish()
{
    SendBlock();
    for (ITokenHandler* handler : m_handlers)
        handler->EndTokens({m_limit - m_lineStart, m_line});
}

void CPhpTokenWriter::Put(K kind, const wchar_t* begin, const wchar_t* end)
{
    const K before = m_last;
    const CIterator start{begin - m_lineStart, m_line};
    Send(kind, begin, end, start, {end - m_lineStart, m_line});
    if (m_halt > 0 || (kind == K::HaltCompiler && before != K::Arrow && before != K::DoubleColon))
        CountHalt(kind);
}

// A piece that may hold line breaks.
void CPhpTokenWriter::PutLines(K kind, const wchar_t* begin, const wchar_t* end)
{
    const CIterator start{begin - m_lineStart, m_line};
    Pass(begin, end);
    Send(kind, begin, end, start, {end - m_lineStart, m_line});
}

// `__halt_compiler ( ) ;`: after its last token comes data.
void CPhpTokenWriter::CountHalt(K kind)
{
    constexpr int TokensAfter = 3;
    if (kind == K::HaltCompiler)
        m_halt = TokensAfter;
    else if (--m_halt == 0 && (kind == K::Semicolon || kind == K::CloseTag))
        m_halt = -1;
}

void CPhpTokenWriter::Pass(const wchar_t* begin, const wchar_t* end)
{
    for (const wchar_t* p = begin; (p = std::wmemchr(p, L'\n', static_cast<std::size_t>(end - p)));) {
        m_lineStart = ++p;
        ++m_line;
    }
}

void CPhpTokenWriter::WriteCut(K kind, const wchar_t* begin, const wchar_t* end)
{
    if (begin < m_written) {
        if (end <= m_written)
            return;
        // The rest of what the lexer took for one operator, behind a `+=` or the like.
        m_lexer.EnterPhp();
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

} // namespace Kesh::SyntaxParser
