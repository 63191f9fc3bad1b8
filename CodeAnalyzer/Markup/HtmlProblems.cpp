#include "Markup/HtmlProblems.h"

#include "Diagnostics/DiagnosticList.h"
#include "Markup/HtmlFacts.h"
#include "Markup/HtmlReferenceNames.h"
#include "Markup/MarkupKind.h"

#include <algorithm>
#include <utility>

namespace Kesh::CodeAnalyzer {

using SyntaxParser::EHtmlProblem;
using SyntaxParser::EHtmlTokenKind;
using SyntaxParser::SHtmlAttribute;
using SyntaxParser::SHtmlToken;
using SyntaxParser::SMarkupSpan;

namespace {

/// What there is to say of a problem that needs no more than its place.
struct SPlain
{
    EHtmlProblem problem;
    std::int32_t code;
    EFix fix = EFix::None;        ///< of the problem's own span
    std::wstring_view text = L""; ///< what then stands there, or, inserted, behind it
};

constexpr SPlain Plain[] = {
    {EHtmlProblem::MissingWhitespaceBetweenAttributes, Code::MissingSpaceInTag},
    {EHtmlProblem::UnexpectedEqualsSignBeforeAttributeName, Code::EqualsBeforeName, EFix::Remove},
    {EHtmlProblem::UnexpectedSolidusInTag, Code::SolidusInTag, EFix::Remove},
    {EHtmlProblem::EndTagWithAttributes, Code::EndTagWithAttributes, EFix::Remove},
    {EHtmlProblem::EndTagWithTrailingSolidus, Code::EndTagWithSolidus, EFix::Remove, L">"},
    {EHtmlProblem::EofInTag, Code::EndOfFileInTag, EFix::Insert, L">"},
    {EHtmlProblem::EofBeforeTagName, Code::EndOfFileBeforeTagName},
    {EHtmlProblem::MissingEndTagName, Code::MissingEndTagName},
    {EHtmlProblem::UnexpectedQuestionMarkInsteadOfTagName, Code::QuestionMarkInTag},
    {EHtmlProblem::EofInComment, Code::EndOfFileInComment, EFix::Insert, L"-->"},
    {EHtmlProblem::AbruptClosingOfEmptyComment, Code::AbruptComment, EFix::Replace, L"<!---->"},
    {EHtmlProblem::IncorrectlyClosedComment, Code::BadCommentEnd, EFix::Replace, L"-->"},
    {EHtmlProblem::CdataInHtmlContent, Code::CDataInHtml},
    {EHtmlProblem::EofInCdata, Code::EndOfFileInCData, EFix::Insert, L"]]>"},
    {EHtmlProblem::EofInDoctype, Code::EndOfFileInDoctype, EFix::Insert, L">"},
    {EHtmlProblem::EofInScriptHtmlCommentLikeText, Code::UnclosedCommentInScript, EFix::Insert, L"-->"},
    {EHtmlProblem::UnexpectedNullCharacter, Code::ControlCharacter, EFix::Remove},
    {EHtmlProblem::ControlCharacterInInputStream, Code::ControlCharacter, EFix::Remove},
    {EHtmlProblem::NoncharacterInInputStream, Code::ControlCharacter, EFix::Remove},
    {EHtmlProblem::SurrogateInInputStream, Code::ControlCharacter, EFix::Remove},
};

// Whether a problem says that a tag's parts are not what they seem, so that the tag's next ones say the same.
bool IsOfStructure(EHtmlProblem problem)
{
    switch (problem) {
    case EHtmlProblem::MissingWhitespaceBetweenAttributes:
    case EHtmlProblem::UnexpectedCharacterInAttributeName:
    case EHtmlProblem::UnexpectedCharacterInUnquotedAttributeValue:
    case EHtmlProblem::UnexpectedEqualsSignBeforeAttributeName:
    case EHtmlProblem::UnexpectedSolidusInTag:
    case EHtmlProblem::MissingAttributeValue:
    case EHtmlProblem::DuplicateAttribute: return true;
    default: return false;
    }
}

bool IsOfDoctype(EHtmlProblem problem)
{
    return std::string_view(NameOf(problem)).find("doctype") != std::string_view::npos;
}

const SHtmlAttribute* FindAt(const SHtmlToken& tag, std::size_t place)
{
    const auto found = std::ranges::find_if(tag.attributes, [&](const SHtmlAttribute& attribute) {
        return attribute.span.begin <= place && place <= attribute.span.end;
    });
    return found == tag.attributes.end() ? nullptr : &*found;
}

bool IsNumericReference(EHtmlProblem problem)
{
    return problem == EHtmlProblem::NullCharacterReference ||
           problem == EHtmlProblem::CharacterReferenceOutsideUnicodeRange ||
           problem == EHtmlProblem::SurrogateCharacterReference ||
           problem == EHtmlProblem::NoncharacterCharacterReference ||
           problem == EHtmlProblem::ControlCharacterReference;
}

} // namespace

void CHtmlProblems::Begin()
{
    m_isXml = IsXml(m_report.Places());
    m_hasTags = false;
    m_hasControls = false;
    m_pending.clear();
    m_inText.clear();
}

void CHtmlProblems::AddProblem(EHtmlProblem problem, SMarkupSpan span)
{
    if (!m_isXml)
        m_pending.push_back({problem, span});
}

void CHtmlProblems::AddHtml(const SHtmlToken& token)
{
    const bool isTag = token.kind == EHtmlTokenKind::StartTag || token.kind == EHtmlTokenKind::EndTag;
    m_hasTags = m_hasTags || (isTag && IsHtmlElement(m_report.Places().Text(token.name)));
    bool isStructureLost = false;
    for (const SProblem& problem : std::exchange(m_pending, {})) {
        const bool isOfStructure = IsOfStructure(problem.problem);
        if (isOfStructure && isStructureLost)
            continue;
        isStructureLost =
            isStructureLost || (isOfStructure && problem.problem != EHtmlProblem::DuplicateAttribute);
        Judge(problem, token);
    }
    if (isStructureLost || (isTag && HidesQuotes(token)))
        m_report.Break(token.span);
}

// Whether a template engine's tag or placeholder in a value holds the quote that the value stands in: who
// reads it as plain HTML then takes the rest for attributes.
bool CHtmlProblems::HidesQuotes(const SHtmlToken& tag) const
{
    const auto& places = m_report.Places();
    const std::wstring_view text = places.HasPlaceholders() ? places.Written() : places.Text();
    return std::ranges::any_of(tag.attributes, [&](const SHtmlAttribute& attribute) {
        const bool isQuoted = attribute.hasValue && attribute.value.end < attribute.span.end;
        return isQuoted && text.substr(attribute.value.begin, attribute.value.end - attribute.value.begin)
                                   .find(text[attribute.value.end]) != std::wstring_view::npos;
    });
}

void CHtmlProblems::End()
{
    for (const SProblem& problem : m_inText)
        if (m_hasTags)
            JudgeInText(problem);
}

void CHtmlProblems::Judge(const SProblem& problem, const SHtmlToken& token)
{
    switch (token.kind) {
    case EHtmlTokenKind::Text:
        if (problem.problem != EHtmlProblem::InvalidFirstCharacterOfTagName || !IsPrinted(token.span))
            m_inText.push_back(problem);
        break;
    case EHtmlTokenKind::StartTag:
    case EHtmlTokenKind::EndTag: JudgeInTag(problem, token); break;
    default: JudgeComment(problem, token);
    }
}

// Whether a text is that of a string, which may be a piece of a script that PHP prints.
bool CHtmlProblems::IsPrinted(SMarkupSpan text) const
{
    const std::wstring_view written = m_report.Places().Written();
    return text.begin > 0 && m_report.Places().Text()[text.begin - 1] == SyntaxParser::MarkupIsland &&
           (written[text.begin - 1] == L'"' || written[text.begin - 1] == L'\'');
}

void CHtmlProblems::JudgeInTag(const SProblem& problem, const SHtmlToken& tag)
{
    const SMarkupSpan span = problem.span;
    switch (problem.problem) {
    case EHtmlProblem::UnclosedAttributeValue: AddUnclosedValue(span, tag); break;
    case EHtmlProblem::UnclosedTag: AddUnclosedTag(span, tag); break;
    case EHtmlProblem::DuplicateAttribute: AddDuplicate(span, tag); break;
    case EHtmlProblem::MissingWhitespaceBetweenAttributes:
        Add(Code::MissingSpaceInTag, span, EFix::Insert, {span.begin, span.begin}, L" ");
        break;
    case EHtmlProblem::UnexpectedCharacterInAttributeName: AddCharacterInName(span, tag); break;
    case EHtmlProblem::UnexpectedCharacterInUnquotedAttributeValue: AddUnquoted(span, tag); break;
    case EHtmlProblem::MissingAttributeValue:
        if (const SHtmlAttribute* attribute = FindAt(tag, span.begin))
            m_report.Add(Code::MissingAttributeValue, attribute->span,
                         {{m_report.Source("name", attribute->name)},
                          {},
                          {m_report.Fix(EFix::Remove, {attribute->name.end, span.begin}, L"")}});
        break;
    case EHtmlProblem::NonVoidHtmlElementStartTagWithTrailingSolidus: AddSolidus(span, tag); break;
    default: JudgeInText(problem);
    }
}

void CHtmlProblems::JudgeComment(const SProblem& problem, const SHtmlToken& comment)
{
    const std::wstring_view text = m_report.Places().Text(comment.span);
    if (text.starts_with(L"<?php") || text.starts_with(L"<?="))
        return; // in a string: PHP that writes PHP
    if (IsOfDoctype(problem.problem) && problem.problem != EHtmlProblem::EofInDoctype) {
        m_report.Add(Code::MalformedDoctype, comment.span);
    } else if (problem.problem == EHtmlProblem::NestedComment) {
        const SMarkupSpan start{comment.span.begin, comment.span.begin + 4};
        m_report.Add(Code::NestedComment, problem.span,
                     {{},
                      {m_report.Related(start, "The comment begins here")},
                      {m_report.Fix(EFix::Remove, problem.span, L"")}});
    } else if (!text.starts_with(L"<![if") && !text.starts_with(L"<![endif") && !text.starts_with(L"<?xml")) {
        JudgeInText(problem); // those are old browsers' conditions, and the head of XHTML
    }
}

void CHtmlProblems::JudgeInText(const SProblem& problem)
{
    const SMarkupSpan span = problem.span;
    if (problem.problem == EHtmlProblem::UnknownNamedCharacterReference) {
        AddUnknownReference(span);
    } else if (problem.problem == EHtmlProblem::MissingSemicolonAfterCharacterReference) {
        m_report.Add(
            Code::UnclosedReference, span,
            {{m_report.Source("name", span)}, {}, {m_report.Fix(EFix::Insert, {span.end, span.end}, L";")}});
    } else if (problem.problem == EHtmlProblem::IncorrectlyOpenedComment) {
        AddBadComment(span);
    } else if (problem.problem == EHtmlProblem::AbsenceOfDigitsInNumericCharacterReference) {
        Add(Code::ReferenceWithoutDigits, span, EFix::Replace, {span.begin, span.begin + 1}, L"&amp;");
    } else if (IsNumericReference(problem.problem)) {
        m_report.Add(Code::InvalidReference, span, {{m_report.Source("name", span)}, {}, {}});
    } else if (problem.problem == EHtmlProblem::InvalidFirstCharacterOfTagName) {
        const SMarkupSpan opening{span.begin - 1, span.begin};
        m_report.Add(Code::NoTagName, span,
                     {{m_report.Source("found", span)}, {}, {m_report.Fix(EFix::Replace, opening, L"&lt;")}});
    } else if (const auto* plain = std::ranges::find(Plain, problem.problem, &SPlain::problem);
               plain != std::end(Plain)) {
        // One says it all of a text that is rather bytes.
        if (plain->code == Code::ControlCharacter && std::exchange(m_hasControls, true))
            return;
        if (plain->fix == EFix::None)
            m_report.Add(plain->code, span);
        else if (plain->fix == EFix::Insert)
            Add(plain->code, {span.begin, span.begin + 1}, plain->fix, {span.end, span.end},
                std::wstring(plain->text));
        else
            Add(plain->code, span, plain->fix, span, std::wstring(plain->text));
    }
}

void CHtmlProblems::AddUnclosedValue(SMarkupSpan span, const SHtmlToken& tag)
{
    const SMarkupSpan quote{span.begin, span.begin + 1};
    const std::wstring text(m_report.Places().Text(quote));
    SDetails details{
        {m_report.Source("found", quote)}, {}, {m_report.Fix(EFix::Insert, {span.end, span.end}, text)}};
    if (const SHtmlAttribute* attribute = FindAt(tag, span.begin))
        details.arguments.push_back(m_report.Source("name", attribute->name));
    m_report.Add(Code::UnclosedAttributeValue, quote, std::move(details));
    m_report.Break(tag.span.begin, span.end, text.front());
}

void CHtmlProblems::AddUnclosedTag(SMarkupSpan span, const SHtmlToken& tag)
{
    // What follows the last value may be text that lacks only the ">" before it.
    std::size_t end = tag.name.end;
    for (const SHtmlAttribute& attribute : tag.attributes)
        end = attribute.hasValue ? attribute.span.end : end;
    m_report.Add(Code::UnclosedTag, {span.begin, tag.name.end},
                 {{m_report.Source("name", tag.name)}, {}, {m_report.Fix(EFix::Insert, {end, end}, L">")}});
    m_report.Break(tag.span.begin, tag.span.end, L'>');
}

void CHtmlProblems::AddDuplicate(SMarkupSpan span, const SHtmlToken& tag)
{
    const auto& places = m_report.Places();
    const SHtmlAttribute* second = FindAt(tag, span.begin);
    const auto first = std::ranges::find_if(tag.attributes, [&](const SHtmlAttribute& attribute) {
        return IsEqualIgnoringCase(places.Text(attribute.name), places.Text(span));
    });
    SDetails details{{m_report.Source("name", span)}, {}, {}};
    if (first != tag.attributes.end() && first->name != span)
        details.related.push_back(m_report.Related(first->name, "The first one is here"));
    if (second) {
        const std::size_t begin =
            second->span.begin - (places.Text()[second->span.begin - 1] == L' ' ? 1 : 0);
        details.fixes.push_back(m_report.Fix(EFix::Remove, {begin, second->span.end}, L""));
    }
    m_report.Add(Code::DuplicateAttribute, span, std::move(details));
}

void CHtmlProblems::AddUnquoted(SMarkupSpan span, const SHtmlToken& tag)
{
    const SHtmlAttribute* attribute = FindAt(tag, span.begin);
    SDetails details{{m_report.Source("found", span)}, {}, {}};
    if (attribute) {
        const std::wstring_view value = m_report.Places().Written().substr(
            attribute->value.begin, attribute->value.end - attribute->value.begin);
        if (value.ends_with(L'"') && value.find(L'"') == value.size() - 1)
            details.fixes.push_back(
                m_report.Fix(EFix::Insert, {attribute->value.begin, attribute->value.begin}, L"\""));
        else if (value.find(L'"') == std::wstring_view::npos)
            details.fixes.push_back(
                m_report.Fix(EFix::Insert, attribute->value, L"\"" + std::wstring(value) + L"\""));
    }
    m_report.Add(Code::CharacterInUnquotedValue, span, std::move(details));
}

// Elements of frameworks are closed by what their own compilers take for closed.
void CHtmlProblems::AddSolidus(SMarkupSpan span, const SHtmlToken& tag)
{
    if (!IsHtmlElement(m_report.Places().Text(tag.name)))
        return;
    m_report.Add(Code::SolidusClosesNothing, span,
                 {{m_report.Source("name", tag.name)}, {}, {m_report.Fix(EFix::Remove, span, L">")}});
}

void CHtmlProblems::AddUnknownReference(SMarkupSpan span)
{
    const SMarkupSpan name{span.begin + 1, span.end - 1};
    SDetails details{{m_report.Source("name", span)}, {}, {}};
    const std::wstring nearest = FindNearestReference(m_report.Places().Text(name));
    if (!nearest.empty()) {
        details.arguments.push_back({"nearest", L"&" + nearest + L";"});
        details.fixes.push_back(m_report.Fix(EFix::Rename, name, nearest));
    }
    m_report.Add(Code::UnknownReference, span, std::move(details));
}

// A quote in a name: the "=" before it is lost, or it is too much.
void CHtmlProblems::AddCharacterInName(SMarkupSpan span, const SHtmlToken& tag)
{
    SDetails details{{m_report.Source("found", span)}, {}, {}};
    const SHtmlAttribute* attribute = FindAt(tag, span.begin);
    if (attribute && !m_report.Places().IsTouched(attribute->span)) {
        const std::wstring_view name = m_report.Places().Text(attribute->name);
        const wchar_t quote = m_report.Places().Text(span).front();
        const auto count = std::ranges::count(name, quote);
        if (quote != L'<' && count == 2 && name.ends_with(quote) && span.begin > attribute->name.begin)
            details.fixes.push_back(m_report.Fix(EFix::Insert, {span.begin, span.begin}, L"="));
        else if (quote != L'<' && count == 1)
            details.fixes.push_back(m_report.Fix(EFix::Remove, span, L""));
    }
    m_report.Add(Code::CharacterInAttributeName, span, std::move(details));
}

// "<!-" lacks a dash.
void CHtmlProblems::AddBadComment(SMarkupSpan span)
{
    SDetails details;
    const std::wstring_view text = m_report.Places().Text().substr(span.end);
    if (text.starts_with(L'-') && text.substr(0, text.find(L'>')).ends_with(L"--"))
        details.fixes.push_back(m_report.Fix(EFix::Insert, {span.end, span.end}, L"-"));
    m_report.Add(Code::BadCommentStart, span, std::move(details));
}

void CHtmlProblems::Add(std::int32_t code, SMarkupSpan span, EFix kind, SMarkupSpan place, std::wstring text)
{
    m_report.Add(code, span, {{}, {}, {m_report.Fix(kind, place, std::move(text))}});
}

} // namespace Kesh::CodeAnalyzer
