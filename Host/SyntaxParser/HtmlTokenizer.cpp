#include "SyntaxParser/HtmlTokenizer.h"

#include "SyntaxParser/HtmlDeclarations.h"
#include "SyntaxParser/HtmlRawText.h"
#include "SyntaxParser/HtmlReferences.h"
#include "SyntaxParser/HtmlTags.h"

#include <algorithm>

namespace Kesh::SyntaxParser {

namespace {

/// How many characters to read before asking again whether anybody wants the rest.
constexpr std::size_t CheckEvery = 4096;

constexpr wchar_t TextStops[] = {L'<', L'&', MarkupIsland, L'\0'};

std::wstring LowerName(std::wstring_view name)
{
    std::wstring lower(name);
    std::ranges::transform(lower, lower.begin(), CHtmlCursor::Lower);
    return lower;
}

bool EqualsIgnoringCase(std::wstring_view text, std::wstring_view lower)
{
    return std::ranges::equal(text, lower, {}, CHtmlCursor::Lower);
}

bool BeginsName(wchar_t c)
{
    return CHtmlCursor::IsLetter(c) || c == MarkupIsland;
}

} // namespace

void CHtmlTokenizer::Run()
{
    while (!m_cursor.IsAtEnd() && !IsCancelled()) {
        m_cursor.SkipTo(TextStops);
        switch (m_cursor.Peek()) {
        case L'<': ReadLessThan(); break;
        case L'&': ReadHtmlReference(m_cursor, false); break;
        case MarkupIsland: ReadIsland(); break;
        default: break;
        }
    }
    EndText();
}

bool CHtmlTokenizer::IsCancelled()
{
    if (m_cursor.At() < m_nextCheck)
        return false;
    m_nextCheck = m_cursor.At() + CheckEvery;
    return m_places.IsCancelled();
}

void CHtmlTokenizer::ReadIsland()
{
    if (!m_isInStyle) // which is one sheet, with whatever PHP in it
        EndText();
    const std::size_t begin = m_cursor.At();
    m_cursor.SkipAll(MarkupIsland);
    if (m_isInStyle)
        return;
    EmitText(EHtmlTokenKind::Island, {begin, m_cursor.At()});
}

// The state after "<".
void CHtmlTokenizer::ReadLessThan()
{
    const wchar_t next = m_cursor.Peek(1);
    if (BeginsName(next))
        ReadTag();
    else if (next == L'/')
        ReadEndTagOpen();
    else if (next == L'!')
        ReadDeclaration();
    else if (next == L'?') {
        EndText();
        m_cursor.Report(EHtmlProblem::UnexpectedQuestionMarkInsteadOfTagName,
                        {m_cursor.At() + 1, m_cursor.At() + 2});
        EmitBogus();
    } else {
        m_cursor.Skip();
        m_cursor.Report(m_cursor.IsAtEnd() ? EHtmlProblem::EofBeforeTagName
                                           : EHtmlProblem::InvalidFirstCharacterOfTagName);
    }
}

void CHtmlTokenizer::ReadEndTagOpen()
{
    const wchar_t next = m_cursor.Peek(2);
    if (BeginsName(next)) {
        ReadTag();
        return;
    }
    const std::size_t place = m_cursor.At() + 2;
    if (place == m_cursor.Size()) {
        m_cursor.Skip(2);
        m_cursor.Report(EHtmlProblem::EofBeforeTagName);
        return;
    }
    EndText();
    m_cursor.Report(next == L'>' ? EHtmlProblem::MissingEndTagName
                                 : EHtmlProblem::InvalidFirstCharacterOfTagName,
                    {place, place + 1});
    EmitBogus();
}

void CHtmlTokenizer::ReadDeclaration()
{
    EndText();
    if (m_cursor.IsNext(L"<!--"))
        Emit(ReadHtmlComment(m_cursor));
    else if (m_cursor.IsNext(L"<!doctype"))
        Emit(ReadHtmlDoctype(m_cursor));
    else if (m_places.Text().substr(m_cursor.At()).starts_with(L"<![CDATA[")) {
        if (m_foreign.TakesCData()) {
            const SHtmlToken section = ReadHtmlCData(m_cursor);
            if (m_isInStyle)
                m_style(EStyleKind::Element,
                        {section.span.begin + 9, section.span.end - (section.unfinished ? 0 : 3)});
            Emit(section);
            return;
        }
        m_cursor.Report(EHtmlProblem::CdataInHtmlContent, {m_cursor.At(), m_cursor.At() + 9});
        EmitBogus();
    } else {
        if (m_cursor.Peek(2) != MarkupIsland)
            m_cursor.Report(EHtmlProblem::IncorrectlyOpenedComment, {m_cursor.At(), m_cursor.At() + 2});
        EmitBogus();
    }
}

void CHtmlTokenizer::ReadTag()
{
    EndText();
    const SHtmlToken& tag = m_tags.Read();
    m_isInStyle = false;
    if (tag.kind == EHtmlTokenKind::EndTag) {
        m_foreign.Close(LowerName(m_cursor.Text(tag.name)));
        Emit(tag);
    } else {
        OpenElement(tag);
    }
}

void CHtmlTokenizer::OpenElement(const SHtmlToken& tag)
{
    std::wstring_view written = m_cursor.Text(tag.name);
    const std::wstring name = LowerName(written);
    const bool isStyledFont =
        name == L"font" && (Find(tag, L"color") || Find(tag, L"face") || Find(tag, L"size"));
    const bool isForeign = m_foreign.Open(name, tag.selfClosing, isStyledFont);
    if (!isForeign)
        ReportSolidus(tag, name);
    EmitStyleAttributes(tag);
    Emit(tag);
    if (m_cursor.IsAtEnd())
        return;
    if (isForeign)
        m_isInStyle = name == L"style" && !tag.selfClosing;
    else if (GetTagFlags(name) & TagRaw || name == L"plaintext")
        ReadRawText(tag, name);
}

void CHtmlTokenizer::ReadRawText(const SHtmlToken& tag, const std::wstring& name)
{
    const bool isSheet = name == L"style" && IsStyleSheet(tag);
    const std::size_t begin = m_cursor.At();
    SkipHtmlRawText(m_cursor, name);
    m_textBegin = m_cursor.At();
    if (begin == m_cursor.At())
        return;
    const SMarkupSpan content{begin, m_cursor.At()};
    if (isSheet)
        m_style(EStyleKind::Element, content);
    EmitText(EHtmlTokenKind::Text, content);
}

void CHtmlTokenizer::ReportSolidus(const SHtmlToken& tag, const std::wstring& name)
{
    if (tag.selfClosing && !(GetTagFlags(name) & TagVoid) && name.find(MarkupIsland) == std::wstring::npos)
        m_cursor.Report(EHtmlProblem::NonVoidHtmlElementStartTagWithTrailingSolidus,
                        {tag.span.end - 2, tag.span.end});
}

// A value with character references is not written as its style is.
void CHtmlTokenizer::EmitStyleAttributes(const SHtmlToken& tag)
{
    for (const SHtmlAttribute& attribute : tag.attributes)
        if (!attribute.value.IsEmpty() && EqualsIgnoringCase(m_cursor.Text(attribute.name), L"style") &&
            m_cursor.Text(attribute.value).find(L'&') == std::wstring_view::npos)
            m_style(EStyleKind::Attribute, attribute.value);
}

const SHtmlAttribute* CHtmlTokenizer::Find(const SHtmlToken& tag, std::wstring_view name) const
{
    const auto found = std::ranges::find_if(tag.attributes, [&](const SHtmlAttribute& attribute) {
        return EqualsIgnoringCase(m_cursor.Text(attribute.name), name);
    });
    return found == tag.attributes.end() ? nullptr : &*found;
}

bool CHtmlTokenizer::IsStyleSheet(const SHtmlToken& tag) const
{
    const SHtmlAttribute* type = Find(tag, L"type");
    return !type || type->value.IsEmpty() || m_places.IsTouched(type->value) ||
           EqualsIgnoringCase(m_cursor.Text(type->value), L"text/css");
}

void CHtmlTokenizer::EndText()
{
    if (m_textBegin == m_cursor.At())
        return;
    const SMarkupSpan text{m_textBegin, m_cursor.At()};
    if (m_isInStyle)
        m_style(EStyleKind::Element, text);
    EmitText(EHtmlTokenKind::Text, text);
}

void CHtmlTokenizer::EmitText(EHtmlTokenKind kind, SMarkupSpan span)
{
    SHtmlToken token;
    token.kind = kind;
    token.span = span;
    Emit(token);
}

void CHtmlTokenizer::EmitBogus()
{
    Emit(ReadBogusComment(m_cursor));
}

void CHtmlTokenizer::Emit(const SHtmlToken& token)
{
    if (token.kind != EHtmlTokenKind::Island) // most of most files, and none of HTML's business
        m_cursor.ReportCharacters(token.span.begin, token.kind == EHtmlTokenKind::CData);
    EmitProblems();
    m_sink.AddHtml(token);
    m_textBegin = token.span.end;
}

void CHtmlTokenizer::EmitProblems()
{
    std::vector<SHtmlProblem>& problems = m_cursor.Problems();
    for (const SHtmlProblem& problem : problems)
        m_sink.AddProblem(problem.problem, problem.span);
    problems.clear();
}

} // namespace Kesh::SyntaxParser
