#include "Markup/HtmlAttributes.h"

#include "Base/CommonString.h"
#include "Base/EditDistance.h"
#include "Diagnostics/DiagnosticList.h"
#include "Markup/AttributeForms.h"
#include "Markup/MarkupKind.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace Kesh::CodeAnalyzer {

using Base::CCommonString;
using SyntaxParser::EHtmlTokenKind;
using SyntaxParser::SHtmlAttribute;
using SyntaxParser::SHtmlToken;
using SyntaxParser::SMarkupSpan;

namespace {

/// These stand in values that scripts fill in, or that are shown as examples.
constexpr std::wstring_view Placeholders = L"{}$%[]#<>*@&'\"+\xFFFD";
constexpr std::wstring_view Spaces = L" \t\r\n\f";
/// Messages name no more keywords than these.
constexpr std::size_t MaxShown = 9;

std::vector<std::wstring> Split(std::string_view keywords)
{
    std::vector<std::wstring> words;
    for (std::size_t begin = 0; begin < keywords.size();) {
        const std::size_t end = std::min(keywords.find(' ', begin), keywords.size());
        words.emplace_back(keywords.begin() + begin, keywords.begin() + end);
        begin = end + 1;
    }
    return words;
}

std::wstring Join(const std::vector<std::wstring>& words)
{
    std::wstring text;
    for (const std::wstring& word : words)
        text += (text.empty() ? L"" : L", ") + word;
    return text;
}

bool IsAmong(const std::vector<std::wstring>& words, std::wstring_view word)
{
    return std::ranges::any_of(words, [&](const std::wstring& w) { return IsEqualIgnoringCase(w, word); });
}

const wchar_t* NameOf(EValueForm form)
{
    switch (form) {
    case EValueForm::Integer: return L"a whole number";
    case EValueForm::Count: return L"a whole number not below 0";
    case EValueForm::Number: return L"a number";
    default: return L"a number of pixels, without a unit";
    }
}

// Whether one slip of the finger, or two in a long word, makes one of the other.
bool IsMistyped(std::wstring_view word, std::wstring_view keyword)
{
    const std::size_t slips = word.size() > 5 ? 2 : 1;
    return !keyword.empty() && word.size() > 3 && Base::EditDistance(word, keyword, slips) <= slips;
}

bool IsNegation(std::wstring_view value)
{
    return IsEqualIgnoringCase(value, L"false") || IsEqualIgnoringCase(value, L"no") ||
           IsEqualIgnoringCase(value, L"off") || value == L"0";
}

} // namespace

void CHtmlAttributes::Begin()
{
    m_isXml = IsXml(m_report.Places());
    m_foreign = 0;
    m_obsolete.clear();
}

void CHtmlAttributes::AddHtml(const SHtmlToken& token)
{
    if (m_isXml || (token.kind != EHtmlTokenKind::StartTag && token.kind != EHtmlTokenKind::EndTag))
        return;
    const std::wstring_view name = m_report.Places().Text(token.name);
    const bool isRoot = IsEqualIgnoringCase(name, L"svg") || IsEqualIgnoringCase(name, L"math");
    if (token.kind == EHtmlTokenKind::EndTag) {
        m_foreign -= isRoot && m_foreign != 0 ? 1 : 0;
        return;
    }
    m_foreign += isRoot && !token.selfClosing ? 1 : 0;
    if (m_foreign != 0 || !IsHtmlElement(name))
        return;
    for (const SHtmlAttribute& attribute : token.attributes)
        Judge(token, attribute);
    AddObsolete(token);
}

void CHtmlAttributes::Judge(const SHtmlToken& tag, const SHtmlAttribute& attribute)
{
    const auto& places = m_report.Places();
    const SValueRule* rule = FindValueRule(places.Text(tag.name), places.Text(attribute.name));
    if (!rule || places.IsTouched(attribute.span) || !attribute.hasValue)
        return;
    const std::wstring_view value = places.Text(attribute.value);
    if (rule->form == EValueForm::Url) {
        JudgeUrl(attribute);
        return;
    }
    if (value.find_first_of(Placeholders) != std::wstring_view::npos)
        return;
    switch (rule->form) {
    case EValueForm::Boolean: JudgeBoolean(attribute); break;
    case EValueForm::Id: JudgeId(attribute); break;
    case EValueForm::Integer:
    case EValueForm::Count:
    case EValueForm::Number:
    case EValueForm::Dimension: JudgeNumber(rule->form, attribute); break;
    case EValueForm::Keywords:
    case EValueForm::NoMistypedKeyword: JudgeKeywords(*rule, attribute); break;
    default: JudgeKeyword(*rule, attribute);
    }
}

void CHtmlAttributes::JudgeKeyword(const SValueRule& rule, const SHtmlAttribute& attribute)
{
    static constexpr SValueRule targets{EValueForm::Keyword, "_blank _self _parent _top"};
    const std::wstring_view value = m_report.Places().Text(attribute.value);
    if (rule.form == EValueForm::Target) {
        if (value.starts_with(L'_') && !IsAmong(Split(targets.keywords), value))
            AddValue(targets, attribute, attribute.value);
        return;
    }
    if (!(value.empty() && rule.form == EValueForm::KeywordOrNothing) &&
        !IsAmong(Split(rule.keywords), value))
        AddValue(rule, attribute, attribute.value);
}

void CHtmlAttributes::JudgeKeywords(const SValueRule& rule, const SHtmlAttribute& attribute)
{
    const std::wstring_view text = m_report.Places().Text();
    const std::vector<std::wstring> known = Split(rule.keywords);
    for (std::size_t begin = attribute.value.begin;;) {
        begin = text.find_first_not_of(Spaces, begin);
        if (begin >= attribute.value.end)
            return;
        const std::size_t end = std::min(text.find_first_of(Spaces, begin), attribute.value.end);
        if (!IsAmong(known, text.substr(begin, end - begin)))
            AddValue(rule, attribute, {begin, end});
        begin = end;
    }
}

void CHtmlAttributes::JudgeBoolean(const SHtmlAttribute& attribute)
{
    const std::wstring_view value = m_report.Places().Text(attribute.value);
    if (value.empty() || IsEqualIgnoringCase(value, m_report.Places().Text(attribute.name)))
        return;
    const bool isNegation = IsNegation(value);
    const SMarkupSpan tooMuch{isNegation ? attribute.span.begin : attribute.name.end, attribute.span.end};
    m_report.Add(Code::InvalidBoolean, isNegation ? SeverityError : SeverityWarning, attribute.value,
                 {{m_report.Source("name", attribute.name), m_report.Source("value", attribute.value)},
                  {},
                  {m_report.Fix(EFix::Remove, tooMuch, L"")}});
}

void CHtmlAttributes::JudgeNumber(EValueForm form, const SHtmlAttribute& attribute)
{
    const std::wstring_view value = CCommonString::Trim(m_report.Places().Text(attribute.value));
    if (IsNumber(value, form))
        return;
    SDetails details{{m_report.Source("name", attribute.name),
                      m_report.Source("value", attribute.value),
                      {"form", NameOf(form), SArgument::Key}},
                     {},
                     {}};
    if (value.ends_with(L"px") && IsNumber(value.substr(0, value.size() - 2), form))
        details.fixes.push_back(
            m_report.Fix(EFix::Remove, attribute.value, std::wstring(value.substr(0, value.size() - 2))));
    m_report.Add(Code::InvalidNumber, attribute.value.IsEmpty() ? attribute.span : attribute.value,
                 std::move(details));
}

void CHtmlAttributes::JudgeId(const SHtmlAttribute& attribute)
{
    const std::wstring_view value = m_report.Places().Text(attribute.value);
    if (!value.empty() && value.find_first_of(Spaces) == std::wstring_view::npos)
        return;
    std::wstring joined(CCommonString::Trim(value));
    std::ranges::replace_if(
        joined, [](wchar_t c) { return Spaces.find(c) != std::wstring_view::npos; }, L'-');
    m_report.Add(Code::InvalidId, value.empty() ? attribute.span : attribute.value,
                 {{m_report.Source("value", attribute.value)},
                  {},
                  {joined.empty() ? m_report.Fix(EFix::Remove, attribute.span, L"")
                                  : m_report.Fix(EFix::Rename, attribute.value, joined)}});
}

void CHtmlAttributes::JudgeUrl(const SHtmlAttribute& attribute)
{
    if (const wchar_t* fault = FindUrlFault(m_report.Places().Text(attribute.value)))
        m_report.Add(
            Code::InvalidUrl, attribute.value,
            {{m_report.Source("value", attribute.value), {"reason", fault, SArgument::Key}}, {}, {}});
}

void CHtmlAttributes::AddValue(const SValueRule& rule, const SHtmlAttribute& attribute, SMarkupSpan word)
{
    const std::wstring value = CCommonString::LowerCaseFast(m_report.Places().Text(word));
    const std::vector<std::wstring> known = Split(rule.keywords);
    Base::CNearestText nearest(value);
    for (const std::wstring& keyword : known)
        nearest.Offer(keyword);
    if (rule.form == EValueForm::NoMistypedKeyword && !IsMistyped(value, nearest.Get()))
        return;
    SDetails details{{m_report.Source("name", attribute.name), m_report.Source("value", word)}, {}, {}};
    if (!nearest.Get().empty()) {
        details.arguments.push_back({"nearest", std::wstring(nearest.Get())});
        details.fixes.push_back(m_report.Fix(EFix::Rename, word, std::wstring(nearest.Get())));
    } else if (known.size() <= MaxShown) {
        details.arguments.push_back({"allowed", Join(known), SArgument::Plain});
    }
    m_report.Add(Code::InvalidAttributeValue, word.IsEmpty() ? attribute.span : word, std::move(details));
}

void CHtmlAttributes::AddObsolete(const SHtmlToken& tag)
{
    const auto& places = m_report.Places();
    const std::wstring_view name = places.Text(tag.name);
    if (IsObsoleteElement(name) && m_obsolete.insert(CCommonString::LowerCaseFast(name)).second)
        m_report.Add(Code::ObsoleteElement, tag.name, {{m_report.Source("name", tag.name)}, {}, {}});
    for (const SHtmlAttribute& attribute : tag.attributes)
        if (IsObsoleteAttribute(name, places.Text(attribute.name)) &&
            m_obsolete.insert(L' ' + CCommonString::LowerCaseFast(places.Text(attribute.name))).second)
            m_report.Add(Code::ObsoleteAttribute, attribute.name,
                         {{m_report.Source("name", attribute.name)}, {}, {}});
}

} // namespace Kesh::CodeAnalyzer
