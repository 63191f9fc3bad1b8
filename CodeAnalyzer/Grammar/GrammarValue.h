#pragma once

#include <cstdint>

namespace Kesh::CodeAnalyzer {

/// What a piece of PHP that the grammar has recognised is, as far as a rule of the language asks.
enum class EValue : std::uint8_t {
    Other,

    // Expressions.
    Variable,
    This,
    VariableVariable,
    Element,        ///< `$a[0]`
    Property,       ///< `$a->b`
    StaticProperty, ///< `A::$b`
    Call,
    NewObject,
    Name, ///< a constant, or the name of what is called
    Magic,
    ClassConstant,
    DynamicMember, ///< `A::{...}`
    ArrayLiteral,
    ListLiteral,
    Text,    ///< a string that can be looked into
    Literal, ///< a number or a here-document
    Group,   ///< an expression in brackets
    Ternary,
    ShortTernary,
    SignedNumber,
    Closure,
    StaticName,
    Reference,

    // Statements.
    Nop,
    Html,
    DeclareStatement,
    FunctionDeclaration,
    ClassDeclaration,

    Type
};

/// Flags of values.
enum EValueFlag : std::uint16_t {
    NotConstant = 1 << 0, ///< cannot be told before the program runs; `bad` says where
    HasNew = 1 << 1,      ///< makes an object, which some constants may
    Nullsafe = 1 << 2,    ///< reached through `?->`
    Appending = 1 << 3,   ///< ends with `[]`
    LongArray = 1 << 4,   ///< array(...)

    // What is worked out before the program runs, but for arrays.
    Truthy = 1 << 5,
    Falsy = 1 << 6,
    Folded = 1 << 7, ///< worked out, but not here

    // Elements of an array or a list.
    LastEmpty = 1 << 5,
    Hole = 1 << 6, ///< an empty element that is not the last
    Filled = 1 << 7,
    Keyed = 1 << 8,
    Unkeyed = 1 << 9,
    Spread = 1 << 10,
    NoTarget = 1 << 11, ///< an element that nothing can be assigned to; `extra` says where
    ByReference = 1 << 12,
    ListInside = 1 << 13,
    ShortInside = 1 << 14,
    Unfolded = 1 << 15, ///< not worked out before the program runs

    // Arguments.
    Named = 1 << 5,
    Unpacked = 1 << 6,
    Several = 1 << 7,
    NoneGiven = 1 << 8,
    AsCallable = 1 << 9, ///< `(...)`

    // Types.
    NullMark = 1 << 5, ///< `?`
    IsUnion = 1 << 6,
    IsIntersection = 1 << 7
};

/// What the grammar keeps of a symbol. Tokens are told by their index in the document.
struct SGrammarValue
{
    std::uint32_t first; ///< its first token
    std::uint32_t bad;   ///< the token that a flag is about
    std::uint32_t
        extra; ///< what the kind says: the types that a literal or a type stands for, a name's token
    std::uint16_t flags;
    EValue kind;
    EValue inner =
        EValue::Other; ///< of what is reached through another or stands in brackets: the kind of that
};

/// Of a token, as long as nothing has been made of it.
constexpr SGrammarValue ValueOfToken(std::uint32_t token)
{
    return {token, token, 0, 0, EValue::Other, EValue::Other};
}

} // namespace Kesh::CodeAnalyzer
