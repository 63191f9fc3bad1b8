#pragma once

#include "Kesh/SyntaxParser/Regions.h"
#include "SyntaxParser/MarkupTrees.h"
#include "SyntaxParser/PhpLexer.h"
#include "SyntaxParser/PhpTokenWriter.h"
#include "SyntaxParser/RegionEmitter.h"

#include <array>
#include <cstdint>
#include <vector>

namespace Kesh::SyntaxParser {

/// Turns PHP tokens into typed regions. A word, a `:` or an arrow gets the kind of what it acts as in its
/// place, so that the statement parsers, which know older PHP, pass what is correct today.
class CPhpScanner
{
public:
    /// `text` must be followed by a NUL character and stay during Run().
    CPhpScanner(std::wstring_view text, const std::vector<IStateRegionHandler*>& handlers,
                const std::vector<ITokenHandler*>& tokenHandlers = {}, bool shortTags = true);

    /// A byte order mark stands before the text: to the grammar it is text that is printed.
    void BeginWithMark()
    {
        if (m_tokens.IsWanted())
            m_tokens.WriteMark();
    }

    /// Delivers every region. Appends the stretches of PHP to `islands` unless it is null. False when it has
    /// stopped early because the flag, which may be null, has been set.
    bool Run(std::vector<SIsland>* islands, const SGiveUp* giveUp = nullptr);

private:
    /// What stands between two brackets.
    enum class EPlace : std::uint8_t {
        Block, ///< statements; also the document itself
        ClassBody,
        EnumBody,
        TraitRules, ///< how a class uses the members of its traits
        HookBody,   ///< the hooks of a property
        MatchBody,
        OtherBrace, ///< an expression: `${...}`, `->{...}`
        Group,
        FuncParams, ///< of a function, and the `use` list of a closure
        FnParams,
        MatchHead,
        ControlHead, ///< of `if`, `while`, `for`, ...
        Square
    };
    struct SPlace
    {
        EPlace kind = EPlace::Block;
        bool memberStarted = false; ///< a class member's first word has been read
        bool memberIsHead = false;  ///< the member is a method or a `use`: its braces are no hooks
        bool caseLabel = false;     ///< between a `case` and its `:`
        bool hookHead = false;      ///< before the body of a hook
        bool isArray = false;       ///< the elements of an array
        std::uint32_t ternaries = 0;
    };
    struct SPendingClass
    {
        std::size_t depth; ///< number of open places at its keyword
        EPlace body;
    };

    void Scan(EPhpToken token);
    CPhpTokenWriter& TokensHere();
    void ScanComment(EPhpToken token);
    void ScanOperator(EPhpToken token);
    void ScanBracket(EPhpToken token);
    void ScanWord(EPhpToken token);
    void ScanReservedWord(EPhpToken token);
    void ScanString(wchar_t quote);
    void ScanHeredoc();
    void ScanReturnType();
    void ScanDataAfterHalt(EPhpToken token);

    void ScanColon();
    void ScanDoubleArrow();
    void ScanSemicolon();
    void EndStatement();
    void ScanOpenBrace();
    void ScanClosing(EPhpToken token);
    void ScanStatic();
    void ScanModifier(EPhpToken token);
    void ScanEnum();

    void Token(PhpToken::EIndex tokenDef) { Emit(m_php.TokenDefs[tokenDef]); }
    void Comment(PhpComment::EIndex commentDef)
    {
        EmitPiece(m_php.CommentDefs[commentDef], m_lexer.Begin(), m_lexer.Cursor());
    }
    void Emit(ISynRegion* definition);
    void EmitPiece(ISynRegion* definition, const wchar_t* begin, const wchar_t* end);
    /// The kind of a piece of code here: annotation where nothing is to be checked.
    ISynRegion* Kind(ISynRegion* definition) const
    {
        return m_annotated ? m_php.CommentDefs[PhpComment::Annotation] : definition;
    }
    void AnnotateFrom(std::size_t depth);
    /// To be called whenever a place opens or closes, or the head of a hook begins or ends.
    void UpdateAnnotated()
    {
        m_annotated = (m_annotation > 0 && m_places.size() >= m_annotation) || m_places.back().hookHead;
    }
    void SetHookHead(bool isHead)
    {
        Place().hookHead = isHead;
        UpdateAnnotated();
    }

    void Open(EPlace kind, bool isArray = false);
    bool EndsKeyWithArray();
    SPlace& Place() { return m_places.back(); }
    bool InClassBody() const;
    bool InExpressionBrackets() const;
    bool IsStatementStart() const;
    bool LeadsControl() const;
    bool IsEnumCase() const;
    bool IsNamePlace(EPhpToken token) const;
    bool IsArgumentName() const;
    EPlace RoundKind() const;
    EPlace BraceKind();
    bool StartsHooks() const;
    bool DeclaresBareProperty() const;
    static std::wstring LowerWord(const wchar_t* begin, const wchar_t* end);
    PhpToken::EIndex NameKind(const wchar_t* begin, const wchar_t* end) const;

    /// The first character after the blanks that follow the token; a pointer to the text's end without one.
    const wchar_t* PeekAt() const { return m_lexer.SkipBlanks(m_lexer.Cursor()); }
    wchar_t Peek() const;

    CPhpLexer m_lexer;
    CRegionEmitter m_emitter;
    CPhpTokenWriter m_tokens;
    const SPhpRegionDefs& m_php;
    /// The kinds of the tokens that are the same everywhere; null for those that their place decides.
    std::array<ISynRegion*, static_cast<std::size_t>(EPhpToken::ReturnType) + 1> m_fixedKinds{};
    const wchar_t* m_text;
    const wchar_t* m_islandBegin = nullptr;
    std::vector<SIsland>* m_islands = nullptr;

    std::vector<SPlace> m_places;
    std::vector<SPendingClass> m_pendingClasses;
    EPhpToken m_prev = EPhpToken::End;   ///< the last token that was neither blank nor comment
    EPhpToken m_actual = EPhpToken::End; ///< what the token being read acts as
    EPlace m_lastClosed = EPlace::Block; ///< what the last closing bracket closed
    const wchar_t* m_arrayEnd = nullptr; ///< of the last array inside an array, up to the next one or a key
    std::size_t m_annotation = 0;        ///< number of places from which all is annotation; 0: none
    bool m_annotated = false;            ///< whether what comes now is annotation
    std::size_t m_throwDepth = 0;        ///< number of places at the `throw` being read; 0: none
    bool m_inConst = false;              ///< inside a `const` declaration
    bool m_inUse = false;                ///< inside a list of imports
    bool m_enumType = false;             ///< after the `:` of an enumeration's head
    bool m_labelColon = false;           ///< the last `:` ended a label or began a `:` block
    int m_halt = 0;                      ///< tokens still due after __halt_compiler
};

} // namespace Kesh::SyntaxParser
