#include "Styles/StyleChecker.h"

#include "Styles/StyleTables.h"
#include "Styles/VendorNames.h"

#include <algorithm>

namespace Kesh::CodeAnalyzer {

using StyleTables::NoSyntax;

namespace {

// What these hold are no properties.
constexpr std::string_view WithDescriptors[] = {
    "font-face", "property", "counter-style", "view-transition", "font-palette-values", "color-profile"};

std::int32_t CodeOf(const SBlockFault& fault, const CStyleText& text)
{
    switch (fault.kind) {
    case SBlockFault::NotClosed:
        return text.Is(fault.at, EStyleTokenKind::CurlyOpen) ? Code::StyleBlockNotClosed
                                                             : Code::StyleBracketNotClosed;
    case SBlockFault::MissingClose: return Code::MissingStyleCloseBrace;
    case SBlockFault::MissingOpen: return Code::MissingStyleBrace;
    case SBlockFault::Stray: return Code::StrayStyleBracket;
    case SBlockFault::Outside: break;
    }
    return Code::DeclarationOutside;
}

} // namespace

CStyleChecker::CStyleChecker(CMarkupReport& report)
    : m_report(report),
      m_findings(report, m_text),
      m_values(m_text, m_findings),
      m_selectors(m_text, m_findings),
      m_conditions(m_text, m_findings, m_values),
      m_atRules(m_text, m_findings, m_conditions, m_selectors),
      m_repeats(m_text, m_findings)
{
}

void CStyleChecker::Begin(SyntaxParser::EStyleKind kind, SMarkupSpan whole)
{
    m_kind = kind;
    m_isForeign = false;
    m_text.Begin(m_report.Places(), whole);
}

void CStyleChecker::End()
{
    if (IsTemplate())
        return;
    const std::size_t before = m_report.Count();
    if (!CheckTokens())
        return;
    const SBlocks blocks = CBlockFinder(m_text, m_kind).Find();
    ReportFaults(blocks);
    for (const TTokenIndex token : blocks.hidden)
        m_text.Hide(token);
    m_values.Begin(blocks);
    m_selectors.Begin(blocks);
    m_conditions.Begin(blocks);
    m_atRules.Begin(blocks);
    m_repeats.Begin();
    m_rules.clear();
    CStyleReader(m_text, blocks, m_findings, *this).Read(m_kind);
    if (m_isForeign)
        m_report.Forget(before);
}

// Whether a template of a script stands in an attribute, as in "{{ width }}" and "<# if #>".
bool CStyleChecker::IsTemplate() const
{
    const std::wstring_view text = m_text.Places().Text(m_text.Whole());
    if (m_kind != SyntaxParser::EStyleKind::Attribute)
        return false;
    for (const std::wstring_view mark : {L"{{", L"<#", L"<%", L"${", L"{%"})
        if (text.find(mark) != std::wstring_view::npos)
            return true;
    return false;
}

// Tokens that are wrong in themselves. False: what follows cannot be made out.
bool CStyleChecker::CheckTokens()
{
    for (TTokenIndex i = 0; i < m_text.Size(); ++i) {
        const SStyleToken& token = m_text[i];
        if (token.kind != EStyleTokenKind::Comment && m_text.IsTouched(i))
            continue; // PHP may print the end, and more
        switch (token.kind) {
        case EStyleTokenKind::Comment:
            if (token.unfinished)
                m_findings.Report(Code::StyleCommentNotClosed, i, {},
                                  {{}, {}, {ClosedOnItsLine(token.span, L" */")}});
            break;
        case EStyleTokenKind::String:
            if (token.unfinished && ReportString(i))
                return false;
            break;
        case EStyleTokenKind::BadString:
            if (ReportString(i))
                return false;
            break;
        case EStyleTokenKind::Url:
        case EStyleTokenKind::BadUrl:
            if ((token.unfinished || token.kind == EStyleTokenKind::BadUrl) && ReportUrl(i))
                return false;
            break;
        default: break;
        }
    }
    return true;
}

// Where a whole sheet is one line, the quote is lost where a string first holds the braces of rules; what
// follows is inside out.
bool CStyleChecker::ReportString(TTokenIndex token)
{
    TTokenIndex guilty = token;
    for (TTokenIndex i = token; i-- > 0 && !(m_text.IsBlank(i) && m_text.HasNewline(i));)
        if (m_text.Is(i, EStyleTokenKind::String) &&
            m_text.Text(i).find_first_of(L"{}") != std::wstring_view::npos &&
            m_text.Text(i).find(L"data:") == std::wstring_view::npos)
            guilty = i;
    SDetails details;
    if (guilty == token)
        details.fixes.push_back(
            ClosedOnItsLine(m_text[token].span, std::wstring(1, m_text.Text(token).front())));
    m_findings.Report(Code::StyleStringNotClosed, guilty, {}, std::move(details));
    return guilty != token;
}

// True: it has swallowed blocks.
bool CStyleChecker::ReportUrl(TTokenIndex token)
{
    const SMarkupSpan span = m_text[token].span;
    const std::wstring_view text = m_text.Text(token);
    const std::size_t begin = text.find(L'(') + 1;
    SDetails details;
    if (text.ends_with(L')') && text.find_first_of(L"\"'\\(\n", begin) == std::wstring_view::npos)
        details.fixes.push_back(
            m_report.Fix(EFix::Replace, {span.begin + begin, span.end - 1},
                         L'"' + std::wstring(text.substr(begin, text.size() - begin - 1)) + L'"'));
    m_findings.Report(Code::BadStyleUrl, token, {}, std::move(details));
    return text.find_first_of(L"{}") != std::wstring_view::npos;
}

// Closes what goes on too far at the end of the line on which it begins, before what ends a declaration.
SFix CStyleChecker::ClosedOnItsLine(SMarkupSpan span, std::wstring with) const
{
    const std::wstring_view text = m_text.Places().Text(span);
    const std::size_t line = std::min(text.find(L'\n'), text.size());
    const bool isComment = text.starts_with(L"/*");
    const std::size_t last =
        text.substr(0, line).find_last_not_of(isComment ? std::wstring_view(L" \t\r") : L" \t\r;}");
    const std::size_t end = span.begin + (last == std::wstring_view::npos ? 1 : last + 1);
    return m_report.Fix(EFix::Insert, {end, end}, std::move(with));
}

// Closes a bracket or block that is open to the end.
SFix CStyleChecker::Closed(TTokenIndex open) const
{
    TTokenIndex end = m_text.Size();
    const wchar_t* close = L"}";
    if (!m_text.Is(open, EStyleTokenKind::CurlyOpen)) {
        close = m_text.Is(open, EStyleTokenKind::SquareOpen) ? L"]" : L")";
        end = open + 1;
        while (end < m_text.Size() && !m_text.Is(end, EStyleTokenKind::Semicolon) &&
               !m_text.Is(end, EStyleTokenKind::CurlyClose) && !m_text.Is(end, EStyleTokenKind::CurlyOpen))
            ++end;
    }
    const std::size_t place = m_text.EndBefore(end).end;
    return m_report.Fix(EFix::Insert, {place, place}, close);
}

void CStyleChecker::ReportFaults(const SBlocks& blocks)
{
    for (const SBlockFault& fault : blocks.faults) {
        const std::int32_t code = CodeOf(fault, m_text);
        if (fault.kind == SBlockFault::MissingOpen) {
            m_findings.Missing(code, fault.at, L" {");
        } else if (fault.kind == SBlockFault::MissingClose) {
            SDetails details;
            details.related.push_back(m_report.Related(m_text[fault.related].span, "The block begins here"));
            m_findings.Missing(code, fault.at, L"\n}", {}, std::move(details));
        } else if (fault.kind == SBlockFault::Stray) {
            m_findings.Report(code, fault.at, {}, {{}, {}, {m_findings.Remove({fault.at, fault.at + 1})}});
        } else if (fault.kind == SBlockFault::NotClosed) {
            m_findings.Report(code, fault.at, {}, {{}, {}, {Closed(fault.at)}});
        } else {
            m_findings.Report(code, fault.at);
        }
    }
}

void CStyleChecker::BeginRule(const SStyleRule& rule)
{
    if (!rule.name.empty()) {
        m_atRules.Check(rule);
    } else {
        m_atRules.NoteRule();
        if (!rule.isFaulty && rule.parent == EBlock::Keyframes)
            m_selectors.CheckKeyframes(rule.prelude);
        else if (!rule.isFaulty && rule.hasBlock)
            m_selectors.CheckList(rule.prelude, rule.isNested);
    }
    if (!rule.hasBlock)
        return;
    CheckBlock(rule);
    m_rules.push_back(rule.name);
    m_repeats.BeginBlock();
}

void CStyleChecker::CheckBlock(const SStyleRule& rule)
{
    const TTokenIndex open = m_text.SkipBlanks(std::max(rule.prelude.end, rule.begin + !rule.name.empty()));
    if (!m_text.Is(open, EStyleTokenKind::CurlyOpen) || rule.isFaulty)
        return;
    const TTokenIndex next = open + 1 + m_text.Is(open + 1, EStyleTokenKind::Space);
    if (m_text.Is(next, EStyleTokenKind::CurlyClose))
        m_findings.Report(Code::EmptyStyleBlock, {open, next + 1}, {},
                          {{}, {}, {m_findings.Remove({rule.begin, next + 1})}});
}

void CStyleChecker::EndRule()
{
    m_rules.pop_back();
    m_repeats.EndBlock();
}

void CStyleChecker::Declare(const SStyleDeclaration& declaration)
{
    m_repeats.Declare(declaration);
    if (declaration.isFaulty || declaration.isHack || m_text.IsTouched(declaration.name))
        return;
    const STokens whole{declaration.name, std::max(declaration.value.end, declaration.name + 1)};
    // Where PHP stands in it, equal texts may say different things.
    if (m_text.IsTouched(whole)) {
        Judge(declaration);
        return;
    }
    const std::string_view rule = m_rules.empty() ? std::string_view() : m_rules.back();
    if (m_right->Contains(rule, m_text.Places().Text(m_text.SpanOf(whole))))
        return;
    const std::size_t before = m_report.Count();
    Judge(declaration);
    if (m_report.Count() == before)
        m_right->Add();
}

void CStyleChecker::Judge(const SStyleDeclaration& declaration)
{
    const std::string name = m_text.NameOf(declaration.name);
    if (name.starts_with("--")) {
        m_values.CheckCustom(declaration.name, declaration.value);
        return;
    }
    if (name.starts_with("mso-") || (name.find("filter") != std::string::npos && IsOldFilter(declaration)))
        return;
    m_values.CheckDeclaration(declaration, SyntaxOf(declaration, name));
}

// Whether a filter is one of an old browser: "alpha(opacity=50)", "progid:…", "gray". Those of the standard
// are functions of lengths and numbers.
bool CStyleChecker::IsOldFilter(const SStyleDeclaration& declaration) const
{
    static constexpr std::string_view Functions[] = {"blur",      "brightness", "contrast", "drop-shadow",
                                                     "grayscale", "hue-rotate", "invert",   "opacity",
                                                     "saturate",  "sepia"};
    const STokens value = declaration.value;
    const std::wstring_view text = m_text.Places().Text(m_text.SpanOf(value));
    if (text.find_first_of(L"=:\\") != std::wstring_view::npos)
        return true;
    for (TTokenIndex i = value.begin; i < value.end; ++i)
        if (m_text.Is(i, EStyleTokenKind::Function) &&
            std::ranges::find(Functions, m_text.NameOf(i)) != std::end(Functions))
            return false;
    return true;
}

StyleTables::TSyntax CStyleChecker::SyntaxOf(const SStyleDeclaration& declaration, const std::string& name)
{
    if (name.starts_with('-') || name.starts_with('_'))
        return NoSyntax;
    const StyleTables::TSyntax property = StyleTables::FindProperty(name);
    const std::string_view rule = m_rules.empty() ? std::string_view() : m_rules.back();
    if (rule.empty())
        return property;
    if (rule == "viewport" || rule.starts_with('-'))
        return rule.ends_with("keyframes") ? property : NoSyntax;
    const StyleTables::TSyntax descriptor = StyleTables::FindDescriptor('@' + std::string(rule) + '/' + name);
    if (descriptor != NoSyntax || std::ranges::find(WithDescriptors, rule) == std::end(WithDescriptors))
        return descriptor != NoSyntax ? descriptor : property;
    if (property != NoSyntax)
        m_findings.Report(Code::MisplacedProperty, declaration.name, {{"rule", '@' + std::string(rule)}});
    return NoSyntax;
}

} // namespace Kesh::CodeAnalyzer
