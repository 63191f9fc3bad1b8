#include "Styles/ValueMatch.h"

#include <algorithm>
#include <bit>

namespace Kesh::CodeAnalyzer {

using StyleTables::EBasic;
using StyleTables::EN;
using StyleTables::TSyntax;

namespace {

constexpr std::size_t MostSteps = 30000;
constexpr std::size_t MostDepth = 400;

constexpr std::string_view WideWords[] = {"inherit",      "initial",     "unset",  "revert",
                                          "revert-layer", "revert-rule", "default"};

bool IsOneOf(std::span<const std::string_view> names, std::uint16_t word)
{
    return word != StyleTables::NoWord && std::ranges::find(names, StyleTables::WordAt(word)) != names.end();
}

bool FitsUnit(EBasic basic, EUnit unit)
{
    switch (basic) {
    case EBasic::Length: return unit == EUnit::Length;
    case EBasic::Angle: return unit == EUnit::Angle;
    case EBasic::Time: return unit == EUnit::Time;
    case EBasic::Frequency: return unit == EUnit::Frequency;
    case EBasic::Resolution: return unit == EUnit::Resolution;
    case EBasic::Flex: return unit == EUnit::Flex;
    case EBasic::Dimension: return true;
    default: return false;
    }
}

bool IsNumeric(EBasic basic)
{
    return (basic >= EBasic::Number && basic <= EBasic::Dimension) || basic == EBasic::Zero;
}

} // namespace

CValueMatch::EResult CValueMatch::Match(TSyntax syntax, const CValueParts& parts)
{
    m_parts = &parts;
    m_stop = {};
    m_stopToken = 0;
    m_collects = false;
    const TEnds ends = Run(syntax);
    const std::size_t size = parts.Level(0).size();
    if (m_isTooLong)
        return EResult::TooLong;
    if (ends >> size & 1)
        return EResult::Fits;
    if (ends != 0) {
        const auto reached = static_cast<std::size_t>(63 - std::countl_zero(ends));
        if (parts.TokensAt(0, reached).begin > m_stopToken) {
            m_stop = {0, reached, {}};
            return EResult::Fails;
        }
    }
    // Right values, which most are, need not pay for this.
    m_collects = true;
    Run(syntax);
    return EResult::Fails;
}

CValueMatch::TEnds CValueMatch::Run(TSyntax syntax)
{
    m_known.clear();
    m_steps = 0;
    m_depth = 0;
    m_isTooLong = false;
    m_failed.reset();
    return At(syntax, {0, 0});
}

CValueMatch::TEnds CValueMatch::At(TSyntax syntax, SPlace place)
{
    if (++m_steps > MostSteps || m_depth > MostDepth)
        m_isTooLong = true;
    if (m_isTooLong)
        return 0;
    const SSyntax& node = StyleTables::At(syntax);
    ++m_depth;
    TEnds ends = 0;
    switch (node.kind) {
    case EN::Type: {
        const std::uint64_t key =
            (static_cast<std::uint64_t>(node.first) << 32) | place.level << 8 | place.part;
        const auto known = m_known.find(key);
        ends = known != m_known.end() ? known->second : At(StyleTables::OfType(node.first), place);
        m_known[key] = ends;
        break;
    }
    case EN::Seq: ends = OfSequence(node, place); break;
    case EN::One: ends = OfAlternatives(node, place); break;
    case EN::All:
    case EN::Any: ends = OfAnyOrder(node, place); break;
    case EN::Repeat:
    case EN::List: ends = OfRepeat(node, place); break;
    case EN::NonEmpty: ends = At(node.first, place) & ~(TEnds(1) << place.part); break;
    default: ends = OfLeaf(syntax, node, place);
    }
    --m_depth;
    return ends;
}

// Most are words, of which there may be hundreds: that none of them fits is noted once.
CValueMatch::TEnds CValueMatch::OfAlternatives(const SSyntax& node, SPlace place)
{
    const auto& parts = m_parts->Level(place.level);
    const bool isIdent = place.part < parts.size() && parts[place.part].kind == SValuePart::Ident;
    const std::uint16_t word = isIdent ? parts[place.part].word : StyleTables::NoWord;
    TEnds ends = 0;
    std::optional<TSyntax> failed;
    for (const TSyntax part : StyleTables::Parts(node)) {
        const SSyntax& alternative = StyleTables::At(part);
        if (alternative.kind != EN::Word)
            ends |= At(part, place);
        else if (isIdent && alternative.first == word)
            ends |= TEnds(1) << (place.part + 1);
        else if (m_collects)
            Fail(part, place);
        else
            failed = part;
    }
    if (failed)
        Fail(*failed, place);
    return ends;
}

CValueMatch::TEnds CValueMatch::OfEach(TSyntax syntax, std::size_t level, TEnds begins)
{
    TEnds ends = 0;
    for (; begins != 0; begins &= begins - 1)
        ends |= At(syntax, {level, static_cast<std::size_t>(std::countr_zero(begins))});
    return ends;
}

CValueMatch::TEnds CValueMatch::OfLeaf(TSyntax syntax, const SSyntax& node, SPlace place)
{
    const auto& parts = m_parts->Level(place.level);
    if (node.kind == EN::Sign && node.first == L',')
        return OfComma(syntax, place);
    if (place.part < parts.size()) {
        const SValuePart& part = parts[place.part];
        const TEnds next = TEnds(1) << (place.part + 1);
        switch (node.kind) {
        case EN::Word:
            if (part.kind == SValuePart::Ident && part.word == node.first)
                return next;
            break;
        case EN::Sign:
            if (part.kind == SValuePart::Sign && part.sign == static_cast<wchar_t>(node.first))
                return next;
            break;
        case EN::Function:
            if (part.kind == SValuePart::Function && part.word == node.first)
                return OfFunction(node, part, place);
            break;
        default:
            if (static_cast<EBasic>(node.first) == EBasic::AnyValue)
                return (~TEnds(0) << (place.part + 1)) & ~(~TEnds(1) << parts.size());
            if (FitsBasic(node, part))
                return next;
        }
    }
    Fail(syntax, place);
    return 0;
}

CValueMatch::TEnds CValueMatch::OfFunction(const SSyntax& node, const SValuePart& part, SPlace place)
{
    const auto& inner = m_parts->Level(part.level);
    const TEnds ends = At(node.second, {part.level, 0});
    if (ends >> inner.size() & 1)
        return TEnds(1) << (place.part + 1);
    if (ends != 0) {
        const auto reached = static_cast<std::size_t>(63 - std::countl_zero(ends));
        if (m_parts->TokensAt(part.level, reached).begin > m_stopToken) {
            m_stop = {part.level, reached, {}};
            m_stopToken = m_parts->TokensAt(part.level, reached).begin;
        }
    }
    return 0;
}

// A comma may go with what stands before or after it, but never comes at an end or twice.
CValueMatch::TEnds CValueMatch::OfComma(TSyntax syntax, SPlace place)
{
    const auto& parts = m_parts->Level(place.level);
    const auto isComma = [&](std::size_t part) {
        return parts[part].kind == SValuePart::Sign && parts[part].sign == L',';
    };
    const TEnds here = TEnds(1) << place.part;
    if (place.part == 0 || place.part >= parts.size())
        return here;
    if (isComma(place.part) && place.part + 1 < parts.size() && !isComma(place.part + 1))
        return here << 1;
    if (isComma(place.part - 1))
        return here;
    Fail(syntax, place);
    return 0;
}

CValueMatch::TEnds CValueMatch::OfSequence(const SSyntax& node, SPlace place)
{
    TEnds ends = TEnds(1) << place.part;
    for (const TSyntax part : StyleTables::Parts(node)) {
        ends = OfEach(part, place.level, ends);
        if (ends == 0)
            break;
    }
    return ends;
}

CValueMatch::TEnds CValueMatch::OfAnyOrder(const SSyntax& node, SPlace place)
{
    struct SState
    {
        std::uint32_t used;
        TEnds ends;
    };
    const auto parts = StyleTables::Parts(node);
    const std::uint32_t all = parts.size() < 32 ? (1U << parts.size()) - 1 : ~0U;
    std::vector<SState> states{{0, TEnds(1) << place.part}};
    TEnds result = 0;
    for (std::size_t i = 0; i < states.size(); ++i) {
        const SState state = states[i];
        if (node.kind == EN::Any ? state.used != 0 : state.used == all)
            result |= state.ends;
        for (std::size_t p = 0; p < parts.size() && !m_isTooLong; ++p) {
            const std::uint32_t bit = 1U << p;
            if (state.used & bit)
                continue;
            TEnds ends = OfEach(parts[p], place.level, state.ends);
            if (node.kind == EN::Any)
                ends &= ~state.ends;
            if (ends == 0)
                continue;
            const auto same = std::find_if(states.begin() + static_cast<std::ptrdiff_t>(i) + 1, states.end(),
                                           [&](const SState& s) { return s.used == (state.used | bit); });
            if (same != states.end())
                same->ends |= ends;
            else
                states.push_back({state.used | bit, ends});
        }
        m_steps += states.size();
        if (m_steps > MostSteps)
            m_isTooLong = true;
    }
    return result;
}

CValueMatch::TEnds CValueMatch::OfRepeat(const SSyntax& node, SPlace place)
{
    TEnds ends = TEnds(1) << place.part;
    TEnds result = node.min == 0 ? ends : 0;
    for (std::size_t count = 1; count <= node.max; ++count) {
        if (count > 1 && node.kind == EN::List) {
            if (count <= node.min)
                Fail(node.first, {place.level, static_cast<std::size_t>(63 - std::countl_zero(ends))});
            ends = AfterCommas(place.level, ends);
        }
        ends = OfEach(node.first, place.level, ends);
        if (ends == 0)
            break;
        if (count < node.min)
            continue;
        if (node.max == 255 && (ends & ~result) == 0)
            break;
        result |= ends;
    }
    return result;
}

CValueMatch::TEnds CValueMatch::AfterCommas(std::size_t level, TEnds ends)
{
    const auto& parts = m_parts->Level(level);
    TEnds after = 0;
    for (; ends != 0; ends &= ends - 1) {
        const auto place = static_cast<std::size_t>(std::countr_zero(ends));
        if (place < parts.size() && parts[place].kind == SValuePart::Sign && parts[place].sign == L',')
            after |= TEnds(1) << (place + 1);
    }
    return after;
}

bool CValueMatch::FitsBasic(const SSyntax& node, const SValuePart& part) const
{
    const auto basic = static_cast<EBasic>(node.first);
    const StyleTables::SRange* range = StyleTables::FindRange(node.second);
    const bool isInRange = !range || (part.number >= range->min && part.number <= range->max);
    if (IsNumeric(basic) && part.kind == SValuePart::Function)
        return part.isMath;
    switch (basic) {
    case EBasic::Component: return part.kind != SValuePart::Sign;
    case EBasic::Ident: return part.kind == SValuePart::Ident;
    case EBasic::CustomIdent: return part.kind == SValuePart::Ident && !IsOneOf(WideWords, part.word);
    case EBasic::DashedIdent: return part.isDashed;
    case EBasic::String: return part.kind == SValuePart::String;
    case EBasic::Url:
        return part.kind == SValuePart::Url ||
               (part.kind == SValuePart::Function && part.word != StyleTables::NoWord &&
                (StyleTables::WordAt(part.word) == "url" || StyleTables::WordAt(part.word) == "src"));
    case EBasic::Number: return part.kind == SValuePart::Number && isInRange;
    case EBasic::Integer: return part.kind == SValuePart::Number && part.isInteger && isInRange;
    case EBasic::Percentage: return part.kind == SValuePart::Percentage && isInRange;
    case EBasic::HexColor:
    case EBasic::Hash: return part.kind == SValuePart::Hash;
    case EBasic::UnicodeRange: return part.kind == SValuePart::UnicodeRange;
    case EBasic::Zero: return part.kind == SValuePart::Number && part.number == 0;
    case EBasic::Function: return part.kind == SValuePart::Function;
    case EBasic::Length:
        if (part.kind == SValuePart::Number)
            return part.number == 0 && isInRange;
        [[fallthrough]];
    default: return part.kind == SValuePart::Dimension && isInRange && FitsUnit(basic, part.unit);
    }
}

void CValueMatch::Fail(TSyntax syntax, SPlace place)
{
    if (!m_collects && m_failed == place)
        return;
    m_failed = place;
    const TTokenIndex token = m_parts->TokensAt(place.level, place.part).begin;
    if (m_collects) {
        if (token == m_stopToken && std::ranges::find(m_stop.expected, syntax) == m_stop.expected.end())
            m_stop.expected.push_back(syntax);
    } else if (token > m_stopToken || m_stopToken == 0) {
        m_stop = {place.level, place.part, {}};
        m_stopToken = token;
    }
}

} // namespace Kesh::CodeAnalyzer
