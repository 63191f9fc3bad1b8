#pragma once

#include "Styles/StyleText.h"

#include <map>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// What is wrong with the brackets of a style.
struct SBlockFault
{
    enum EKind : std::uint8_t {
        NotClosed,    ///< the bracket at `at`
        MissingClose, ///< "}" before `at`; the block opens at `related`
        MissingOpen,  ///< "{" before `at`
        Stray,        ///< the token at `at`
        Outside       ///< the declaration at `at` stands in no rule
    };

    EKind kind;
    TTokenIndex at;
    TTokenIndex related = 0;
};

/// What belongs inside a pair of braces.
enum class EBlock : std::uint8_t {
    Rules,        ///< of the sheet, or of a conditional group in it
    Style,        ///< declarations and nested rules
    Keyframes,    ///< rules whose selectors are places in time
    Declarations, ///< and at-rules that hold declarations
    Unknown
};

/// The brackets of a style and where they end, slips mended.
struct SBlocks
{
    struct SEnd
    {
        TTokenIndex end = 0;   ///< of the content
        bool isClosed = false; ///< by the token at `end`
    };

    std::vector<SEnd> ends;              ///< for each token that opens
    std::map<TTokenIndex, SEnd> implied; ///< blocks whose "{" is missing before this token
    std::vector<SBlockFault> faults;     ///< in the text's order
    std::vector<TTokenIndex> hidden;     ///< tokens to pass over
    std::size_t open = 0;                ///< braces not closed at the end
    std::size_t stray = 0;               ///< "}" that close nothing

    TTokenIndex After(const SEnd& end) const { return end.end + end.isClosed; }
};

/// The content of a rule by its at-keyword; empty: a rule with a selector.
EBlock BlockOf(std::string_view rule, EBlock parent);
/// "keyframes" for "-webkit-keyframes".
std::string_view WithoutPrefix(std::string_view name);

/// Finds which brackets belong together. Where the braces of a style do not come out even, indentation and
/// what may stand where tell which one was lost. Linear in time; no recursion.
class CBlockFinder
{
public:
    CBlockFinder(const CStyleText& text, SyntaxParser::EStyleKind kind) : m_text(text), m_kind(kind) {}

    SBlocks Find();

private:
    enum class ERepair : std::uint8_t { None, Close, CloseAny, Open };

    struct SOpen
    {
        TTokenIndex at = 0;
        EStyleTokenKind kind = EStyleTokenKind::CurlyOpen;
        bool isImplied = false;
        bool isSpoilt = false; ///< its "{" was swallowed
        EBlock block = EBlock::Unknown;
        std::size_t indent = 0;
        std::size_t line = 0;
        bool isIndented = false;      ///< what is in it
        TTokenIndex statement = None; ///< the first token of the one being read
        std::size_t statementIndent = 0;
    };

    static constexpr TTokenIndex None = static_cast<TTokenIndex>(-1);

    SBlocks Run(ERepair repair, std::size_t budget);
    void Read(TTokenIndex index);
    void ReadStatement(TTokenIndex index);
    void ReadSemicolon(TTokenIndex index);
    void OpenCurly(TTokenIndex index);
    void CloseCurly(TTokenIndex index, bool isToken);
    void CloseInner(TTokenIndex index, EStyleTokenKind open);
    void ReadBadString(TTokenIndex index);
    void EndAll();

    bool MendStatement(TTokenIndex index);
    void MendGroup(TTokenIndex index);
    bool MendSwapped(TTokenIndex index);
    bool MendPrelude(TTokenIndex index);
    bool MendClose(TTokenIndex index);
    void CloseEarly(TTokenIndex before);
    void OpenImplied(TTokenIndex before, SBlockFault::EKind fault, bool isSpoilt = false);
    void EndInner(TTokenIndex index);
    TTokenIndex DeclarationIn(STokens tokens) const;
    TTokenIndex LastLineIn(STokens tokens) const;
    bool IsRule(TTokenIndex index) const;
    bool IsMisplaced(TTokenIndex index) const;
    bool IsHolder(const SOpen& open) const;
    bool IsProperty(TTokenIndex token) const;
    bool IsGroup(TTokenIndex statement);
    bool IsAfterIsland(TTokenIndex index) const;

    void Push(TTokenIndex at, EStyleTokenKind kind);
    void Pop(TTokenIndex end, bool isClosed);
    void Fault(SBlockFault::EKind kind, TTokenIndex at, TTokenIndex related = 0);
    void Repaired() { m_budget -= m_budget > 0; }
    SOpen& Top() { return m_open.back(); }
    bool IsInCurly() const { return m_open.back().kind == EStyleTokenKind::CurlyOpen; }

    const CStyleText& m_text;
    SyntaxParser::EStyleKind m_kind;
    ERepair m_repair = ERepair::None;
    std::size_t m_budget = 0;
    SBlocks m_blocks;
    std::vector<SOpen> m_open; ///< the first is the style itself
    std::size_t m_line = 0;
    std::size_t m_indent = 0; ///< of the line
    bool m_isFirst = true;    ///< on its line
    bool m_isSpoilt = false;  ///< the statement, by a bad string: what is missing was swallowed
};

} // namespace Kesh::CodeAnalyzer
