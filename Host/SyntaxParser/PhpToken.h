#pragma once

#include <cstdint>

namespace Kesh::SyntaxParser {

/// What the PHP lexer tells apart. A word is cut by its spelling alone; what it acts as depends on its place
/// and is decided by the scanner.
enum class EPhpToken : std::uint8_t {
    End,
    Blank,
    LineComment,
    HashComment,
    BlockComment,
    DocComment,
    Attribute,
    Html,
    OpenTag,
    OpenTagEcho,
    CloseTag,
    Data, ///< what follows __halt_compiler();

    Variable,
    Dollar,
    Number,
    Name,
    QualifiedName,
    SingleQuote, ///< a whole string; the scanner cuts it
    DoubleQuote,
    Backtick,
    Heredoc, ///< `<<<` of a here-document

    Symbol,    ///< an operator without a kind of its own
    CarriedOp, ///< `.`, and operators that pass as one
    Assign,    ///< `=` and `??=`
    Arrow,     ///< `->` and `?->`
    DoubleColon,
    DoubleArrow,
    Ampersand,
    Question,
    Colon,
    Comma,
    Semicolon,
    Backslash,
    OpenRound,
    CloseRound,
    OpenSquare,
    CloseSquare,
    OpenBrace,
    CloseBrace,

    // Words with a meaning.
    Abstract,
    Array,
    Break,
    Case,
    Catch,
    Class,
    Const,
    ConstantWord, ///< true, null, self, parent, __LINE__, ...
    Declare,
    Default,
    Do,
    Else,
    Elseif,
    Enum,
    Final,
    Fn,
    For,
    Foreach,
    Function,
    HaltCompiler,
    If,
    IncludeWord, ///< takes an argument without brackets: include, require, print, yield
    Interface,
    List,
    Match,
    Namespace,
    New,
    Readonly,
    Static,
    Switch,
    Throw,
    Trait,
    Use,
    Var,
    While,
    Keyword, ///< any other reserved word

    // What the scanner makes of some words by their place.
    DeclaredName,
    ClosureUse,
    ReturnType
};

} // namespace Kesh::SyntaxParser
