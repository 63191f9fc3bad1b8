#include "Styles/ConditionCheck.h"

#include "Styles/StyleTables.h"

#include <algorithm>

namespace Kesh::CodeAnalyzer {

namespace {

constexpr std::string_view Types[] = {"all",        "screen",   "print",   "speech",   "tty",  "tv",
                                      "projection", "handheld", "braille", "embossed", "aural"};

} // namespace

void CConditionCheck::CheckMedia(STokens list)
{
    m_rule = "@media/";
    if (m_text.Trimmed(list).IsEmpty())
        return;
    for (const STokens query : SplitAtCommas(list))
        if (!CheckQuery(query))
            return;
}

void CConditionCheck::CheckSupports(STokens condition)
{
    m_rule = "@supports/";
    m_waiting.assign(1, m_text.Trimmed(condition));
    CheckWaiting();
}

void CConditionCheck::CheckContainer(STokens list)
{
    m_rule = "@container/";
    for (STokens query : SplitAtCommas(list)) {
        const bool isName =
            m_text.Is(query.begin, EStyleTokenKind::Ident) && m_text.NameOf(query.begin) != "not";
        if (isName)
            query = m_text.Trimmed({query.begin + 1, query.end});
        m_waiting.assign(1, query);
        if (!(isName && query.IsEmpty()) && !CheckWaiting())
            return;
    }
}

std::vector<STokens> CConditionCheck::SplitAtCommas(STokens list) const
{
    std::vector<STokens> parts;
    TTokenIndex begin = list.begin;
    for (TTokenIndex i = list.begin; i < list.end; i = Next(i, list.end))
        if (m_text.Is(i, EStyleTokenKind::Comma)) {
            parts.push_back(m_text.Trimmed({begin, i}));
            begin = i + 1;
        }
    parts.push_back(m_text.Trimmed({begin, list.end}));
    return parts;
}

// "not screen and (…)", or a condition.
bool CConditionCheck::CheckQuery(STokens query)
{
    if (query.IsEmpty()) {
        const TTokenIndex comma = m_text.Before(query.begin);
        return Fail({comma, comma + 1});
    }
    TTokenIndex i = query.begin;
    if (m_text.IsTouched(query))
        return true;
    m_waiting.clear();
    if (m_text.Is(i, EStyleTokenKind::Ident)) {
        const std::string first = m_text.NameOf(i);
        const TTokenIndex second = m_text.SkipBlanks(i + 1, query.end);
        if (first == "only" || (first == "not" && !IsGroup(second)))
            i = second;
        if (i < query.end && m_text.Is(i, EStyleTokenKind::Ident) && m_text.NameOf(i) != "not") {
            if (!CheckType(i))
                return false;
            i = m_text.SkipBlanks(i + 1, query.end);
            if (i == query.end)
                return true;
            if (m_text.NameOf(i) != "and" || m_text.SkipBlanks(i + 1, query.end) == query.end)
                return Fail({i, i + 1});
            i = m_text.SkipBlanks(i + 1, query.end);
        }
    }
    if (i == query.end)
        return Fail({query.end - 1, query.end});
    m_waiting.push_back({i, query.end});
    return CheckWaiting();
}

bool CConditionCheck::CheckType(TTokenIndex token)
{
    const std::string name = m_text.NameOf(token);
    if (std::ranges::find(Types, name) != std::end(Types) || name.find('\\') != std::string::npos)
        return true;
    CNearestName nearest(name);
    for (const std::string_view type : Types)
        nearest.Offer(type);
    m_findings.Unknown(Code::UnknownMediaFeature, m_text[token].span, nearest.Get());
    return false;
}

bool CConditionCheck::CheckWaiting()
{
    while (!m_waiting.empty()) {
        const STokens next = m_waiting.back();
        m_waiting.pop_back();
        if (!CheckCondition(next))
            return false;
    }
    return true;
}

// Brackets with "and" or "or" between, or one after "not".
bool CConditionCheck::CheckCondition(STokens condition)
{
    bool wantsGroup = true;
    std::string joint;
    for (TTokenIndex i = condition.begin; i < condition.end; i = Next(i, condition.end)) {
        if (m_text.IsBlank(i))
            continue;
        if (IsGroup(i) && wantsGroup) {
            wantsGroup = false;
            if (m_text.Is(i, EStyleTokenKind::RoundOpen) &&
                !CheckGroup(m_text.Trimmed({i + 1, m_blocks->ends[i].end})))
                return false;
            continue;
        }
        const std::string word = m_text.Is(i, EStyleTokenKind::Ident) ? m_text.NameOf(i) : std::string();
        if (word == "not" && wantsGroup)
            continue;
        if (wantsGroup || (word != "and" && word != "or") || (!joint.empty() && joint != word))
            return Fail({i, IsGroup(i) ? m_blocks->After(m_blocks->ends[i]) : i + 1});
        joint = word;
        wantsGroup = true;
    }
    return !wantsGroup || condition.IsEmpty() ||
           Fail({m_text.Before(condition.end), m_text.Before(condition.end) + 1});
}

bool CConditionCheck::CheckGroup(STokens inside)
{
    if (inside.IsEmpty())
        return Fail({inside.begin - 1, inside.begin});
    if (m_text.IsTouched(inside))
        return true;
    const bool isNot =
        m_text.Is(inside.begin, EStyleTokenKind::Ident) && m_text.NameOf(inside.begin) == "not";
    if (IsGroup(inside.begin) || isNot) {
        m_waiting.push_back(inside);
        return true;
    }
    TTokenIndex colon = inside.begin;
    while (colon < inside.end && !m_text.Is(colon, EStyleTokenKind::Colon))
        colon = Next(colon, inside.end);
    if (m_rule == "@supports/") { // to try what may be unknown is its purpose
        const bool isDeclaration = colon < inside.end && m_text.Is(inside.begin, EStyleTokenKind::Ident);
        return isDeclaration || m_text.Is(inside.begin, EStyleTokenKind::Delim) ||
               Fail({inside.begin, inside.begin + 1});
    }
    if (colon < inside.end || inside.end == inside.begin + 1)
        return CheckFeature(inside, colon);
    return CheckRange(inside);
}

bool CConditionCheck::CheckFeature(STokens inside, TTokenIndex colon)
{
    const STokens name = m_text.Trimmed({inside.begin, colon});
    const STokens value = m_text.Trimmed({std::min(colon + 1, inside.end), inside.end});
    std::string known;
    if (!CheckName(name, colon < inside.end, known))
        return false;
    if (colon < inside.end && value.IsEmpty())
        return Fail({colon, colon + 1});
    if (!value.IsEmpty() && !known.empty())
        m_values.CheckFeature(name, value, StyleTables::FindDescriptor(known));
    return true;
}

// "400px <= width < 700px".
bool CConditionCheck::CheckRange(STokens inside)
{
    TTokenIndex name = m_text.Size();
    std::size_t signs = 0;
    for (TTokenIndex i = inside.begin; i < inside.end; i = Next(i, inside.end)) {
        if (m_text.Is(i, EStyleTokenKind::Ident) && name == m_text.Size())
            name = i;
        const bool isSign = m_text.IsSign(i, L'<') || m_text.IsSign(i, L'>') || m_text.IsSign(i, L'=');
        signs += isSign && !(m_text.IsSign(i, L'=') && !m_text.IsBlank(i - 1) &&
                             m_text.Is(i - 1, EStyleTokenKind::Delim));
    }
    if (signs == 0 || signs > 2 || name == m_text.Size())
        return Fail(inside);
    std::string known;
    return CheckName({name, name + 1}, false, known);
}

bool CConditionCheck::CheckName(STokens name, bool hasValue, std::string& known)
{
    if (name.end != name.begin + 1 || !m_text.Is(name.begin, EStyleTokenKind::Ident))
        return Fail(name.IsEmpty() ? STokens{name.begin, name.begin + 1} : name);
    const std::string written = m_text.NameOf(name.begin);
    // Made by one browser, for one browser, or a custom name.
    if (written.find('-') == 0 || written.find("-moz-") != std::string::npos ||
        written.find("-webkit-") != std::string::npos || written.find('\\') != std::string::npos)
        return true;
    known = m_rule + written;
    const bool isLimit = written.starts_with("min-") || written.starts_with("max-");
    if (isLimit && hasValue && StyleTables::IsRangeFeature(m_rule + written.substr(4)))
        known = m_rule + written.substr(4);
    if (StyleTables::FindDescriptor(known) != StyleTables::NoSyntax)
        return true;
    CNearestName nearest(written);
    StyleTables::EachDescriptor(m_rule, [&](std::string_view feature) {
        nearest.Offer(feature);
        if (StyleTables::IsRangeFeature(m_rule + std::string(feature))) {
            nearest.Offer("min-" + std::string(feature));
            nearest.Offer("max-" + std::string(feature));
        }
    });
    m_findings.Unknown(Code::UnknownMediaFeature, m_text[name.begin].span, nearest.Get());
    return false;
}

bool CConditionCheck::Fail(STokens at)
{
    m_findings.Report(Code::InvalidPrelude, at, {{"rule", m_rule.substr(0, m_rule.size() - 1)}});
    return false;
}

TTokenIndex CConditionCheck::Next(TTokenIndex index, TTokenIndex end) const
{
    const SBlocks::SEnd& place = m_blocks->ends[index];
    return std::min(place.end > index ? m_blocks->After(place) : index + 1, end);
}

} // namespace Kesh::CodeAnalyzer
