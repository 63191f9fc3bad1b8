#include "SyntaxParser/PrintedStrings.h"

#include "Base/CommonString.h"
#include "SyntaxParser/HtmlTags.h"

#include <algorithm>
#include <array>
#include <initializer_list>

using namespace std::string_view_literals;

namespace Kesh::SyntaxParser {

namespace {

constexpr std::size_t npos = std::wstring_view::npos;

bool IsLetter(wchar_t c)
{
    return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z');
}

/// What a token of a kind means outside of what is printed.
enum class ERole : std::uint8_t { None, Name, BeforeMember, Begins };

constexpr auto Roles = [] {
    using enum EPhpTokenKind;
    std::array<ERole, static_cast<std::size_t>(Count)> roles{};
    roles[static_cast<std::size_t>(Identifier)] = ERole::Name;
    for (const EPhpTokenKind kind : {Arrow, DoubleColon, Function})
        roles[static_cast<std::size_t>(kind)] = ERole::BeforeMember;
    for (const EPhpTokenKind kind : {Echo, Print, OpenTagEcho})
        roles[static_cast<std::size_t>(kind)] = ERole::Begins;
    return roles;
}();

/// Whether the beginning of a tag is that of an element with content.
bool OpensElement(std::wstring_view tag)
{
    std::size_t size = 0;
    while (size < tag.size() && IsLetter(tag[size]))
        ++size;
    return size > 0 && !(GetTagFlags(Base::CCommonString::LowerCaseFast(tag.substr(0, size))) & TagVoid);
}

} // namespace

bool CPrintedStrings::BeginTokens()
{
    m_printed.clear();
    m_formats.clear();
    m_torn.clear();
    m_pieces.clear();
    m_printing = false;
    return true;
}

void CPrintedStrings::AddToken(const SPhpToken& token)
{
    using enum EPhpTokenKind;
    if (!m_printing) {
        const ERole role = Roles[static_cast<std::size_t>(token.kind)];
        m_isFormat =
            role == ERole::Name && !m_isMember && (token.text == L"printf"sv || token.text == L"vprintf"sv);
        m_isMember = role == ERole::BeforeMember;
        if (!m_isFormat && role != ERole::Begins)
            return;
        m_printing = m_plain = true;
        m_depth = 0;
        return;
    }
    switch (token.kind) {
    case Semicolon:
    case CloseTag: EndStatement(); return;
    case OpenRound:
    case OpenSquare:
    case OpenBrace:
    case CodeBrace:
    case DollarBrace: ++m_depth; break;
    case CloseRound:
    case CloseSquare:
    case CloseBrace:
        if (m_depth == 0)
            EndStatement(); // a mistake, or the end of what `print` stands in
        else
            --m_depth;
        break;
    default: break;
    }
    if (!m_printing || m_depth > (m_isFormat ? 1 : 0))
        return;
    if (m_isFormat && token.kind == Comma) {
        EndStatement();
        return;
    }
    switch (token.kind) {
    case String: AddPiece(token, 1); break;
    case StringPart: AddPiece(token, 0); break;
    case Quote:
    case HeredocStart:
    case HeredocEnd:
    case Dot:
    case Comma: break;
    case Question:
    case Coalesce:
    case BooleanOr:
    case BooleanAnd:
    case And:
    case Or:
    case Xor:
    case Equal:
    case NotEqual:
    case Identical:
    case NotIdentical:
    case Less:
    case Greater:
    case LessEqual:
    case GreaterEqual:
    case Spaceship:
    case Assign:
    case Not:
    case BitAnd:
    case BitOr:
    case BitXor:
    case Plus:
    case Minus:
    case Times:
    case Divide:
    case Modulo:
    case Print:
    case Match:
    case Function:
    case Fn: m_plain = false; break; // what is printed is not what is written
    default: break;
    }
}

// Most tokens are neither printed nor a sign that something will be.
void CPrintedStrings::AddTokens(const SPhpToken* tokens, std::size_t count)
{
    for (const SPhpToken* token = tokens; token != tokens + count; ++token) {
        if (m_printing || Roles[static_cast<std::size_t>(token->kind)] != ERole::None)
            AddToken(*token);
        else
            m_isFormat = m_isMember = false;
    }
}

void CPrintedStrings::EndTokens(CIterator /*end*/)
{
    EndStatement();
}

void CPrintedStrings::AddPiece(const SPhpToken& token, std::size_t quotes)
{
    const auto begin = static_cast<std::size_t>(token.text.data() - m_text.data());
    if (begin > m_text.size() || token.text.size() < 2 * quotes)
        return;
    const std::size_t prefix = quotes > 0 ? token.text.find_first_of(L"'\"") : 0; // b'…'
    if (prefix == std::wstring_view::npos)
        return;
    m_pieces.push_back({begin + prefix + quotes, begin + token.text.size() - quotes});
}

void CPrintedStrings::EndStatement()
{
    if (m_printing && m_plain && KeepWholeMarkup()) {
        m_printed.insert(m_printed.end(), m_pieces.begin(), m_pieces.end());
        if (m_isFormat)
            m_formats.insert(m_formats.end(), m_pieces.begin(), m_pieces.end());
    }
    m_pieces.clear();
    m_printing = false;
}

// Leaves out a tag that goes on elsewhere, and all behind it; where it opens an element, its place is kept.
// False: there is a `<` inside of a tag.
bool CPrintedStrings::KeepWholeMarkup()
{
    wchar_t quote = L'\0';
    wchar_t last = L'\0';
    std::size_t begin = npos; // of the tag
    std::size_t beginPiece = 0;
    for (std::size_t piece = 0; piece < m_pieces.size(); ++piece)
        for (std::size_t i = m_pieces[piece].begin; i < m_pieces[piece].end; ++i) {
            const wchar_t c = m_text[i];
            if (quote != L'\0') {
                quote = c == quote ? L'\0' : quote;
            } else if (begin != npos && (c == L'"' || c == L'\'')) {
                quote = c;
            } else if (begin != npos && c == L'<') {
                return false;
            } else if (c == L'>') {
                begin = npos;
            } else if (last == L'<' && (IsLetter(c) || c == L'/')) {
                begin = i - 1;
                beginPiece = piece;
            }
            last = c;
        }
    if (begin == npos)
        return last != L'<';
    m_pieces.resize(beginPiece + 1);
    SIsland& piece = m_pieces.back();
    if (OpensElement(m_text.substr(begin + 1, piece.end - begin - 1)))
        m_torn.push_back({begin, std::max(piece.end, begin + 3)});
    else
        piece.end = begin;
    return true;
}

void CPrintedStrings::Unescape(wchar_t* copy, wchar_t filler) const
{
    for (const SIsland& piece : m_printed)
        for (std::size_t i = piece.begin; i + 1 < piece.end; ++i) {
            if (copy[i] != L'\\')
                continue;
            const wchar_t c = copy[i + 1];
            const bool isQuote = c == L'"' || c == L'\'';
            const bool isBlank = c == L'n' || c == L't' || c == L'r';
            copy[i] = isQuote ? c : isBlank ? L' ' : filler;
            copy[++i] = isBlank ? L' ' : filler;
        }
    for (const SIsland& tag : m_torn) {
        std::fill(copy + tag.begin + 1, copy + tag.end - 1, filler);
        copy[tag.end - 1] = L'>';
    }
    for (const SIsland& piece : m_formats)
        for (std::size_t i = piece.begin; i < piece.end; ++i) {
            if (copy[i] != L'%')
                continue;
            while (i + 1 < piece.end && std::wstring_view(L"0123456789.'+-$ ").find(copy[i + 1]) != npos)
                copy[i++] = filler;
            copy[i] = filler;
            if (i + 1 < piece.end)
                copy[++i] = filler;
        }
}

std::vector<SIsland> CPrintedStrings::Without(const std::vector<SIsland>& islands) const
{
    std::vector<SIsland> rest;
    rest.reserve(islands.size() + m_printed.size());
    auto piece = m_printed.begin();
    for (const SIsland& island : islands) {
        std::size_t begin = island.begin;
        for (; piece != m_printed.end() && piece->end <= island.end; ++piece) {
            if (piece->begin < begin)
                continue;
            rest.push_back({begin, piece->begin});
            begin = piece->end;
        }
        rest.push_back({begin, island.end});
    }
    return rest;
}

} // namespace Kesh::SyntaxParser
