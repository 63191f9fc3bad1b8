#include "SyntaxParser/HtmlTagReader.h"

#include "SyntaxParser/HtmlReferences.h"
#include "SyntaxParser/HtmlTags.h"
#include "SyntaxParser/LostQuotes.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace Kesh::SyntaxParser {

namespace {

/// From so many on, names are looked up instead of compared one by one.
constexpr std::size_t ManyAttributes = 12;

std::wstring Lower(std::wstring_view name)
{
    std::wstring lower(name);
    std::ranges::transform(lower, lower.begin(), CHtmlCursor::Lower);
    return lower;
}

bool EndsWord(wchar_t c)
{
    return c == L'>' || c == CHtmlCursor::End || CHtmlCursor::IsSpace(c);
}

} // namespace

const SHtmlToken& CHtmlTagReader::Read()
{
    m_token.kind = m_cursor.Peek(1) == L'/' ? EHtmlTokenKind::EndTag : EHtmlTokenKind::StartTag;
    m_token.span.begin = m_cursor.At();
    m_token.attributes.clear();
    m_token.selfClosing = false;
    m_token.unfinished = false;
    CompareFrom(0);
    m_firstProblem = m_cursor.CountProblems();
    m_cursor.Skip(m_token.kind == EHtmlTokenKind::EndTag ? 2 : 1);
    ReadName();
    while (ReadAttribute()) {
    }
    if (m_cursor.Peek() == L'<')
        RecoverTag();
    else
        Finish();
    return m_token;
}

void CHtmlTagReader::ReadName()
{
    const std::size_t begin = m_cursor.At();
    bool isPlain = true; // so far, no PHP in it
    for (wchar_t c; c = m_cursor.Peek(), c != L'/' && !EndsWord(c) && !IsNextTag(); m_cursor.Skip()) {
        // After a whole name, PHP rather prints attributes than the rest of a longer one.
        if (c == MarkupIsland && std::exchange(isPlain, false) &&
            GetTagFlags(Lower(m_cursor.Text({begin, m_cursor.At()}))) & TagHtml)
            break;
    }
    m_token.name = {begin, m_cursor.At()};
}

// The state before an attribute's name. False at the end of the tag.
bool CHtmlTagReader::ReadAttribute()
{
    m_cursor.SkipSpaces();
    switch (m_cursor.Peek()) {
    case L'/': ReadSolidus(); return true;
    case L'>':
    case CHtmlCursor::End: return false;
    default:
        if (IsNextTag())
            return false;
    }
    SHtmlAttribute attribute;
    ReadAttributeName(attribute);
    attribute.span = attribute.value = {attribute.name.begin, attribute.name.end};
    attribute.value.begin = attribute.value.end;
    const std::size_t end = m_cursor.At();
    m_cursor.SkipSpaces();
    if (m_cursor.Peek() == L'=') {
        m_cursor.Skip();
        ReadValue(attribute);
    } else {
        m_cursor.MoveTo(end);
    }
    m_token.attributes.push_back(attribute);
    return true;
}

void CHtmlTagReader::ReadAttributeName(SHtmlAttribute& attribute)
{
    const std::size_t begin = m_cursor.At();
    if (m_cursor.Peek() == L'=') {
        m_cursor.Report(EHtmlProblem::UnexpectedEqualsSignBeforeAttributeName);
        m_cursor.Skip();
    }
    for (wchar_t c; c = m_cursor.Peek(), c != L'=' && c != L'/' && !EndsWord(c) && !IsNextTag();
         m_cursor.Skip())
        if (c == L'"' || c == L'\'' || c == L'<')
            m_cursor.Report(EHtmlProblem::UnexpectedCharacterInAttributeName);
    attribute.name = {begin, m_cursor.At()};
    CheckName(attribute);
}

void CHtmlTagReader::ReadValue(SHtmlAttribute& attribute)
{
    attribute.hasValue = true;
    m_cursor.SkipSpaces();
    const wchar_t c = m_cursor.Peek();
    if (c == L'>')
        m_cursor.Report(EHtmlProblem::MissingAttributeValue);
    if (c == L'"' || c == L'\'')
        ReadQuoted(attribute);
    else
        ReadBare(attribute);
}

void CHtmlTagReader::ReadQuoted(SHtmlAttribute& attribute)
{
    const std::size_t firstProblem = m_cursor.CountProblems();
    const wchar_t stops[] = {m_cursor.Peek(), L'&', L'<'};
    m_cursor.Skip();
    attribute.value.begin = m_cursor.At();
    for (;;) {
        m_cursor.SkipTo(std::wstring_view(stops, std::size(stops)));
        if (m_cursor.Peek() == L'&')
            ReadHtmlReference(m_cursor, true);
        else if (m_cursor.Peek() == L'<')
            SkipInValue();
        else
            break;
    }
    attribute.value.end = attribute.span.end = m_cursor.At();
    if ((m_recovers && RecoverValue(attribute, firstProblem)) || m_cursor.IsAtEnd())
        return;
    m_cursor.Skip();
    attribute.span.end = m_cursor.At();
    CheckAfterQuoted();
}

// A "<" in a value. Tags of template engines are replaced before browsers see their quotes.
void CHtmlTagReader::SkipInValue()
{
    std::size_t ahead = m_cursor.Peek(1) == L'/' ? 2 : 1;
    const std::size_t name = ahead;
    while (CHtmlCursor::IsLetter(m_cursor.Peek(ahead)))
        ++ahead;
    const bool isPrefixed =
        ahead > name && m_cursor.Peek(ahead) == L':' && CHtmlCursor::IsLetter(m_cursor.Peek(ahead + 1));
    m_cursor.Skip();
    if (!m_recovers || !isPrefixed)
        return;
    const std::size_t begin = m_cursor.At();
    m_cursor.SkipTo(L"<>");
    if (m_cursor.Peek() != L'>')
        m_cursor.MoveTo(begin);
}

void CHtmlTagReader::ReadBare(SHtmlAttribute& attribute)
{
    attribute.value.begin = m_cursor.At();
    for (wchar_t c; c = m_cursor.Peek(), !EndsWord(c) && !IsNextTag();) {
        if (c == L'&') {
            ReadHtmlReference(m_cursor, true);
            continue;
        }
        if (c == L'"' || c == L'\'' || c == L'<' || c == L'=' || c == L'`')
            m_cursor.Report(EHtmlProblem::UnexpectedCharacterInUnquotedAttributeValue);
        m_cursor.Skip();
    }
    attribute.value.end = attribute.span.end = m_cursor.At();
}

void CHtmlTagReader::CheckAfterQuoted()
{
    const wchar_t c = m_cursor.Peek();
    if (!CHtmlCursor::IsSpace(c) && c != L'/' && c != L'>' && c != MarkupIsland && !m_cursor.IsAtEnd() &&
        !IsNextTag())
        m_cursor.Report(EHtmlProblem::MissingWhitespaceBetweenAttributes);
}

// Whether what comes next can only be another tag, or a comment.
bool CHtmlTagReader::IsNextTag() const
{
    const wchar_t next = m_cursor.Peek(1);
    return m_recovers && m_cursor.Peek() == L'<' &&
           (CHtmlCursor::IsLetter(next) || next == L'/' || next == L'!' || next == MarkupIsland);
}

// The cursor stands at the quote that ends the value.
bool CHtmlTagReader::RecoverValue(SHtmlAttribute& attribute, std::size_t firstProblem)
{
    const std::wstring_view value = m_cursor.Text(attribute.value);
    const std::size_t end = FindLostQuote(value, m_cursor.Peek(1), m_cursor.IsAtEnd());
    if (end == std::wstring_view::npos)
        return false;
    m_cursor.KeepProblems(firstProblem);
    attribute.value.end = attribute.span.end = attribute.value.begin + end;
    m_cursor.MoveTo(attribute.value.end);
    m_lostQuote = attribute.name.begin;
    m_cursor.Report(EHtmlProblem::UnclosedAttributeValue, {attribute.value.begin - 1, attribute.value.end});
    return true;
}

void CHtmlTagReader::RecoverTag()
{
    m_cursor.KeepProblems(m_firstProblem);
    m_token.span.end = m_cursor.At();
    m_token.unfinished = true;
    const std::size_t end =
        m_token.attributes.empty() ? m_token.name.end : m_token.attributes.back().span.end;
    if (!MayIslandClose())
        m_cursor.Report(EHtmlProblem::UnclosedTag, {m_token.span.begin, end});
}

// Whether PHP between the attributes may have printed the ">", as a piece of a string that ends with one:
// after it there is only what may be text.
bool CHtmlTagReader::MayIslandClose() const
{
    const auto mayPrintEnd = [this](SMarkupSpan part) {
        const std::wstring_view php = m_cursor.Written(part);
        return m_cursor.Text(part).find(MarkupIsland) != std::wstring_view::npos &&
               (php.find(L">'") != std::wstring_view::npos || php.find(L">\"") != std::wstring_view::npos);
    };
    if (mayPrintEnd(m_token.name))
        return true;
    for (auto attribute = m_token.attributes.rbegin(); attribute != m_token.attributes.rend(); ++attribute) {
        if (mayPrintEnd(attribute->name))
            return true;
        if (attribute->hasValue)
            return false;
    }
    return false;
}

void CHtmlTagReader::ReadSolidus()
{
    m_cursor.Skip();
    if (m_cursor.Peek() == L'>')
        m_token.selfClosing = true;
    else if (m_cursor.Peek() != MarkupIsland && !m_cursor.IsAtEnd())
        m_cursor.Report(EHtmlProblem::UnexpectedSolidusInTag, {m_cursor.At() - 1, m_cursor.At()});
}

// An island may be the condition under which the attributes that follow stand there at all.
void CHtmlTagReader::CheckName(const SHtmlAttribute& attribute)
{
    if (m_cursor.Text(attribute.name).find(MarkupIsland) != std::wstring_view::npos) {
        CompareFrom(m_token.attributes.size() + 1);
    } else if (IsEqualToEarlier(attribute.name)) {
        m_cursor.Report(EHtmlProblem::DuplicateAttribute, attribute.name);
    }
}

bool CHtmlTagReader::IsEqualToEarlier(SMarkupSpan name)
{
    const auto begin = m_token.attributes.begin() + static_cast<std::ptrdiff_t>(m_comparable);
    const auto end = m_token.attributes.end();
    if (end - begin < static_cast<std::ptrdiff_t>(ManyAttributes))
        return std::any_of(begin, end, [&](const SHtmlAttribute& earlier) {
            return std::ranges::equal(m_cursor.Text(earlier.name), m_cursor.Text(name), {},
                                      CHtmlCursor::Lower, CHtmlCursor::Lower);
        });
    if (m_names.empty())
        std::for_each(begin, end, [&](const SHtmlAttribute& earlier) {
            m_names.insert(Lower(m_cursor.Text(earlier.name)));
        });
    return !m_names.insert(Lower(m_cursor.Text(name))).second;
}

void CHtmlTagReader::CompareFrom(std::size_t attribute)
{
    m_comparable = attribute;
    m_names.clear();
}

// PHP at the end may have printed more.
void CHtmlTagReader::ReportEnd()
{
    const bool isQuoteLost =
        !m_token.attributes.empty() && m_lostQuote == m_token.attributes.back().span.begin;
    if (!isQuoteLost && !m_cursor.Text(m_token.span).ends_with(MarkupIsland))
        m_cursor.Report(EHtmlProblem::EofInTag, m_token.span);
}

void CHtmlTagReader::Finish()
{
    m_token.unfinished = m_cursor.IsAtEnd();
    m_cursor.Skip(m_token.unfinished ? 0 : 1);
    m_token.span.end = m_cursor.At();
    if (m_token.unfinished) {
        ReportEnd();
        return;
    }
    if (m_token.kind == EHtmlTokenKind::StartTag)
        return;
    if (!m_token.attributes.empty() && !std::ranges::all_of(m_token.attributes, [&](const SHtmlAttribute& a) {
            return m_cursor.Text(a.name).find(MarkupIsland) != std::wstring_view::npos;
        }))
        m_cursor.Report(EHtmlProblem::EndTagWithAttributes,
                        {m_token.attributes.front().span.begin, m_token.span.end - 1});
    if (m_token.selfClosing)
        m_cursor.Report(EHtmlProblem::EndTagWithTrailingSolidus, {m_token.span.end - 2, m_token.span.end});
}

} // namespace Kesh::SyntaxParser
