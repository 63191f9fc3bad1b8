#pragma once

#include "Kesh/SDK/IComponent.h"
#include "Kesh/SyntaxParser/Position.h"

#include <cstdint>
#include <string_view>

namespace Kesh::SyntaxParser {

class ISPDocument;

/// The PHP tokens, one kind for every operator and word of the grammar. A word has the kind of its spelling
/// wherever it stands, but for `enum`, which is an Identifier where no enumeration follows.
enum class EPhpTokenKind : std::uint8_t {
    End,

    // Pieces that stand for whole stretches of text.
    InlineHtml, ///< without the line break that belongs to the closing tag before it
    OpenTag,
    OpenTagEcho,
    CloseTag,
    Variable, ///< with its `$`
    Number,
    Identifier,
    QualifiedName,      ///< `A\B`
    FullyQualifiedName, ///< `\A`
    RelativeName,       ///< `namespace\A`
    String,             ///< a whole string without code in it, quotes included
    MagicConstant,      ///< `__LINE__` and its like
    Cast,               ///< `(int)` with its brackets
    OldCast,            ///< `(real)`, `(unset)`: gone since 8.0
    VoidCast,           ///< `(void)`: since 8.5

    // Strings with code in them: a start, parts, code between them, an end.
    Quote,        ///< `"`, at the start and at the end
    Backtick,     ///< at the start and at the end
    HeredocStart, ///< `<<<` and label
    HeredocEnd,
    StringPart,
    StringName,     ///< a word or a number between the brackets of `"$a[0]"`
    StringVariable, ///< the name after `${`
    CodeBrace,      ///< the `{` before `$`
    DollarBrace,    ///< `${`

    // Pieces that no PHP holds.
    BadCharacter,
    BadNumber,
    BadEscape,  ///< `\u{` without a code point
    BadComment, ///< a comment that does not end
    BadString,  ///< a string that does not end; to the end of the text
    BadHeredoc, ///< a here-document that does not end
    BadIndent,  ///< the blanks of a line in a here-document that is indented less than its closing label

    // Brackets and punctuation.
    OpenRound,
    CloseRound,
    OpenSquare,
    CloseSquare,
    OpenBrace,
    CloseBrace,
    AttributeStart, ///< `#[`
    Comma,
    Semicolon,
    Colon,
    DoubleColon,
    Question,
    Arrow,
    NullsafeArrow,
    DoubleArrow,
    Backslash,
    Ellipsis,
    Dollar,
    At,

    // Operators.
    Assign,
    PlusAssign,
    MinusAssign,
    TimesAssign,
    DivideAssign,
    DotAssign,
    ModuloAssign,
    AndAssign,
    OrAssign,
    XorAssign,
    ShiftLeftAssign,
    ShiftRightAssign,
    PowerAssign,
    CoalesceAssign,
    Coalesce,
    BooleanOr,
    BooleanAnd,
    BitOr,
    BitXor,
    BitAnd,
    BitAndBeforeVariable, ///< `&` before a variable or `...`
    Equal,
    NotEqual,
    Identical,
    NotIdentical,
    Spaceship,
    Less,
    LessEqual,
    Greater,
    GreaterEqual,
    Pipe,
    Dot,
    ShiftLeft,
    ShiftRight,
    Plus,
    Minus,
    Times,
    Divide,
    Modulo,
    Power,
    Not,
    Complement,
    Increment,
    Decrement,

    // Words.
    Abstract,
    And,
    Array,
    As,
    Break,
    Callable,
    Case,
    Catch,
    Class,
    Clone,
    Const,
    Continue,
    Declare,
    Default,
    Do,
    Echo,
    Else,
    Elseif,
    Empty,
    Enddeclare,
    Endfor,
    Endforeach,
    Endif,
    Endswitch,
    Endwhile,
    Enum,
    Eval,
    Exit,
    Extends,
    Final,
    Finally,
    Fn,
    For,
    Foreach,
    Function,
    Global,
    Goto,
    HaltCompiler,
    If,
    Implements,
    Include, ///< include, require and their _once forms
    Instanceof,
    Insteadof,
    Interface,
    Isset,
    List,
    Match,
    Namespace,
    New,
    Or,
    Print,
    Private,
    PrivateSet,
    Protected,
    ProtectedSet,
    Public,
    PublicSet, ///< `public(set)`
    Readonly,
    Return,
    Static,
    Switch,
    Throw,
    Trait,
    Try,
    Unset,
    Use,
    Var,
    While,
    Xor,
    Yield,
    YieldFrom,

    Count
};

/// One token, valid only during the call that delivers it.
struct SPhpToken
{
    EPhpTokenKind kind = EPhpTokenKind::End;
    CIterator start;
    CIterator end;          ///< just after the last character
    std::wstring_view text; ///< its characters stay until the pass has ended
};

/// Receives the PHP tokens of each pass, without blanks and comments: BeginTokens, AddToken for each in
/// document order, EndTokens, all before the AfterParse of the region handlers. The thread that parses.
class ITokenHandler
{
public:
    /// True takes part in the pass; otherwise nothing more of it comes.
    virtual bool BeginTokens() = 0;
    virtual void AddToken(const SPhpToken& token) = 0;
    /// `end` is the end of the text.
    virtual void EndTokens(CIterator end) = 0;

protected:
    ~ITokenHandler() = default;
};

/// Hands on the PHP tokens from which the regions are made; a document component by the name "ITokenSource",
/// which a host need not have.
class ITokenSource : public SDK::IComponent1<ISPDocument>
{
public:
    /// Registers `handler` for every later pass. It stays owned by the caller and must live as long as the
    /// document is parsed.
    virtual void AddTokenHandler(ITokenHandler* handler) = 0;

protected:
    ~ITokenSource() = default;
};

} // namespace Kesh::SyntaxParser
