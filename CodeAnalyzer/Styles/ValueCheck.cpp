#include "Styles/ValueCheck.h"

#include "Styles/ValueHints.h"
#include "Styles/VendorNames.h"

#include <algorithm>

namespace Kesh::CodeAnalyzer {

using StyleTables::NoSyntax;
using StyleTables::TSyntax;

namespace {

// What stands for any value.
constexpr std::string_view Substitutions[] = {"var",      "env",        "attr",  "if",
                                              "inherit",  "expression", "alpha", "toggle",
                                              "constant", "chroma",     "mask",  "theme"};
constexpr std::string_view WideWords[] = {"inherit", "initial",      "unset",
                                          "revert",  "revert-layer", "revert-rule"};

bool Contains(std::span<const std::string_view> names, std::string_view name)
{
    return std::ranges::find(names, name) != names.end();
}

bool IsSign(const SValuePart& part, std::wstring_view signs)
{
    return part.kind == SValuePart::Sign && signs.find(part.sign) != std::wstring_view::npos;
}

} // namespace

void CValueCheck::CheckDeclaration(const SStyleDeclaration& declaration, TSyntax syntax)
{
    STokens value = declaration.value;
    if (value.IsEmpty()) {
        m_findings.Report(Code::StyleValueMissing, declaration.name);
        return;
    }
    if (!StripImportant(declaration, value) || !CheckUnits(value) || m_text.IsTouched(value) ||
        !CheckCommas(value))
        return;
    const std::string property = m_text.NameOf(declaration.name);
    const bool isVendor = syntax == NoSyntax && property[0] == '-';
    if (isVendor && !CheckFunctions(property, value, SeverityError))
        return;
    if (IsUnjudged(value)) {
        CheckFunctions(property, value, SeverityError);
        return;
    }
    if (!m_parts.Read(m_text, *m_blocks, value) || !CheckMath() || syntax == NoSyntax)
        return;
    CheckSyntax({declaration.name, declaration.name + 1}, value, syntax, Code::InvalidStyleValue);
}

void CValueCheck::CheckFeature(STokens name, STokens value, TSyntax syntax)
{
    if (m_text.IsTouched(value) || !CheckUnits(value) || IsUnjudged(value) ||
        !m_parts.Read(m_text, *m_blocks, value) || !CheckMath())
        return;
    CheckSyntax(name, value, syntax, Code::InvalidMediaValue);
}

// False: the value is not to be judged any more.
bool CValueCheck::StripImportant(const SStyleDeclaration& declaration, STokens& value)
{
    TTokenIndex sign = value.begin;
    while (sign < value.end && !m_text.IsSign(sign, L'!'))
        ++sign;
    if (sign == value.end)
        return true;
    const TTokenIndex word = m_text.SkipBlanks(sign + 1, value.end);
    const std::string written = word < value.end ? m_text.NameOf(word) : std::string();
    const STokens rest = m_text.Trimmed({word + 1, value.end});
    if (written == "important") {
        if (!rest.IsEmpty()) {
            m_findings.Report(Code::UnexpectedInStyle, rest, {}, {{}, {}, {m_findings.Remove(rest)}});
            return false;
        }
        value = m_text.Trimmed({value.begin, sign});
        if (value.IsEmpty())
            m_findings.Report(Code::StyleValueMissing, declaration.name);
        return !value.IsEmpty();
    }
    CNearestName nearest(written);
    nearest.Offer("important");
    if (!m_text.IsTouched(value) && (word == value.end || !nearest.Get().empty()))
        m_findings.Unknown(Code::MistypedImportant, m_text.SpanOf({sign, std::min(word + 1, value.end)}),
                           "!important");
    return false; // "!ie" is for one browser
}

bool CValueCheck::CheckUnits(STokens value)
{
    bool isRight = true;
    bool isRange = false; // of characters: "U+0025-00FF"
    for (TTokenIndex i = value.begin; i < value.end; ++i) {
        isRange &= !m_text.IsBlank(i) && !m_text.Is(i, EStyleTokenKind::Comma);
        isRange |= m_text.Is(i, EStyleTokenKind::Ident) && m_text.NameOf(i) == "u";
        const bool isHash = m_text.Is(i, EStyleTokenKind::Hash);
        if ((!isHash && !m_text.Is(i, EStyleTokenKind::Dimension)) || m_text.IsTouched(i) ||
            m_text.Text(i).find(L'\\') != std::wstring_view::npos)
            continue;
        if (!isHash) {
            isRight &= isRange || CheckUnit(i, SeverityError);
        } else if (!IsHexColour(i)) {
            m_findings.Report(Code::InvalidHexColour, i);
            isRight = false;
        }
    }
    return isRight;
}

bool CValueCheck::CheckUnit(TTokenIndex token, std::int32_t severity)
{
    const std::string written = m_text.NameOf(token);
    const std::size_t begin = UnitOffset(written);
    const std::string_view unit = std::string_view(written).substr(begin);
    if (FindUnit(unit) != EUnit::Unknown || unit.starts_with("--"))
        return true;
    const SMarkupSpan span = m_text[token].span;
    m_findings.Unknown(Code::UnknownUnit, {span.begin + begin, span.end}, NearestUnit(unit), {}, severity);
    return false;
}

void CValueCheck::CheckCustom(TTokenIndex name, STokens value)
{
    if (m_text.IsTouched(value))
        return;
    for (TTokenIndex i = value.begin; i < value.end; ++i) {
        const std::wstring_view text = m_text.Text(i);
        if (m_text.Is(i, EStyleTokenKind::CurlyOpen) || text.find(L'\\') != std::wstring_view::npos)
            return;
        if (m_text.Is(i, EStyleTokenKind::Dimension))
            CheckUnit(i, SeverityWarning);
        else if (m_text.Is(i, EStyleTokenKind::Hash) && !IsHexColour(i) &&
                 text.find_first_of(L"0123456789") != std::wstring_view::npos)
            m_findings.Report(Code::InvalidHexColour, i, {}, {}, SeverityWarning);
    }
    CheckFunctions(m_text.NameOf(name), value, SeverityWarning);
}

// Functions that nobody knows, in values that are not judged otherwise.
bool CValueCheck::CheckFunctions(const std::string& property, STokens value, std::int32_t severity)
{
    for (TTokenIndex i = value.begin; i < value.end; ++i) {
        if (!m_text.Is(i, EStyleTokenKind::Function) || m_text.IsTouched(i))
            continue;
        const std::string name = m_text.NameOf(i);
        const std::string_view plain = WithoutPrefix(name);
        if (StyleTables::FindWord(plain) != StyleTables::NoWord || IsMathFunction(name) ||
            name.starts_with("--") || Contains(Substitutions, name))
            continue;
        const std::string nearest = NearestFunction(plain);
        if (nearest.empty())
            continue;
        const SMarkupSpan span = m_text[i].span;
        m_findings.Unknown(Code::InvalidStyleValue, {span.end - 1 - plain.size(), span.end - 1}, nearest,
                           {{"name", property}}, severity);
        return false;
    }
    return true;
}

// Whatever a value means, commas stand between something.
bool CValueCheck::CheckCommas(STokens value)
{
    bool wantsSomething = true;
    TTokenIndex last = value.begin;
    for (TTokenIndex i = value.begin; i < value.end; ++i) {
        if (m_text.IsBlank(i))
            continue;
        const bool isComma = m_text.Is(i, EStyleTokenKind::Comma);
        const bool isEnd =
            m_text.Is(i, EStyleTokenKind::RoundClose) && m_text.Is(last, EStyleTokenKind::Comma);
        if (m_text.Is(i, EStyleTokenKind::Function) && Contains(Substitutions, m_text.NameOf(i)))
            return true;
        if ((isComma && wantsSomething) || isEnd) {
            m_findings.Report(Code::UnexpectedInStyle, isEnd ? last : i, {},
                              {{}, {}, {m_findings.Remove({isEnd ? last : i, (isEnd ? last : i) + 1})}});
            return false;
        }
        wantsSomething = isComma;
        last = i;
    }
    if (!m_text.Is(last, EStyleTokenKind::Comma))
        return true;
    m_findings.Report(Code::UnexpectedInStyle, last, {}, {{}, {}, {m_findings.Remove({last, last + 1})}});
    return false;
}

bool CValueCheck::IsHexColour(TTokenIndex token) const
{
    const std::wstring_view digits = m_text.Text(token).substr(1);
    const bool isLong = digits.size() == 3 || digits.size() == 4 || digits.size() == 6 || digits.size() == 8;
    return isLong && digits.find_first_not_of(L"0123456789abcdefABCDEF") == std::wstring_view::npos;
}

// Values that are replaced by others, that are meant for one browser, or that a translator makes.
bool CValueCheck::IsUnjudged(STokens value) const
{
    for (TTokenIndex i = value.begin; i < value.end; ++i) {
        switch (m_text.KindOf(i)) {
        case EStyleTokenKind::Function:
        case EStyleTokenKind::Ident: {
            const std::string name = m_text.NameOf(i);
            if (name[0] == '-' && !name.starts_with("--") && name != "-infinity" && name != "-apple-system") {
                if (!IsMathFunction(name) && !IsVendorName(name))
                    m_findings.Unknown(Code::UnknownVendorPrefix, m_text[i].span, NearestVendor(name));
                return true;
            }
            if (name == "progid" || (name.starts_with("__") && name.ends_with("__")) ||
                name.find('\\') != std::string::npos)
                return true;
            if (m_text.Is(i, EStyleTokenKind::Function) &&
                (Contains(Substitutions, name) || name.starts_with("--")))
                return true;
            break;
        }
        case EStyleTokenKind::Dimension:
        case EStyleTokenKind::Delim:
            if (m_text.Text(i).find_first_of(L"\\$@~") != std::wstring_view::npos)
                return true;
            break;
        case EStyleTokenKind::AtKeyword: return true;
        default: break;
        }
    }
    return false;
}

bool CValueCheck::CheckMath()
{
    for (std::size_t level = 0; level < m_parts.Size(); ++level)
        for (const SValuePart& part : m_parts.Level(level))
            if (part.isMath && !CheckMathLevel(part))
                return false;
    return true;
}

// Operands and operators by turns; "+" and "-" are operators only between blanks.
bool CValueCheck::CheckMathLevel(const SValuePart& function)
{
    const std::vector<SValuePart>& parts = m_parts.Level(function.level);
    std::size_t depth = 0;
    bool wantsOperand = true;
    const auto fail = [&](STokens at, std::int32_t code) {
        m_findings.Report(code, at, {{"name", m_text.NameOf(function.tokens.begin)}});
        return false;
    };
    for (const SValuePart& part : parts) {
        const TTokenIndex token = part.tokens.begin;
        if (wantsOperand) {
            if (IsSign(part, L"("))
                ++depth;
            else if (part.kind == SValuePart::Sign)
                return fail(part.tokens, Code::InvalidStyleValue);
            else
                wantsOperand = false;
            continue;
        }
        const bool isSum = IsSign(part, L"+-");
        const bool isSigned =
            part.kind != SValuePart::Sign && (m_text.Text(token)[0] == L'+' || m_text.Text(token)[0] == L'-');
        if (isSigned || (isSum && (!m_text.IsBlank(token - 1) || !m_text.IsBlank(token + 1)))) {
            m_findings.Report(Code::MissingBlankInSum, part.tokens,
                              {{"name", m_text.NameOf(function.tokens.begin)}}, {{}, {}, {Spaced(token)}});
            return false;
        }
        if (IsSign(part, L")") && depth > 0)
            --depth;
        else if (isSum || IsSign(part, L"*/") || (IsSign(part, L",") && depth == 0))
            wantsOperand = true;
        else if (part.kind != SValuePart::Ident ||
                 parts[0].kind != SValuePart::Ident) // "auto" of some functions
            return fail(part.tokens, Code::InvalidStyleValue);
    }
    const std::string name = m_text.NameOf(function.tokens.begin);
    const bool mayBeEmpty = parts.empty() && (name.starts_with("sibling") || name.starts_with("anchor"));
    return !wantsOperand || mayBeEmpty ||
           fail({function.tokens.begin, function.tokens.begin + 1}, Code::IncompleteStyleValue);
}

/// Puts blanks around the sign that a token is, or begins with.
SFix CValueCheck::Spaced(TTokenIndex token) const
{
    const SMarkupSpan span = m_text[token].span;
    const bool isAlone = span.end == span.begin + 1;
    std::wstring text(m_text.IsBlank(token - 1) ? L"" : L" ");
    text += m_text.Text(token)[0];
    text += isAlone && m_text.IsBlank(token + 1) ? L"" : L" ";
    return m_findings.Plain().Fix(EFix::Replace, {span.begin, span.begin + 1}, std::move(text));
}

void CValueCheck::CheckSyntax(STokens name, STokens value, TSyntax syntax, std::int32_t code)
{
    if (value.end == value.begin + 1 && Contains(WideWords, m_text.NameOf(value.begin)))
        return;
    if (m_match.Match(syntax, m_parts) == CValueMatch::EResult::Fails)
        ReportStop(name, code);
}

void CValueCheck::ReportStop(STokens name, std::int32_t code)
{
    const CValueMatch::SStop& stop = m_match.Stop();
    const std::vector<SValuePart>& parts = m_parts.Level(stop.level);
    const std::string property = StyleLower(m_text.Places().Text(m_text.SpanOf(name)));
    const std::string allowed = AllowedText(stop.expected);
    if (stop.part < parts.size()) {
        if (!ReportWord(parts[stop.part], property, code, allowed))
            m_findings.Report(code, parts[stop.part].tokens, {{"name", property}, {"allowed", allowed}});
        return;
    }
    const STokens end = m_parts.TokensAt(stop.level, stop.part);
    const TTokenIndex last = m_text.Before(end.begin);
    m_findings.Report(Code::IncompleteStyleValue, last, {{"name", property}, {"allowed", allowed}});
}

// A word or function that is like one that fits.
bool CValueCheck::ReportWord(const SValuePart& part, const std::string& name, std::int32_t code,
                             const std::string& allowed)
{
    if (part.kind != SValuePart::Ident && part.kind != SValuePart::Function)
        return false;
    const TTokenIndex token = part.tokens.begin;
    const std::string written = m_text.NameOf(token);
    CNearestName important(written);
    important.Offer("important");
    if (!important.Get().empty()) {
        m_findings.Unknown(Code::MistypedImportant, m_text[token].span, "!important");
        return true;
    }
    const std::string nearest =
        NearestExpected(written, part.kind == SValuePart::Function, m_match.Stop().expected);
    SMarkupSpan span = m_text[token].span;
    span.end -= part.kind == SValuePart::Function;
    m_findings.Unknown(code, span, nearest,
                       {{"name", name}, {"allowed", nearest.empty() ? allowed : std::string()}});
    return true;
}

} // namespace Kesh::CodeAnalyzer
