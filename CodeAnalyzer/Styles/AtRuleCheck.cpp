#include "Styles/AtRuleCheck.h"

#include "Styles/VendorNames.h"

#include <algorithm>

namespace Kesh::CodeAnalyzer {

namespace {

enum class EPrelude : std::uint8_t {
    Any,
    Empty,
    Media,
    Supports,
    Container,
    Import,
    Name,
    Names,
    Dashed,
    Text,
    Scope
};

struct SKnownRule
{
    std::string_view name;
    EPrelude prelude;
    bool needsBlock;
};

constexpr SKnownRule Rules[] = {
    {"media", EPrelude::Media, true},
    {"supports", EPrelude::Supports, true},
    {"container", EPrelude::Container, true},
    {"import", EPrelude::Import, false},
    {"charset", EPrelude::Text, false},
    {"namespace", EPrelude::Any, false},
    {"layer", EPrelude::Any, false},
    {"keyframes", EPrelude::Name, true},
    {"font-face", EPrelude::Empty, true},
    {"page", EPrelude::Any, true},
    {"property", EPrelude::Dashed, true},
    {"counter-style", EPrelude::Name, true},
    {"scope", EPrelude::Scope, true},
    {"starting-style", EPrelude::Empty, true},
    {"view-transition", EPrelude::Empty, true},
    {"position-try", EPrelude::Dashed, true},
    {"font-palette-values", EPrelude::Dashed, true},
    {"color-profile", EPrelude::Any, true},
    {"font-feature-values", EPrelude::Names, true},
    {"document", EPrelude::Any, true},
    {"viewport", EPrelude::Empty, true},
};

// Known, but judged no further: drafts, parts of other rules, and what builders of sheets replace.
constexpr std::string_view Others[] = {"annotation",
                                       "apply",
                                       "bottom-center",
                                       "bottom-left",
                                       "bottom-left-corner",
                                       "bottom-right",
                                       "bottom-right-corner",
                                       "character-variant",
                                       "contents",
                                       "custom-media",
                                       "custom-selector",
                                       "custom-variant",
                                       "else",
                                       "function",
                                       "historical-forms",
                                       "layer",
                                       "left-bottom",
                                       "left-middle",
                                       "left-top",
                                       "location",
                                       "mixin",
                                       "macro",
                                       "navigation",
                                       "nest",
                                       "ornaments",
                                       "private",
                                       "reference",
                                       "right-bottom",
                                       "right-middle",
                                       "right-top",
                                       "screen",
                                       "source",
                                       "styleset",
                                       "stylistic",
                                       "supports-condition",
                                       "swash",
                                       "tailwind",
                                       "theme",
                                       "top-center",
                                       "top-left",
                                       "top-left-corner",
                                       "top-right",
                                       "top-right-corner",
                                       "utility",
                                       "variant",
                                       "variants",
                                       "responsive",
                                       "config",
                                       "when",
                                       "if",
                                       "value",
                                       "css-module"};

const SKnownRule* FindRule(std::string_view name)
{
    const auto* rule = std::ranges::find(Rules, name, &SKnownRule::name);
    return rule != std::end(Rules) ? rule : nullptr;
}

} // namespace

void CAtRuleCheck::Check(const SStyleRule& rule)
{
    const bool isLate = m_hasRules;
    m_hasRules |=
        rule.name != "charset" && rule.name != "import" && rule.name != "layer" && rule.name != "namespace";
    if (rule.isFaulty || m_text.IsTouched(STokens{rule.begin, std::max(rule.prelude.end, rule.begin + 1)}) ||
        !CheckName(rule))
        return;
    const SKnownRule* known = FindRule(WithoutPrefix(rule.name));
    if (!known)
        return;
    if (known->needsBlock && !rule.hasBlock) {
        m_findings.Missing(Code::MissingStyleBrace, std::max(rule.prelude.end, rule.begin + 1), L"{");
        return;
    }
    switch (known->prelude) {
    case EPrelude::Empty:
        if (!rule.prelude.IsEmpty())
            Fail(rule, rule.prelude);
        break;
    case EPrelude::Media: m_conditions.CheckMedia(rule.prelude); break;
    case EPrelude::Supports: m_conditions.CheckSupports(rule.prelude); break;
    case EPrelude::Container: m_conditions.CheckContainer(rule.prelude); break;
    case EPrelude::Import:
        if (isLate)
            m_findings.Report(Code::LateImport, {rule.begin, rule.prelude.end});
        CheckImport(rule);
        break;
    case EPrelude::Text:
        if (rule.prelude.end != rule.prelude.begin + 1 ||
            !m_text.Is(rule.prelude.begin, EStyleTokenKind::String))
            Fail(rule, rule.prelude.IsEmpty() ? STokens{rule.begin, rule.begin + 1} : rule.prelude);
        break;
    case EPrelude::Name:
    case EPrelude::Names: CheckNames(rule, false); break;
    case EPrelude::Dashed: CheckNames(rule, true); break;
    case EPrelude::Scope: CheckScope(rule); break;
    case EPrelude::Any: break;
    }
}

bool CAtRuleCheck::CheckName(const SStyleRule& rule)
{
    const SMarkupSpan span = m_text[rule.begin].span;
    if (rule.name.starts_with('-')) {
        if (!IsVendorName(rule.name))
            m_findings.Unknown(Code::UnknownVendorPrefix, {span.begin + 1, span.end},
                               NearestVendor(rule.name));
        return true;
    }
    if (FindRule(rule.name) || std::ranges::find(Others, rule.name) != std::end(Others) ||
        rule.name.find('\\') != std::string::npos)
        return true;
    CNearestName nearest(rule.name);
    for (const SKnownRule& known : Rules)
        nearest.Offer(known.name);
    m_findings.Unknown(Code::UnknownAtRule, span, nearest.Get().empty() ? "" : '@' + nearest.Get());
    return false;
}

// The place of a sheet, its layer, what must be supported, and media.
void CAtRuleCheck::CheckImport(const SStyleRule& rule)
{
    TTokenIndex i = rule.prelude.begin;
    const TTokenIndex end = rule.prelude.end;
    const auto next = [&] {
        const SBlocks::SEnd& place = m_blocks->ends[i];
        i = m_text.SkipBlanks(place.end > i ? m_blocks->After(place) : i + 1, end);
    };
    if (rule.prelude.IsEmpty() ||
        !(m_text.Is(i, EStyleTokenKind::String) || m_text.Is(i, EStyleTokenKind::Url) ||
          m_text.Is(i, EStyleTokenKind::Function))) {
        Fail(rule, rule.prelude.IsEmpty() ? STokens{rule.begin, rule.begin + 1} : STokens{i, i + 1});
        return;
    }
    next();
    while (i < end && (m_text.Is(i, EStyleTokenKind::Function) ||
                       (m_text.Is(i, EStyleTokenKind::Ident) && m_text.NameOf(i) == "layer")))
        next();
    if (i < end)
        m_conditions.CheckMedia({i, end});
}

void CAtRuleCheck::CheckNames(const SStyleRule& rule, bool isDashed)
{
    const TTokenIndex first = rule.prelude.begin;
    if (rule.prelude.IsEmpty()) {
        Fail(rule, {rule.begin, rule.begin + 1});
        return;
    }
    const bool isName =
        m_text.Is(first, EStyleTokenKind::Ident) || (!isDashed && m_text.Is(first, EStyleTokenKind::String));
    if (!isName || (isDashed && !m_text.NameOf(first).starts_with("--")))
        Fail(rule, {first, first + 1});
    else if (rule.name != "font-feature-values" && rule.name != "property" && rule.prelude.end > first + 1)
        Fail(rule, m_text.Trimmed({first + 1, rule.prelude.end}));
}

// "(selectors) to (selectors)".
void CAtRuleCheck::CheckScope(const SStyleRule& rule)
{
    for (TTokenIndex i = rule.prelude.begin; i < rule.prelude.end; ++i) {
        if (m_text.Is(i, EStyleTokenKind::RoundOpen)) {
            const SBlocks::SEnd& end = m_blocks->ends[i];
            m_selectors.CheckList({i + 1, end.end}, true);
            i = end.end;
        } else if (!m_text.IsBlank(i) &&
                   !(m_text.Is(i, EStyleTokenKind::Ident) && m_text.NameOf(i) == "to")) {
            Fail(rule, {i, i + 1});
            return;
        }
    }
}

void CAtRuleCheck::Fail(const SStyleRule& rule, STokens at)
{
    m_findings.Report(Code::InvalidPrelude, at, {{"rule", '@' + rule.name}});
}

} // namespace Kesh::CodeAnalyzer
