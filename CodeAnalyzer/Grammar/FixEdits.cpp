#include "Grammar/FixEdits.h"

#include "Grammar/BraceIndents.h"

#include <algorithm>
#include <cwchar>
#include <string_view>

namespace Kesh::CodeAnalyzer {

using SyntaxParser::CIterator;

namespace {

using K = SyntaxParser::EPhpTokenKind;

/// No header of a block is looked for further back.
constexpr std::uint32_t Reach = 4000;

bool IsBlank(wchar_t c)
{
    return c == L' ' || c == L'\t';
}

std::wstring_view RestOfLine(const wchar_t* from)
{
    return {from, std::wcscspn(from, L"\n")};
}

bool IsBlank(std::wstring_view text)
{
    return std::ranges::all_of(text, [](wchar_t c) { return IsBlank(c); });
}

/// What may begin the line of a block's header.
bool BeginsHeader(K kind)
{
    switch (kind) {
    case K::If:
    case K::Elseif:
    case K::Else:
    case K::While:
    case K::For:
    case K::Foreach:
    case K::Switch:
    case K::Do:
    case K::Try:
    case K::Catch:
    case K::Finally:
    case K::Function:
    case K::Class:
    case K::Interface:
    case K::Trait:
    case K::Public:
    case K::Protected:
    case K::Private:
    case K::Static:
    case K::Abstract:
    case K::Final:
    case K::CloseBrace: return true;
    default: return false;
    }
}

/// The word that opens what an end word ends; End for another kind.
K OpenerOf(K kind)
{
    switch (kind) {
    case K::Endif: return K::If;
    case K::Endfor: return K::For;
    case K::Endforeach: return K::Foreach;
    case K::Endwhile: return K::While;
    case K::Endswitch: return K::Switch;
    default: return K::End;
    }
}

} // namespace

bool CFixEdits::IsBehindPhp(std::uint32_t token) const
{
    const K kind = m_tokens[token].kind;
    return kind == K::InlineHtml || kind == K::CloseTag;
}

STextEdit CFixEdits::Behind(std::uint32_t token, std::wstring text) const
{
    const CIterator place = m_tokens.Span(token).end;
    return {{place, place}, std::move(text)};
}

STextEdit CFixEdits::Before(std::uint32_t token, std::wstring text) const
{
    const CIterator place = m_tokens.Span(token).start;
    return {{place, place}, std::move(text)};
}

std::wstring CFixEdits::IndentOfLine(std::uint32_t token) const
{
    std::uint32_t first = token;
    while (first > 0 && m_tokens[first - 1].line == m_tokens[token].line)
        --first;
    const wchar_t* begin = m_tokens[first].text - m_tokens[first].column;
    const wchar_t* end = begin;
    while (IsBlank(*end))
        ++end;
    return {begin, end};
}

// Behind the comments of its line; a line of nothing but blanks is taken for the one that is missing.
STextEdit CFixEdits::OnOwnLine(std::uint32_t behind, const std::wstring& text) const
{
    CIterator place = m_tokens.Span(behind).end;
    const std::wstring_view rest = RestOfLine(EndOf(behind));
    if (rest.find(L"/*") != std::wstring_view::npos)
        return {{place, place}, L'\n' + text};
    place.x += static_cast<std::int64_t>(rest.size());
    if (rest.data()[rest.size()] == L'\n') {
        const std::wstring_view next = RestOfLine(rest.data() + rest.size() + 1);
        if (!next.empty() && IsBlank(next))
            return {{place, {static_cast<std::int64_t>(next.size()), place.y + 1}}, L'\n' + text};
    }
    return {{place, place}, L'\n' + text};
}

STextEdit CFixEdits::ClosingBrace(std::uint32_t behind, std::uint32_t opened) const
{
    if (IsBehindPhp(behind))
        return Behind(behind, L"<?php } ?>");
    if (m_tokens[opened].line == m_tokens.Span(behind).end.y)
        return Behind(behind, L" }");
    return OnOwnLine(behind, IndentOfLine(opened) + L'}');
}

STextEdit CFixEdits::Removal(std::uint32_t token) const
{
    SyntaxParser::SScheme span = m_tokens.Span(token);
    const wchar_t* begin = m_tokens[token].text;
    const std::wstring_view behind = RestOfLine(EndOf(token));
    const bool leads = IsBlank(std::wstring_view(begin - m_tokens[token].column, m_tokens[token].column));
    if (leads && IsBlank(behind) && span.start.y == span.end.y && behind.data()[behind.size()] == L'\n')
        return {{{0, span.start.y}, {0, span.start.y + 1}}, {}};
    // One blank is enough.
    if (!behind.empty() && IsBlank(behind.front()) && span.start.x > 0 && IsBlank(begin[-1]))
        ++span.end.x;
    return {span, {}};
}

STextEdit CFixEdits::Closer(K kind, std::uint32_t stop, std::uint32_t opened) const
{
    const K next = m_tokens[stop].kind;
    const bool goesOn = next == K::Semicolon || next == K::Comma || next == K::CloseRound ||
                        next == K::CloseSquare || next == K::OpenBrace;
    // What is spread over several lines is closed on a line of its own.
    if (goesOn && m_tokens.LeadsLine(stop) && opened != NoToken &&
        m_tokens[opened].line < m_tokens[stop - 1].line)
        return Before(stop, std::wstring(TextOf(kind)));
    return Behind(stop - 1, std::wstring(TextOf(kind)));
}

// Behind which token the bracket may have closed too: what it holds is cut off where no index goes on, or
// where conditions are joined. NoToken: there is none.
std::uint32_t CFixEdits::EarlierClose(K kind, std::uint32_t stop, std::uint32_t opened) const
{
    if (opened == NoToken || stop - opened > Reach)
        return NoToken;
    int depth = 0;
    for (std::uint32_t i = opened + 1; i < stop; ++i) {
        const K at = m_tokens[i].kind;
        const bool ends =
            kind == K::CloseSquare ? at == K::Assign : at == K::BooleanAnd || at == K::BooleanOr;
        if (ends && depth == 0 && i > opened + 1)
            return i - 1;
        depth += at == K::OpenRound || at == K::OpenSquare || at == K::OpenBrace;
        depth -= at == K::CloseRound || at == K::CloseSquare || at == K::CloseBrace;
    }
    return NoToken;
}

std::vector<STextEdit> CFixEdits::OtherBracket(std::uint32_t opened, K closer) const
{
    const K opener = closer == K::CloseRound    ? K::OpenRound
                     : closer == K::CloseSquare ? K::OpenSquare
                     : closer == K::CloseBrace  ? K::OpenBrace
                                                : K::End;
    const K now = m_tokens[opened].kind;
    if (opener == K::End || now == opener ||
        (now != K::OpenRound && now != K::OpenSquare && now != K::OpenBrace))
        return {};
    return {{m_tokens.Span(opened), std::wstring(TextOf(opener))}};
}

// The line before the block's, indented like its end, that may open it; NoToken: none is found.
std::uint32_t CFixEdits::HeaderBefore(std::uint32_t brace) const
{
    if (m_tokens[brace].kind != K::CloseBrace || !m_tokens.LeadsLine(brace))
        return NoToken;
    const std::uint32_t column = m_tokens[brace].column;
    std::uint32_t next = brace; // the first token of the line that follows
    for (std::uint32_t i = brace; i-- > 0 && brace - i < Reach;) {
        if (!m_tokens.LeadsLine(i))
            continue;
        if (m_tokens[i].column < column)
            return NoToken;
        const K last = m_tokens[next - 1].kind;
        if (m_tokens[i].column == column && BeginsHeader(m_tokens[i].kind) && EndsHeader(last))
            return next - 1;
        next = i;
    }
    return NoToken;
}

STextEdit CFixEdits::OpeningBrace(std::uint32_t behind) const
{
    STextEdit edit = Behind(behind, L" {");
    const std::wstring_view rest = RestOfLine(EndOf(behind));
    if (IsBlank(rest))
        edit.span.end.x += static_cast<std::int64_t>(rest.size());
    else if (!IsBlank(rest.front()))
        edit.text += L' ';
    if (rest.data()[rest.size()] != L'\n')
        return edit;
    // A line of nothing but blanks is where it has stood.
    const std::wstring_view next = RestOfLine(rest.data() + rest.size() + 1);
    if (IsBlank(rest) && !next.empty() && IsBlank(next)) {
        const auto size = static_cast<std::int64_t>(next.size());
        edit = {{{size, edit.span.end.y + 1}, {size, edit.span.end.y + 1}}, L"{"};
    }
    return edit;
}

STextEdit CFixEdits::Spaced(K kind, std::uint32_t stop) const
{
    const std::wstring text(TextOf(kind));
    if (m_tokens[stop].kind == K::End)
        return Behind(stop - 1, L' ' + text);
    if (m_tokens.LeadsLine(stop)) {
        const bool begins = kind == K::Function || kind == K::Class || kind == K::Case;
        return begins ? Before(stop, text + L' ') : Behind(stop - 1, L' ' + text);
    }
    const wchar_t* end = EndOf(stop - 1);
    const bool isApart = end != m_tokens[stop].text;
    if (isApart && IsBlank(end[0]) && IsBlank(end[1])) { // it has stood between the two
        CIterator place = m_tokens.Span(stop - 1).end;
        ++place.x;
        return {{place, place}, text};
    }
    return Before(stop, (isApart ? L"" : L" ") + text + L' ');
}

STextEdit CFixEdits::EndWord(K kind, std::uint32_t stop) const
{
    const std::wstring text = std::wstring(TextOf(kind)) + L';';
    if (IsBehindPhp(stop - 1))
        return Behind(stop - 1, L"<?php " + text + L" ?>");
    if (m_tokens[stop].kind != K::End && !m_tokens.LeadsLine(stop))
        return Before(stop, text + L' ');
    std::uint32_t opener = stop - 1;
    while (opener > 0 && stop - opener < Reach && m_tokens[opener].kind != OpenerOf(kind))
        --opener;
    return OnOwnLine(stop - 1, IndentOfLine(opener) + text);
}

std::vector<STextEdit> CFixEdits::Insertions(K kind, std::uint32_t stop, std::uint32_t opened) const
{
    const std::wstring text(TextOf(kind));
    const std::uint32_t before = stop - 1;
    const bool sameLine = m_tokens[stop].kind != K::End && !m_tokens.LeadsLine(stop);
    switch (kind) {
    case K::CloseBrace: return {ClosingBrace(before, opened == NoToken ? before : opened)};
    case K::CloseRound:
    case K::CloseSquare:
        if (const std::uint32_t earlier = EarlierClose(kind, stop, opened); earlier != NoToken)
            return {Closer(kind, stop, opened), Behind(earlier, text)};
        return {Closer(kind, stop, opened)};
    case K::Semicolon:
    case K::Arrow:
    case K::DoubleColon: return {Behind(before, text)};
    case K::Comma:
        return {Behind(before, sameLine && EndOf(before) == m_tokens[stop].text ? text + L' ' : text)};
    case K::OpenBrace:
        if (const std::uint32_t header = HeaderBefore(stop); header != NoToken)
            return {OpeningBrace(header), OpeningBrace(before)};
        return {OpeningBrace(before)};
    case K::OpenRound:
        if (sameLine && ClassOf(m_tokens[before].kind) == SyntaxParser::EPhpTokenClass::Word)
            return {Before(stop, text)};
        return {Behind(before, text)};
    case K::OpenSquare: return {Behind(before, text), Before(stop, text)};
    case K::Colon:
        if (sameLine && m_tokens[before].kind != K::CloseRound && m_tokens[before].kind != K::Else)
            return {Spaced(kind, stop), Behind(before, text)};
        return {Behind(before, text)};
    default: break;
    }
    if (OpenerOf(kind) != K::End)
        return {EndWord(kind, stop)};
    const auto tokenClass = ClassOf(kind);
    const bool isApart = tokenClass == SyntaxParser::EPhpTokenClass::Word ||
                         tokenClass == SyntaxParser::EPhpTokenClass::Operator || kind == K::DoubleArrow ||
                         kind == K::Question;
    return {isApart ? Spaced(kind, stop) : Behind(before, text)};
}

} // namespace Kesh::CodeAnalyzer
