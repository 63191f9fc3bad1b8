#include "Styles/ValueParts.h"

#include "Styles/StyleFindings.h"
#include "Styles/StyleTables.h"

#include <algorithm>
#include <charconv>

namespace Kesh::CodeAnalyzer {

namespace {

struct SUnit
{
    std::string_view name;
    EUnit unit;
};

constexpr SUnit Units[] = {
    {"px", EUnit::Length},      {"em", EUnit::Length},       {"rem", EUnit::Length},
    {"ex", EUnit::Length},      {"rex", EUnit::Length},      {"ch", EUnit::Length},
    {"rch", EUnit::Length},     {"cap", EUnit::Length},      {"rcap", EUnit::Length},
    {"ic", EUnit::Length},      {"ric", EUnit::Length},      {"lh", EUnit::Length},
    {"rlh", EUnit::Length},     {"vw", EUnit::Length},       {"vh", EUnit::Length},
    {"vi", EUnit::Length},      {"vb", EUnit::Length},       {"vmin", EUnit::Length},
    {"vmax", EUnit::Length},    {"svw", EUnit::Length},      {"svh", EUnit::Length},
    {"svi", EUnit::Length},     {"svb", EUnit::Length},      {"svmin", EUnit::Length},
    {"svmax", EUnit::Length},   {"lvw", EUnit::Length},      {"lvh", EUnit::Length},
    {"lvi", EUnit::Length},     {"lvb", EUnit::Length},      {"lvmin", EUnit::Length},
    {"lvmax", EUnit::Length},   {"dvw", EUnit::Length},      {"dvh", EUnit::Length},
    {"dvi", EUnit::Length},     {"dvb", EUnit::Length},      {"dvmin", EUnit::Length},
    {"dvmax", EUnit::Length},   {"cqw", EUnit::Length},      {"cqh", EUnit::Length},
    {"cqi", EUnit::Length},     {"cqb", EUnit::Length},      {"cqmin", EUnit::Length},
    {"cqmax", EUnit::Length},   {"cm", EUnit::Length},       {"mm", EUnit::Length},
    {"q", EUnit::Length},       {"in", EUnit::Length},       {"pt", EUnit::Length},
    {"pc", EUnit::Length},      {"deg", EUnit::Angle},       {"grad", EUnit::Angle},
    {"rad", EUnit::Angle},      {"turn", EUnit::Angle},      {"s", EUnit::Time},
    {"ms", EUnit::Time},        {"hz", EUnit::Frequency},    {"khz", EUnit::Frequency},
    {"dpi", EUnit::Resolution}, {"dpcm", EUnit::Resolution}, {"dppx", EUnit::Resolution},
    {"x", EUnit::Resolution},   {"fr", EUnit::Flex},         {"db", EUnit::Sound},
    {"st", EUnit::Sound},
};

constexpr std::string_view MathFunctions[] = {
    "-moz-calc", "-webkit-calc", "abs",       "acos",  "anchor",        "anchor-size",  "asin",  "atan",
    "atan2",     "calc",         "calc-size", "clamp", "cos",           "exp",          "hypot", "log",
    "max",       "min",          "mod",       "pow",   "progress",      "random",       "rem",   "round",
    "sign",      "sin",          "sqrt",      "tan",   "sibling-count", "sibling-index"};

double ReadNumber(std::string_view text, bool& isInteger, std::size_t& length)
{
    const std::size_t sign = text.starts_with('+');
    double number = 0;
    const auto read = std::from_chars(text.data() + sign, text.data() + text.size(), number);
    length = static_cast<std::size_t>(read.ptr - text.data());
    isInteger = text.substr(0, length).find_first_of(".e") == std::string_view::npos;
    return number;
}

} // namespace

bool IsMathFunction(std::string_view name)
{
    return std::ranges::find(MathFunctions, name) != std::end(MathFunctions);
}

EUnit FindUnit(std::string_view unit)
{
    const auto* known = std::ranges::find(Units, unit, &SUnit::name);
    return known != std::end(Units) ? known->unit : EUnit::Unknown;
}

std::size_t UnitOffset(std::string_view number)
{
    bool isInteger = false;
    std::size_t length = 0;
    ReadNumber(number, isInteger, length);
    return length;
}

std::string NearestUnit(std::string_view unit)
{
    CNearestName nearest(unit);
    for (const std::string_view common : {"px", "em", "rem", "vh", "vw", "ms", "deg", "fr", "pt"})
        nearest.Offer(common);
    for (const SUnit& known : Units)
        nearest.Offer(known.name);
    return nearest.Get();
}

bool CValueParts::Read(const CStyleText& text, const SBlocks& blocks, STokens value)
{
    m_used = 0;
    std::vector<SOpen> open;
    const auto begin = [&](TTokenIndex end) {
        if (m_used == m_levels.size()) {
            m_levels.emplace_back();
            m_ends.emplace_back();
        }
        m_levels[m_used].clear();
        m_ends[m_used] = end;
        open.push_back({m_used++, end});
    };
    begin(value.end);
    for (TTokenIndex i = value.begin; !open.empty();) {
        if (i >= open.back().end) {
            i = std::max(i, open.back().end);
            open.pop_back();
            i += !open.empty(); // the ")"
            continue;
        }
        if (text.IsBlank(i)) {
            ++i;
            continue;
        }
        std::vector<SValuePart>& parts = m_levels[open.back().level];
        if (parts.size() == MostParts || m_used == MostLevels)
            return false;
        parts.push_back(ReadPart(text, i));
        SValuePart& part = parts.back();
        if (part.kind == SValuePart::Function) {
            const SBlocks::SEnd& end = blocks.ends[i];
            part.level = static_cast<std::uint16_t>(m_used);
            part.tokens.end = std::min(end.end + 1, value.end);
            begin(std::min(end.end, value.end));
            ++i;
            continue;
        }
        if (part.kind == SValuePart::Ident && text.Text(i).size() == 1 && (text.Text(i)[0] | 0x20) == L'u')
            part.tokens.end = ReadUnicodeRange(text, i, open.back().end);
        if (part.tokens.end > i + 1)
            part.kind = SValuePart::UnicodeRange;
        i = part.tokens.end;
    }
    return true;
}

SValuePart CValueParts::ReadPart(const CStyleText& text, TTokenIndex index) const
{
    SValuePart part;
    part.tokens = {index, index + 1};
    std::size_t length = 0;
    switch (text.KindOf(index)) {
    case EStyleTokenKind::Ident:
    case EStyleTokenKind::Function: {
        const std::string name = text.NameOf(index);
        part.kind = text.Is(index, EStyleTokenKind::Ident) ? SValuePart::Ident : SValuePart::Function;
        part.word = StyleTables::FindWord(name);
        part.isDashed = name.starts_with("--");
        part.isMath = part.kind == SValuePart::Function && IsMathFunction(name);
        break;
    }
    case EStyleTokenKind::String: part.kind = SValuePart::String; break;
    case EStyleTokenKind::Url: part.kind = SValuePart::Url; break;
    case EStyleTokenKind::Hash: part.kind = SValuePart::Hash; break;
    case EStyleTokenKind::Number:
    case EStyleTokenKind::Percentage:
    case EStyleTokenKind::Dimension: {
        const std::string written = text.NameOf(index);
        part.number = ReadNumber(written, part.isInteger, length);
        part.kind = text.Is(index, EStyleTokenKind::Number)       ? SValuePart::Number
                    : text.Is(index, EStyleTokenKind::Percentage) ? SValuePart::Percentage
                                                                  : SValuePart::Dimension;
        if (part.kind == SValuePart::Dimension)
            part.unit = FindUnit(std::string_view(written).substr(length));
        break;
    }
    default: part.sign = text.Text(index)[0];
    }
    return part;
}

// "U+4?" comes as several tokens without blanks between.
TTokenIndex CValueParts::ReadUnicodeRange(const CStyleText& text, TTokenIndex index, TTokenIndex end) const
{
    TTokenIndex i = index + 1;
    const bool isRange = i < end && text.Text(i)[0] == L'+';
    while (isRange && i < end && !text.IsBlank(i) && !text.Is(i, EStyleTokenKind::Comma))
        ++i;
    return i;
}

STokens CValueParts::TokensAt(std::size_t level, std::size_t part) const
{
    return part < m_levels[level].size() ? m_levels[level][part].tokens
                                         : STokens{m_ends[level], m_ends[level]};
}

} // namespace Kesh::CodeAnalyzer
