#include "Styles/StyleBlocks.h"

#include "Styles/StyleTables.h"

#include <algorithm>
#include <array>
#include <utility>

namespace Kesh::CodeAnalyzer {

namespace {

constexpr std::size_t TokensPerCancelCheck = 1024;
constexpr std::size_t MostRepairs = 16;

bool Contains(std::span<const std::string_view> names, std::string_view name)
{
    return std::ranges::find(names, name) != names.end();
}

constexpr std::string_view Groups[] = {"media",    "supports",       "layer", "container",
                                       "document", "starting-style", "when",  "else"};
constexpr std::string_view Holders[] = {
    "font-face",    "page",          "property", "counter-style",      "view-transition",
    "position-try", "color-profile", "viewport", "font-palette-values"};
// Arguments of these may hold whole blocks of code.
constexpr std::string_view Free[] = {"if", "expression", "var", "env"};
// No rule with a selector may hold these.
constexpr std::string_view TopOnly[] = {"keyframes", "font-face", "import",   "charset",
                                        "namespace", "page",      "property", "counter-style"};

} // namespace

std::string_view WithoutPrefix(std::string_view name)
{
    if (name.size() < 2 || name[0] != '-' || name[1] == '-')
        return name;
    const std::size_t end = name.find('-', 1);
    return end == std::string_view::npos ? name : name.substr(end + 1);
}

EBlock BlockOf(std::string_view rule, EBlock parent)
{
    const std::string_view name = WithoutPrefix(rule);
    if (rule.empty())
        return parent == EBlock::Keyframes ? EBlock::Declarations : EBlock::Style;
    if (Contains(Groups, name))
        return parent == EBlock::Rules ? EBlock::Rules : EBlock::Style;
    if (name == "scope")
        return EBlock::Style;
    if (name == "keyframes")
        return EBlock::Keyframes;
    return Contains(Holders, name) || parent == EBlock::Declarations ? EBlock::Declarations : EBlock::Unknown;
}

SBlocks CBlockFinder::Find()
{
    SBlocks found = Run(ERepair::None, 0);
    if (found.open > MostRepairs || found.stray > MostRepairs) {
        // A slip leaves one; this is no slip.
    } else if (found.open > 0) {
        const std::size_t missing = found.open;
        found = Run(ERepair::Close, missing);
        if (found.open > 0)
            found = Run(ERepair::CloseAny, missing);
    } else if (found.stray > 0) {
        found = Run(ERepair::Open, found.stray);
    }
    std::ranges::stable_sort(found.faults, {}, &SBlockFault::at);
    return found;
}

SBlocks CBlockFinder::Run(ERepair repair, std::size_t budget)
{
    m_repair = repair;
    m_budget = budget;
    m_blocks = {};
    m_blocks.ends.resize(m_text.Size());
    m_open.assign(1, {});
    m_open[0].block = m_kind == SyntaxParser::EStyleKind::Attribute ? EBlock::Style : EBlock::Rules;
    m_line = 0;
    m_indent = 0;
    m_isFirst = true;
    for (TTokenIndex i = 0; i < m_text.Size(); ++i) {
        Read(i);
        if (i % TokensPerCancelCheck == 0 && m_text.Places().IsCancelled())
            break;
    }
    EndAll();
    return std::move(m_blocks);
}

void CBlockFinder::Read(TTokenIndex index)
{
    if (m_text.IsBlank(index)) {
        if (m_text.HasNewline(index)) {
            const std::wstring_view text = m_text.Text(index);
            ++m_line;
            m_isFirst = true;
            m_indent = text.size() - 1 - text.find_last_of(L"\n\r\f");
        }
        return;
    }
    switch (m_text.KindOf(index)) {
    case EStyleTokenKind::Semicolon: ReadSemicolon(index); break;
    case EStyleTokenKind::CurlyOpen: OpenCurly(index); break;
    case EStyleTokenKind::CurlyClose: CloseCurly(index, true); break;
    case EStyleTokenKind::RoundClose: CloseInner(index, EStyleTokenKind::RoundOpen); break;
    case EStyleTokenKind::SquareClose: CloseInner(index, EStyleTokenKind::SquareOpen); break;
    case EStyleTokenKind::Cdo:
    case EStyleTokenKind::Cdc: break;
    default: ReadStatement(index);
    }
    m_isFirst = false;
}

void CBlockFinder::ReadStatement(TTokenIndex index)
{
    if (IsInCurly() && Top().statement == None && !m_text.IsIsland(index)) {
        while (MendStatement(index)) {
        }
        Top().statement = index;
        Top().statementIndent = m_indent;
        Top().isIndented |= Top().line < m_line && m_indent > Top().indent;
    }
    switch (m_text.KindOf(index)) {
    case EStyleTokenKind::Function:
    case EStyleTokenKind::RoundOpen: Push(index, EStyleTokenKind::RoundOpen); break;
    case EStyleTokenKind::SquareOpen: Push(index, EStyleTokenKind::SquareOpen); break;
    case EStyleTokenKind::BadString: ReadBadString(index); break;
    default: break;
    }
}

void CBlockFinder::ReadSemicolon(TTokenIndex index)
{
    if (!IsInCurly() && IsHolder(Top()))
        return;
    EndInner(index);
    if (MendPrelude(index))
        Top().statement = None;
    else if (Top().statement == None && Top().block == EBlock::Rules && !IsAfterIsland(index)) {
        Fault(SBlockFault::Stray, index);
        m_blocks.hidden.push_back(index);
    }
    Top().statement = None;
}

void CBlockFinder::OpenCurly(TTokenIndex index)
{
    if (!IsInCurly() && IsHolder(Top())) {
        Push(index, EStyleTokenKind::CurlyOpen);
        return;
    }
    EndInner(index);
    const TTokenIndex statement = Top().statement;
    if (statement == None) {
        const bool isKnown = !IsAfterIsland(index);
        if (isKnown)
            Fault(SBlockFault::Stray, index);
        if (isKnown && m_repair != ERepair::None && m_repair != ERepair::Open && m_budget > 0) {
            m_blocks.hidden.push_back(index);
            Repaired();
            return;
        }
    } else if (m_text.Is(statement, EStyleTokenKind::AtKeyword)) {
        MendGroup(index);
    } else if ((m_repair == ERepair::Close || m_repair == ERepair::CloseAny) && m_budget > 0) {
        MendClose(index);
    }
    const TTokenIndex first = Top().statement;
    const std::string rule =
        first != None && m_text.Is(first, EStyleTokenKind::AtKeyword) ? m_text.NameOf(first) : std::string();
    const EBlock block = BlockOf(rule, Top().block);
    const std::size_t indent = first == None ? m_indent : Top().statementIndent;
    Push(index, EStyleTokenKind::CurlyOpen);
    Top().block = block;
    Top().indent = indent;
}

void CBlockFinder::CloseCurly(TTokenIndex index, bool isToken)
{
    EndInner(index);
    if (isToken && MendSwapped(index))
        return;
    MendPrelude(index);
    if (isToken && m_isFirst && (m_repair == ERepair::Close || m_repair == ERepair::CloseAny))
        while (m_budget > 0 && m_open.size() > 2 && Top().indent > m_indent && Top().line < m_line)
            CloseEarly(index);
    const bool isStray = m_open.size() == 1;
    bool isDoubled = false;
    if (!isStray && m_repair == ERepair::Open && m_budget > 0 && Top().line < m_line)
        isDoubled = m_isFirst ? m_indent > Top().indent && m_indent > 0
                              : index > 0 && m_text.Is(index - 1, EStyleTokenKind::CurlyClose);
    if (isStray || isDoubled) {
        m_blocks.stray += isStray;
        Fault(SBlockFault::Stray, index);
        m_blocks.hidden.push_back(index);
        Repaired();
        return;
    }
    Pop(index, isToken);
    Top().statement = IsInCurly() ? None : Top().statement;
}

// "{" and "}" within "(" belong to some functions only; for all others the bracket ends before them.
bool CBlockFinder::IsHolder(const SOpen& open) const
{
    if (!m_text.Is(open.at, EStyleTokenKind::Function))
        return false;
    const std::string name = m_text.NameOf(open.at);
    return Contains(Free, name) || name.starts_with("--");
}

void CBlockFinder::CloseInner(TTokenIndex index, EStyleTokenKind open)
{
    if (!IsInCurly() && Top().kind != open && m_open.size() > 1 && m_open[m_open.size() - 2].kind == open) {
        if (!m_isSpoilt)
            Fault(SBlockFault::NotClosed, Top().at);
        Pop(index, false);
    }
    if (Top().kind == open) {
        Pop(index, true);
        return;
    }
    if (IsInCurly() && Top().statement == None)
        Top().statement = index;
    Fault(SBlockFault::Stray, index);
}

// A string that its line cuts off has swallowed the brackets after its end.
void CBlockFinder::ReadBadString(TTokenIndex index)
{
    m_isSpoilt = true;
    for (const wchar_t c : m_text.Text(index)) {
        if (c == L')' || c == L']') {
            const auto kind = c == L')' ? EStyleTokenKind::RoundOpen : EStyleTokenKind::SquareOpen;
            if (Top().kind == kind)
                Pop(index + 1, false);
        } else if (c == L'{' && IsInCurly()) {
            OpenImplied(index + 1, SBlockFault::MissingOpen, true);
        } else if (c == L'}' && IsInCurly() && m_open.size() > 1) {
            Pop(index + 1, false);
            Top().statement = None;
        } else if (c == L';') {
            EndInner(index + 1);
            Top().statement = None;
        }
    }
}

void CBlockFinder::EndAll()
{
    EndInner(m_text.Size());
    MendPrelude(m_text.Size());
    const TTokenIndex innermost = Top().at;
    bool isKnown = false;
    while (m_open.size() > 1) {
        isKnown |= Top().isSpoilt || Top().isImplied;
        m_blocks.open += Top().kind == EStyleTokenKind::CurlyOpen && !Top().isImplied;
        Pop(m_text.Size(), false);
    }
    if (m_blocks.open > 0 && !isKnown)
        Fault(SBlockFault::NotClosed, innermost);
}

// Whether the block ends before this statement.
bool CBlockFinder::MendStatement(TTokenIndex index)
{
    if (m_budget == 0 || m_open.size() == 1 || (m_repair != ERepair::Close && m_repair != ERepair::CloseAny))
        return false;
    const SOpen& block = Top();
    if (block.block == EBlock::Rules || block.isImplied) {
        // Not all sheets indent what is in a group.
        const bool isOut = m_indent < block.indent || (m_indent == block.indent && block.isIndented);
        if (!m_isFirst || !isOut || block.line == m_line)
            return false;
    } else if (!IsMisplaced(index)) {
        const bool isOut = m_isFirst && m_indent <= block.indent && block.line < m_line;
        const bool isNested = m_text.IsSign(index, L'&') || m_text.Is(index, EStyleTokenKind::AtKeyword);
        if (!(isOut || (m_repair == ERepair::CloseAny && !isNested)) || !IsRule(index))
            return false;
    }
    CloseEarly(index);
    return m_budget > 0;
}

// A group whose own "{" is lost: the one here is that of its first rule.
void CBlockFinder::MendGroup(TTokenIndex index)
{
    const TTokenIndex statement = Top().statement;
    const bool isRule = IsProperty(m_text.SkipBlanks(index + 1));
    if (!IsGroup(statement) || !(isRule || (m_repair == ERepair::Open && m_budget > 0)))
        return;
    TTokenIndex at = LastLineIn({statement, index});
    for (TTokenIndex i = m_text.Before(index); at == None && isRule && i > statement; --i)
        if (m_text.IsBlank(i - 1))
            at = i;
    if (at == None || at <= m_text.SkipBlanks(statement + 1))
        return;
    OpenImplied(at, SBlockFault::MissingOpen);
    Top().statement = at;
    Repaired();
}

// The known name of a declaration.
bool CBlockFinder::IsProperty(TTokenIndex token) const
{
    return m_text.Is(token, EStyleTokenKind::Ident) &&
           StyleTables::FindProperty(WithoutPrefix(m_text.NameOf(token))) != StyleTables::NoSyntax &&
           m_text.Is(m_text.SkipBlanks(token + 1), EStyleTokenKind::Colon);
}

// A "}" for a "{": a selector is before it, and a declaration after it.
bool CBlockFinder::MendSwapped(TTokenIndex index)
{
    const SOpen& block = Top();
    const TTokenIndex next = m_text.SkipBlanks(index + 1);
    if ((block.block != EBlock::Rules && block.block != EBlock::Keyframes) || block.statement == None ||
        m_text.Is(block.statement, EStyleTokenKind::AtKeyword) || !IsProperty(next) ||
        IsProperty(DeclarationIn({block.statement, index})))
        return false;
    Fault(SBlockFault::Stray, index);
    m_blocks.hidden.push_back(index);
    OpenImplied(next, SBlockFault::MissingOpen, true);
    return true;
}

// A rule without its "{": a declaration where only rules are, at its end.
bool CBlockFinder::MendPrelude(TTokenIndex index)
{
    SOpen& block = Top();
    const bool isWanted = block.block == EBlock::Rules || block.block == EBlock::Keyframes;
    const TTokenIndex first = block.statement;
    if (first == None)
        return false;
    const bool isAtRule = m_text.Is(first, EStyleTokenKind::AtKeyword);
    if (isAtRule && BlockOf(m_text.NameOf(first), block.block) != EBlock::Declarations)
        return false;
    if (!isWanted && !(m_repair == ERepair::Open && m_budget > 0 && block.block == EBlock::Style))
        return false;
    const TTokenIndex declaration = DeclarationIn({first, index});
    if (declaration == None)
        return false;
    if (!isWanted && (declaration == first || IsProperty(first)))
        return false;
    if (m_text.IsTouched(STokens{first, index}))
        return false;
    OpenImplied(declaration, declaration == first ? SBlockFault::Outside : SBlockFault::MissingOpen);
    Repaired();
    return true;
}

// A declaration that runs into the selector of the next rule, whose "}" is lost.
bool CBlockFinder::MendClose(TTokenIndex index)
{
    const TTokenIndex first = Top().statement;
    if (m_open.size() == 1 || Top().block == EBlock::Rules || !m_text.Is(first, EStyleTokenKind::Ident))
        return false;
    const TTokenIndex colon = m_text.SkipBlanks(first + 1);
    if (!m_text.Is(colon, EStyleTokenKind::Colon) ||
        StyleTables::FindProperty(m_text.NameOf(first)) == StyleTables::NoSyntax)
        return false;
    TTokenIndex at = LastLineIn({colon, index});
    for (TTokenIndex i = colon + 2; at == None && i < index; ++i)
        if (m_text.IsSign(i, L'.') || m_text.Is(i, EStyleTokenKind::Hash) || m_text.IsBlank(i))
            at = m_text.SkipBlanks(i);
    if (at == None || at >= index)
        return false;
    CloseEarly(at);
    Top().statement = at;
    Top().statementIndent = m_indent;
    return true;
}

void CBlockFinder::CloseEarly(TTokenIndex before)
{
    Fault(SBlockFault::MissingClose, before, Top().at);
    Pop(before, false);
    Top().statement = None;
    Repaired();
}

void CBlockFinder::OpenImplied(TTokenIndex before, SBlockFault::EKind fault, bool isSpoilt)
{
    if (!isSpoilt)
        Fault(fault, before);
    const EBlock block = Top().block == EBlock::Keyframes ? EBlock::Declarations : EBlock::Style;
    const TTokenIndex first = Top().statement;
    const bool isGroup = first != None && m_text.Is(first, EStyleTokenKind::AtKeyword);
    const std::size_t indent = first == None ? m_indent : Top().statementIndent;
    Push(before, EStyleTokenKind::CurlyOpen);
    Top().isImplied = true;
    Top().isSpoilt = isSpoilt;
    Top().indent = indent;
    Top().block = isGroup ? BlockOf(m_text.NameOf(first), m_open[m_open.size() - 2].block) : block;
    m_blocks.implied[before] = {m_text.Size(), false};
}

// Brackets still open where a statement ends.
void CBlockFinder::EndInner(TTokenIndex index)
{
    TTokenIndex outermost = None;
    while (!IsInCurly()) {
        outermost = Top().at;
        Pop(index, false);
    }
    if (outermost != None && !m_isSpoilt)
        Fault(SBlockFault::NotClosed, outermost);
    m_isSpoilt = false;
}

bool CBlockFinder::IsGroup(TTokenIndex statement)
{
    const EBlock block = BlockOf(m_text.NameOf(statement), Top().block);
    return block == EBlock::Rules || block == EBlock::Keyframes;
}

bool CBlockFinder::IsAfterIsland(TTokenIndex index) const
{
    const TTokenIndex before = m_text.Before(index);
    return before < m_text.Size() && m_text.IsIsland(before);
}

// The last name before a colon that begins after a blank, or the first token of all.
TTokenIndex CBlockFinder::DeclarationIn(STokens tokens) const
{
    TTokenIndex colon = None;
    for (TTokenIndex i = tokens.end; i-- > tokens.begin;) {
        if (m_text.Is(i, EStyleTokenKind::Colon))
            colon = i;
        else if (m_text.Is(i, EStyleTokenKind::Ident) && colon != None && m_text.SkipBlanks(i + 1) == colon &&
                 (i == tokens.begin || m_text.IsBlank(i - 1)))
            return i;
    }
    return colon == None ? None : tokens.begin;
}

// The first token of the last line.
TTokenIndex CBlockFinder::LastLineIn(STokens tokens) const
{
    for (TTokenIndex i = tokens.end; i-- > tokens.begin;)
        if (m_text.Is(i, EStyleTokenKind::Space) && m_text.HasNewline(i) && m_text.SkipBlanks(i) < tokens.end)
            return m_text.SkipBlanks(i);
    return None;
}

bool CBlockFinder::IsRule(TTokenIndex index) const
{
    const TTokenIndex colon = m_text.SkipBlanks(index + 1);
    if (m_text.Is(index, EStyleTokenKind::Ident) && m_text.Is(colon, EStyleTokenKind::Colon) &&
        colon + 1 < m_text.Size() && m_text.IsBlank(colon + 1))
        return false;
    for (TTokenIndex i = index; i < m_text.Size(); ++i) {
        if (m_text.Is(i, EStyleTokenKind::CurlyOpen))
            return true;
        if (m_text.Is(i, EStyleTokenKind::Semicolon) || m_text.Is(i, EStyleTokenKind::CurlyClose))
            return false;
    }
    return false;
}

bool CBlockFinder::IsMisplaced(TTokenIndex index) const
{
    return m_text.Is(index, EStyleTokenKind::AtKeyword) &&
           Contains(TopOnly, WithoutPrefix(m_text.NameOf(index)));
}

void CBlockFinder::Push(TTokenIndex at, EStyleTokenKind kind)
{
    SOpen open;
    open.at = at;
    open.kind = kind;
    open.line = m_line;
    m_open.push_back(open);
}

void CBlockFinder::Pop(TTokenIndex end, bool isClosed)
{
    const SBlocks::SEnd place{end, isClosed};
    if (Top().isImplied)
        m_blocks.implied[Top().at] = place;
    else
        m_blocks.ends[Top().at] = place;
    m_open.pop_back();
}

void CBlockFinder::Fault(SBlockFault::EKind kind, TTokenIndex at, TTokenIndex related)
{
    m_blocks.faults.push_back({kind, at, related});
}

} // namespace Kesh::CodeAnalyzer
