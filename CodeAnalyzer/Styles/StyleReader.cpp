#include "Styles/StyleReader.h"

#include "Styles/StyleTables.h"

#include <algorithm>
#include <utility>

namespace Kesh::CodeAnalyzer {

namespace {

constexpr std::size_t StatementsPerCancelCheck = 256;
// More declarations without a semicolon between are no slips, and reading on would take too long.
constexpr std::size_t MostSplits = 16;

// Statements of the usual translators.
constexpr std::string_view ForeignRules[] = {"include", "mixin", "extend", "use", "forward", "each",  "while",
                                             "error",   "debug", "warn",   "for", "return",  "plugin"};
// Statements without a block.
constexpr std::string_view Plain[] = {"import", "charset", "namespace"};

bool IsKnownProperty(std::string_view name)
{
    return StyleTables::FindProperty(name) != StyleTables::NoSyntax;
}

// Also one of an author's own, or of one browser.
bool IsProperty(std::string_view name)
{
    return name.starts_with("--") || IsKnownProperty(WithoutPrefix(name));
}

} // namespace

void CStyleReader::Read(SyntaxParser::EStyleKind kind)
{
    const bool isAttribute = kind == SyntaxParser::EStyleKind::Attribute;
    m_levels.push_back(
        {{m_text.Size(), false}, isAttribute ? EBlock::Style : EBlock::Rules, isAttribute, false});
    TTokenIndex i = 0;
    for (std::size_t count = 1; !m_levels.empty(); ++count) {
        if (count % StatementsPerCancelCheck == 0 && m_text.Places().IsCancelled())
            return;
        const SLevel level = Level();
        i = m_text.SkipBlanks(i, level.end.end);
        if (i < level.end.end) {
            i = ReadStatement(i);
            continue;
        }
        i = std::max(i, m_blocks.After(level.end));
        m_levels.pop_back();
        m_isAfterBare = false;
        if (!level.isSilent && !m_levels.empty())
            m_rules.EndRule();
    }
}

TTokenIndex CStyleReader::ReadStatement(TTokenIndex index)
{
    if (m_entered != index && m_blocks.implied.contains(index))
        return EnterBare(index);
    switch (m_text.KindOf(index)) {
    case EStyleTokenKind::Semicolon:
    case EStyleTokenKind::Cdo:
    case EStyleTokenKind::Cdc: return index + 1;
    case EStyleTokenKind::CurlyClose:
    case EStyleTokenKind::RoundClose:
    case EStyleTokenKind::SquareClose: return index + 1; // reported with the blocks
    case EStyleTokenKind::CurlyOpen: return EnterBare(index);
    case EStyleTokenKind::AtKeyword: return ReadAtRule(index);
    default: break;
    }
    if (m_text.IsIsland(index) && NameAt(index) == m_text.Size())
        return index + 1;
    if (m_text.IsSign(index, L'#') && m_text.Is(index + 1, EStyleTokenKind::CurlyOpen))
        m_rules.FindForeign();
    const EBlock block = Level().block;
    if (block == EBlock::Rules || block == EBlock::Keyframes)
        return ReadRule(index);
    return block == EBlock::Declarations || IsDeclaration(index) ? ReadDeclaration(index) : ReadRule(index);
}

TTokenIndex CStyleReader::ReadAtRule(TTokenIndex index)
{
    SStyleRule rule;
    rule.begin = index;
    rule.name = m_text.NameOf(index);
    rule.parent = Level().block;
    rule.isNested = Level().isNested;
    if (std::ranges::find(ForeignRules, rule.name) != std::end(ForeignRules) ||
        m_text.Is(index + 1, EStyleTokenKind::Colon))
        m_rules.FindForeign();
    TTokenIndex end = FindEnd(index + 1);
    const bool isPlain = std::ranges::find(Plain, rule.name) != std::end(Plain);
    if (isPlain)
        end = EndOfImport({index + 1, end}, end);
    rule.prelude = m_text.Trimmed({index + 1, end});
    rule.isFaulty = IsFaulty({index, end});
    rule.block = BlockOf(rule.name, Level().block);
    if (!isPlain && IsOpen(end))
        return Enter(std::move(rule), end);
    if (!Level().isSilent)
        m_rules.BeginRule(rule);
    return end;
}

// A rule without a block ends with its line when its semicolon is lost.
TTokenIndex CStyleReader::EndOfImport(STokens prelude, TTokenIndex end) const
{
    if (end >= m_text.Size() || m_text.Is(end, EStyleTokenKind::Semicolon))
        for (TTokenIndex i = prelude.begin; i < end; ++i)
            if (m_text.Is(i, EStyleTokenKind::AtKeyword)) {
                end = i;
                break;
            }
    if (m_text.Is(end, EStyleTokenKind::Semicolon) || end >= Level().end.end)
        return end;
    for (TTokenIndex i = prelude.begin; i < end; ++i)
        if (m_text.Is(i, EStyleTokenKind::BadString)) // has swallowed the semicolon
            return i + 1;
    TTokenIndex next = end;
    for (TTokenIndex i = m_text.SkipBlanks(prelude.begin); i < end && next == end; ++i)
        if (m_text.IsBlank(i) && m_text.HasNewline(i))
            next = m_text.SkipBlanks(i);
    m_findings.Missing(Code::MissingStyleSemicolon, next, L";");
    return next;
}

TTokenIndex CStyleReader::ReadRule(TTokenIndex index)
{
    SStyleRule rule;
    rule.begin = index;
    rule.parent = Level().block;
    rule.isNested = Level().isNested;
    const TTokenIndex end = FindEnd(index);
    rule.prelude = m_text.Trimmed({index, end});
    rule.isFaulty = IsFaulty({index, end});
    rule.block = BlockOf({}, Level().block);
    if (IsOpen(end))
        return Enter(std::move(rule), end);
    if (m_text.IsSign(index, L'$'))
        m_rules.FindForeign();
    if (!rule.isFaulty && !Level().isSilent && !m_text.IsTouched(STokens{index, end}))
        m_findings.Report(Code::UnexpectedInStyle, rule.prelude, {},
                          {{}, {}, {m_findings.Remove(rule.prelude)}});
    return std::max(end, index + 1);
}

TTokenIndex CStyleReader::Enter(SStyleRule rule, TTokenIndex open)
{
    const auto implied = m_blocks.implied.find(open);
    const bool isImplied = implied != m_blocks.implied.end() && m_entered != open;
    SLevel level{isImplied ? implied->second : m_blocks.ends[open], rule.block,
                 Level().isNested || (rule.name.empty() && Level().block != EBlock::Keyframes),
                 Level().isSilent};
    if (rule.prelude.IsEmpty() && rule.name.empty())
        level.block = Level().block == EBlock::Keyframes ? EBlock::Declarations : EBlock::Style;
    if (m_levels.size() > 1 && Level().block == EBlock::Declarations && rule.name.empty())
        level.block = EBlock::Unknown;
    rule.block = level.block;
    rule.hasBlock = true;
    if (!level.isSilent)
        m_rules.BeginRule(rule);
    level.isSilent |= level.block == EBlock::Unknown;
    if (level.isSilent && !Level().isSilent)
        m_rules.EndRule();
    m_levels.push_back(level);
    m_isAfterBare = false;
    if (!isImplied)
        return open + 1;
    m_entered = open;
    return open;
}

// A block with nothing before it, which was reported with the blocks.
TTokenIndex CStyleReader::EnterBare(TTokenIndex open)
{
    SStyleRule rule;
    rule.begin = open;
    rule.prelude = {open, open};
    rule.isFaulty = true;
    return Enter(std::move(rule), open);
}

// Whether a statement in a rule with a selector declares something; else it is a rule itself.
bool CStyleReader::IsDeclaration(TTokenIndex index) const
{
    const TTokenIndex name = NameAt(index);
    if (name < m_text.Size() && m_text.NameOf(name).starts_with("--"))
        return true;
    if (!IsOpen(FindEnd(index)))
        return true;
    if (name >= m_text.Size())
        return false;
    const TTokenIndex colon = m_text.SkipBlanks(name + 1);
    if (!IsKnownProperty(m_text.NameOf(name)))
        return false;
    const TTokenIndex end = FindEnd(index);
    for (TTokenIndex i = colon; i < end; ++i)
        if (m_text.IsBlank(i) && m_text.HasNewline(i) && m_text.SkipBlanks(i) < end)
            return true;
    return false;
}

// The name of a declaration that may begin here; Size(): none does.
TTokenIndex CStyleReader::NameAt(TTokenIndex index) const
{
    if (m_text.Is(index, EStyleTokenKind::Delim) && index + 1 < m_text.Size() &&
        std::wstring_view(L"*#+&$").find(m_text.Text(index)[0]) != std::wstring_view::npos)
        ++index;
    const bool isName = m_text.Is(index, EStyleTokenKind::Ident) || m_text.Is(index, EStyleTokenKind::Hash);
    return isName && m_text.Is(m_text.SkipBlanks(index + 1), EStyleTokenKind::Colon) ? index : m_text.Size();
}

TTokenIndex CStyleReader::ReadDeclaration(TTokenIndex index)
{
    const TTokenIndex name = NameAt(index);
    if (name == m_text.Size())
        return ReadWithoutColon(index, index);
    m_isAfterBare = false;
    if (m_text.IsSign(index, L'$'))
        m_rules.FindForeign();
    SStyleDeclaration declaration;
    declaration.name = name;
    declaration.isHack = name != index || m_text.Is(name, EStyleTokenKind::Hash);
    const TTokenIndex begin = m_text.SkipBlanks(name + 1) + 1;
    TTokenIndex end = FindEnd(begin, m_text.NameOf(name).starts_with("--"));
    if (IsOpen(end) && Level().block == EBlock::Style) {
        // A nested rule follows, and the line before it is not ended.
        for (TTokenIndex i = end; i-- > begin;)
            if (m_text.IsBlank(i) && m_text.HasNewline(i) && m_text.SkipBlanks(i) < end) {
                end = m_text.SkipBlanks(i);
                break;
            }
        if (!Level().isSilent)
            m_findings.Missing(Code::MissingStyleSemicolon, end, L";");
    }
    return ReadValue(declaration, begin, end);
}

TTokenIndex CStyleReader::ReadValue(SStyleDeclaration declaration, TTokenIndex begin, TTokenIndex end)
{
    const std::string name = m_text.NameOf(declaration.name);
    const bool isFree = name.find("filter") != std::string::npos || Level().isSilent;
    declaration.value = m_text.Trimmed({begin, end});
    declaration.isFaulty = IsFaulty({declaration.name, end});
    TTokenIndex next = end;
    const TTokenIndex colon = isFree || declaration.isFaulty
                                  ? m_text.Size()
                                  : FindLostSemicolon(declaration.value, name.starts_with("--"));
    const bool isSplit =
        colon < m_text.Size() && m_splits < MostSplits && !ReportColon(declaration, declaration.value, colon);
    m_splits = isSplit ? m_splits + 1 : 0;
    if (isSplit)
        next = m_text.Before(colon);
    if (!Level().isSilent)
        m_rules.Declare(declaration);
    return next;
}

// The colon of a declaration that follows without a semicolon between; Size(): there is none.
TTokenIndex CStyleReader::FindLostSemicolon(STokens value, bool isCustom) const
{
    for (TTokenIndex i = value.begin; i < value.end; i = Skip(i)) {
        if (!m_text.Is(i, EStyleTokenKind::Colon))
            continue;
        // What an author names himself may hold colons, but hardly the name of a declaration on a new line.
        const TTokenIndex name = m_text.Before(i);
        const bool isLine = name > value.begin && m_text.IsBlank(name - 1) && m_text.HasNewline(name - 1);
        if (isCustom && i > value.begin && !(isLine && m_text.Is(name, EStyleTokenKind::Ident)))
            continue;
        return m_text.IsTouched(value) ? m_text.Size() : i;
    }
    return m_text.Size();
}

// Whether what follows the colon is lost; otherwise the name before it begins the next declaration.
bool CStyleReader::ReportColon(SStyleDeclaration& declaration, STokens value, TTokenIndex colon)
{
    const TTokenIndex before = m_text.Before(colon);
    const std::string first = m_text.NameOf(declaration.name);
    if (colon == value.begin || !IsProperty(first)) {
        declaration.isFaulty = true;
        if (IsProperty(first))
            m_findings.Report(Code::UnexpectedInStyle, colon, {},
                              {{}, {}, {m_findings.Remove({colon, colon + 1})}});
        return true;
    }
    const std::string name = m_text.NameOf(before);
    const TTokenIndex comma = m_text.Before(before);
    if (m_text.Is(before, EStyleTokenKind::Ident) && before > value.begin &&
        (m_text.IsBlank(before - 1) || comma == before - 1) &&
        (IsProperty(name) || m_text.IsBlank(before - 1))) {
        const bool isComma = m_text.Is(comma, EStyleTokenKind::Comma);
        declaration.value = m_text.Trimmed({value.begin, isComma ? comma : before});
        declaration.isFaulty = isComma;
        m_findings.Missing(Code::MissingStyleSemicolon, before, L";");
        return false;
    }
    declaration.isFaulty = true;
    // Without a blank, the next name hangs on the last word.
    const SMarkupSpan span = m_text[before].span;
    for (std::size_t i = 1; i < name.size(); ++i)
        if (IsKnownProperty(std::string_view(name).substr(i)) && span.end - span.begin == name.size()) {
            const SMarkupSpan place{span.begin + i, span.begin + i};
            CMarkupReport& report = m_findings.Plain();
            report.Add(Code::MissingStyleSemicolon, place,
                       {{report.Source("found", {place.begin, span.end})},
                        {},
                        {report.Fix(EFix::Insert, place, L";")}});
            return true;
        }
    m_findings.Report(Code::UnexpectedInStyle, colon);
    return true;
}

// A statement between declarations that has no name, or no colon after it.
TTokenIndex CStyleReader::ReadWithoutColon(TTokenIndex index, TTokenIndex name)
{
    TTokenIndex end = FindEnd(index);
    for (TTokenIndex i = index + 1; i < end; ++i) // the next line may be a declaration of its own
        if (m_text.IsBlank(i) && m_text.HasNewline(i) && NameAt(m_text.SkipBlanks(i)) < end)
            end = m_text.SkipBlanks(i);
    const STokens all = m_text.Trimmed({index, end});
    const bool isBare = m_text.Is(name, EStyleTokenKind::Ident) && all.end == index + 1;
    const bool wasBare = std::exchange(m_isAfterBare, isBare);
    if (IsFaulty({index, end}) || Level().isSilent || m_text.IsTouched(all) || wasBare)
        return std::max(end, index + 1);
    if (m_text.Is(name, EStyleTokenKind::Ident))
        m_findings.Missing(Code::MissingStyleColon, name + 1, L":", {{"name", m_text.NameOf(name)}});
    else
        m_findings.Report(Code::UnexpectedInStyle, all, {}, {{}, {}, {m_findings.Remove(all)}});
    return std::max(end, index + 1);
}

// Where a statement ends: at a ";", at the "{" of its block, or with the block around it.
TTokenIndex CStyleReader::FindEnd(TTokenIndex index, bool passesBlocks) const
{
    const TTokenIndex end = Level().end.end;
    auto implied = m_blocks.implied.upper_bound(index);
    for (TTokenIndex i = index; i < end;) {
        while (implied != m_blocks.implied.end() && implied->first < i)
            ++implied;
        if (implied != m_blocks.implied.end() && implied->first == i)
            return i;
        if (m_text.Is(i, EStyleTokenKind::Semicolon) || m_text.Is(i, EStyleTokenKind::CurlyClose) ||
            (m_text.Is(i, EStyleTokenKind::CurlyOpen) && !passesBlocks))
            return i;
        if (i > index && m_text.Is(i - 1, EStyleTokenKind::BadString) && Level().block != EBlock::Rules)
            return i;
        i = std::max(Skip(i), i + 1);
    }
    return end;
}

bool CStyleReader::IsOpen(TTokenIndex index) const
{
    return m_text.Is(index, EStyleTokenKind::CurlyOpen) ||
           (index < Level().end.end && m_entered != index && m_blocks.implied.contains(index));
}

// Past a token and what it holds.
TTokenIndex CStyleReader::Skip(TTokenIndex index) const
{
    const SBlocks::SEnd& end = m_blocks.ends[index];
    return end.end > index ? m_blocks.After(end) : index + 1;
}

bool CStyleReader::IsFaulty(STokens tokens) const
{
    const auto fault = std::ranges::lower_bound(m_blocks.faults, tokens.begin, {}, &SBlockFault::at);
    if (fault != m_blocks.faults.end() && fault->at < tokens.end)
        return true;
    for (TTokenIndex i = tokens.begin; i < tokens.end; ++i)
        if (m_text.Is(i, EStyleTokenKind::BadString) || m_text.Is(i, EStyleTokenKind::BadUrl) ||
            m_text[i].unfinished)
            return true;
    return false;
}

} // namespace Kesh::CodeAnalyzer
