#include "Markup/NestingEvents.h"

#include "Base/CommonString.h"
#include "Markup/HtmlElements.h"
#include "Markup/PhpBetweenTags.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <utility>

namespace Kesh::CodeAnalyzer {

using SyntaxParser::EHtmlTokenKind;
using SyntaxParser::MarkupIsland;
using SyntaxParser::SHtmlToken;
using SyntaxParser::SMarkupSpan;

namespace {

bool IsBlank(wchar_t c)
{
    return c == L' ' || c == L'\t' || c == L'\n' || c == L'\r' || c == L'\f';
}

/// Whether a tag at `begin` is a string of a script that is printed without its own tags.
bool IsCode(std::wstring_view text, std::size_t begin)
{
    return begin >= 2 && (text[begin - 1] == L'\'' || text[begin - 1] == L'"') && text[begin - 2] == L'(';
}

/// The name of what looks like a tag among the attributes, or is cut off in the value of one; empty: there is
/// none.
std::wstring_view HeldTag(const SHtmlToken& token, const SyntaxParser::IMarkupPlaces& places)
{
    for (const SyntaxParser::SHtmlAttribute& attribute : token.attributes) {
        for (const std::wstring_view text : {places.Text(attribute.name), places.Text(attribute.value)}) {
            const std::size_t tag = text.rfind(L'<');
            const bool isName = text.data() == places.Text(attribute.name).data();
            if (tag == std::wstring_view::npos ||
                (!isName && (tag + 1 == text.size() || !IsNameCharacter(text[tag + 1]) ||
                             text.find(L'>', tag) != std::wstring_view::npos)))
                continue;
            std::size_t end = tag + 1;
            while (end < text.size() && IsNameCharacter(text[end]))
                ++end;
            return text.substr(tag, end - tag);
        }
    }
    return {};
}

/// Whether it does not matter that the end of a start tag is printed, and so cannot be told from the next
/// one.
bool IsEasy(const SHtmlToken& token, std::wstring_view held, const SyntaxParser::IMarkupPlaces& places)
{
    const auto isEasy = [](std::wstring_view name) {
        return (ElementFlags(Base::CCommonString::LowerCaseFast(name)) &
                (ElementVoid | ElementOptionalEnd)) != 0;
    };
    return token.kind == EHtmlTokenKind::StartTag && isEasy(places.Text(token.name)) &&
           (held.empty() ? token.unfinished : isEasy(held.substr(1)));
}

} // namespace

void CNestingEvents::Begin(const SyntaxParser::IMarkupPlaces& places, SFlow flow)
{
    m_places = &places;
    m_flow = std::move(flow);
    m_nextMark = 0;
    m_events.clear();
    m_names.clear();
    m_lastIsBare = false;
}

void CNestingEvents::Add(const SHtmlToken& token)
{
    if (token.kind == EHtmlTokenKind::Island) {
        TakeMarksUpTo(token.span.begin);
        const SPrinting printing =
            WhatPrints(m_places->Written().substr(token.span.begin, token.span.end - token.span.begin));
        if (printing.prints) {
            SNestingEvent event;
            event.kind = printing.torn ? SNestingEvent::Torn : SNestingEvent::Unknown;
            event.span = token.span;
            event.calls = printing.calls;
            m_events.push_back(event);
        }
    } else if (token.kind == EHtmlTokenKind::StartTag || token.kind == EHtmlTokenKind::EndTag) {
        AddTag(token);
    } else if (token.kind == EHtmlTokenKind::Text) {
        TakeMarksUpTo(token.span.begin);
        const std::wstring_view text = m_places->Text(token.span);
        std::size_t i = 0;
        while (i < text.size() && IsBlank(text[i]))
            ++i;
        if (i == text.size() || text[i] == MarkupIsland)
            return;
        SNestingEvent event;
        event.kind = SNestingEvent::Text;
        event.span = {token.span.begin + i, token.span.begin + i + 1};
        m_events.push_back(event);
    }
}

void CNestingEvents::AddTag(const SHtmlToken& token)
{
    TakeMarksUpTo(token.span.begin);
    SNestingEvent event;
    event.kind = SNestingEvent::Open;
    event.span = token.span;
    const bool isWhole = TakeInside(token.span);
    const std::wstring_view held = HeldTag(token, *m_places);
    if (!isWhole || token.unfinished || !held.empty() || IsCode(m_places->Text(), token.span.begin)) {
        event.kind = isWhole && IsEasy(token, held, *m_places) ? SNestingEvent::Unknown : SNestingEvent::Torn;
        m_events.push_back(event);
        return;
    }
    if (token.kind == EHtmlTokenKind::EndTag)
        event.kind = SNestingEvent::Close;
    event.xmlish = m_lastIsBare && event.kind == SNestingEvent::Close;
    m_lastIsBare = event.kind == SNestingEvent::Open && token.attributes.empty();
    event.name = token.name;
    event.selfClosing = token.selfClosing;
    event.dynamic = m_places->IsTouched(token.name);
    event.indent = IndentOf(token.span.begin);
    const auto [known, isNew] =
        m_names.try_emplace(Base::CCommonString::LowerCaseFast(m_places->Text(token.name)));
    if (isNew && !event.dynamic)
        known->second = ElementFlags(known->first);
    event.lower = &known->first;
    event.flags = known->second;
    m_events.push_back(event);
}

void CNestingEvents::End()
{
    TakeMarksUpTo(static_cast<std::size_t>(-1));
}

bool CNestingEvents::TakeInside(SMarkupSpan tag)
{
    const auto& marks = m_flow.marks;
    std::size_t depth = 0;
    std::uint32_t next = m_nextMark;
    for (; next < marks.size() && marks[next].offset < tag.end; ++next) {
        if (marks[next].kind == SFlowMark::StatementBegin || marks[next].kind == SFlowMark::ScopeBegin)
            ++depth;
        else if (depth == 0)
            return marks[next].kind == SFlowMark::Exit;
        else if (marks[next].kind == SFlowMark::StatementEnd || marks[next].kind == SFlowMark::ScopeEnd)
            --depth;
    }
    if (depth > 0)
        return false;
    m_nextMark = next;
    return true;
}

void CNestingEvents::TakeMarksUpTo(std::size_t offset)
{
    const auto& marks = m_flow.marks;
    for (; m_nextMark < marks.size() && marks[m_nextMark].offset <= offset; ++m_nextMark) {
        SNestingEvent event;
        event.kind = SNestingEvent::Flow;
        event.mark = m_nextMark;
        m_events.push_back(event);
    }
}

std::int32_t CNestingEvents::IndentOf(std::size_t begin) const
{
    const std::wstring_view text = m_places->Written();
    const std::size_t line = begin == 0 ? 0 : text.find_last_not_of(L" \t", begin - 1) + 1;
    return line == 0 || text[line - 1] == L'\n' ? WidthOf(text.substr(line, begin - line))
                                                : SNestingEvent::NoIndent;
}

std::int32_t WidthOf(std::wstring_view blanks)
{
    constexpr std::int32_t Tab = 4;
    return std::accumulate(blanks.begin(), blanks.end(), 0,
                           [](std::int32_t width, wchar_t c) { return width + (c == L'\t' ? Tab : 1); });
}

} // namespace Kesh::CodeAnalyzer
