#pragma once

#include "Kesh/SyntaxParser/Position.h"

#include <string>
#include <string_view>

namespace Kesh::SyntaxParser {

/// A region definition. Its address is the kind of the regions that carry it.
class ISynRegion
{
public:
    virtual ~ISynRegion() = default;
    /// Name of the kind, for people who look at a region stream.
    virtual std::wstring GetName() const { return {}; }
};

/// One piece of a document, valid only during the call that delivers it.
struct CRegion
{
    CIterator start;
    /// Just after the last character.
    CIterator end;
    ISynRegion* definition = nullptr;
    /// The same characters as IReader::GetText(start, end) when the source holds the document in one piece,
    /// so that they can be looked at without a copy. Those characters stay until the pass has ended. A null
    /// data() means: ask the reader.
    std::wstring_view text{};
};

/// Indexes of SPhpRegionDefs::TagDefs.
struct PhpTag
{
    enum EIndex {
        Opening = 1, ///< `<?php`, `<?=` or `<?`: PHP begins. The checker looks at nothing before it.
        Closing = 2, ///< `?>`: PHP ends, and like a `;` it ends the statement
        Count
    };
};

/// Indexes of SPhpRegionDefs::TokenDefs: the pieces of PHP code. 12 and 13 mean nothing to the checker and
/// are free.
struct PhpToken
{
    enum EIndex {
        /// A run of white space, or one operator that has no kind of its own, or a single backslash; which of
        /// them is told by the text. A compound assignment is its operator and then an Assign. The backquotes
        /// around a command are of this kind, too.
        Text = 1,
        Keyword = 2,       ///< a reserved word where it acts as one; told by its text
        Opening = 3,       ///< `(`, `[` or `{`: exactly one character, by which they are told apart
        Closing = 4,       ///< `)`, `]` or `}`: the same
        StringStart = 5,   ///< the quote that opens a string
        StringContent = 6, ///< all between the quotes, interpolation included, as one region
        StringEnd = 7,     ///< the quote that closes it
        Comma = 8,
        Arrow = 9, ///< before a member: `->`, `?->`
        Semicolon = 10,
        DoubleArrow = 11,  ///< the `=>` between key and value; that of `fn` or a `match` arm is a Dot
        Assign = 14,       ///< `=`, alone or at the end of a compound assignment; `??=` as a whole
        PrefixWord = 15,   ///< before an operand: `new`, `static` of a closure, `throw` in an expression
        ArgumentWord = 16, ///< takes an argument without brackets: `include`, `yield`, the `=` of `<?=`
        ConstantWord = 17, ///< a value by itself: `true`, `null`, `self`, `static` before `::`, `__LINE__`
        Heredoc = 18,      ///< label, body and closing label of a here-document, after `<<<` as Text
        Word = 19,         ///< an identifier, or a reserved word that acts as one, as after `->` or `::`
        Number = 20,       ///< a number literal as a whole
        Dot = 21,          ///< `.`, and any operator between two operands that no parser knows by its text
        Outside = 22,      ///< text outside PHP
        Count
    };
};

/// Indexes of SPhpRegionDefs::ExtraDefs: words with a part to play in calls and declarations.
struct PhpExtra
{
    enum EIndex {
        Function = 1,     ///< `function`, of a declaration or of a closure
        CalledWord = 3,   ///< called like a function, its `(` follows: `fn`, `match`
        DeclaredName = 5, ///< the name after `function`
        Count
    };
};

/// Indexes of SPhpRegionDefs::VarDefs.
struct PhpVar
{
    enum EIndex {
        PropertyWord = 1, ///< a word that declares a property, as `var` and a modifier before one do
        ExtraDollar = 2,  ///< a `$` before a variable, as in `$$name`
        Variable = 3,     ///< `$name` as a whole
        Count
    };
};

/// Indexes of SPhpRegionDefs::CommentDefs: what carries no code, all alike to the checker. A source that
/// wants code left alone, since no parser knows it, gives it one of these kinds.
struct PhpComment
{
    enum EIndex {
        Line = 1,        ///< `// ...`
        Hash = 2,        ///< `# ...`
        Block = 3,       ///< `/* ... */`
        Doc = 4,         ///< `/** ... */`
        Data = 11,       ///< all that follows `__halt_compiler();`
        Attribute = 12,  ///< `#[...]`
        Annotation = 13, ///< code with nothing in it to check, as `readonly` or the head of a hook
        Count
    };
};

/// Indexes of SPhpRegionDefs::ClassDefs.
struct PhpClass
{
    enum EIndex {
        Class = 1, ///< `class`, and `enum` where it declares one
        Count
    };
};

/// Indexes of SPhpRegionDefs::InterfaceDefs.
struct PhpInterface
{
    enum EIndex {
        Interface = 1, ///< `interface`
        Count
    };
};

/// The PHP region kinds, each an object of its own, or null if the source never delivers it; entry 0 of every
/// table is unused. The parsers know a region by its kind, and by its text only where that is said above: a
/// construct that is younger than they are has to be cut and named such that it passes.
struct SPhpRegionDefs
{
    ISynRegion* TagDefs[PhpTag::Count] = {};
    ISynRegion* TokenDefs[PhpToken::Count] = {};
    ISynRegion* ExtraDefs[PhpExtra::Count] = {};
    ISynRegion* VarDefs[PhpVar::Count] = {};
    ISynRegion* CommentDefs[PhpComment::Count] = {};
    ISynRegion* ClassDefs[PhpClass::Count] = {};
    ISynRegion* InterfaceDefs[PhpInterface::Count] = {};
};

/// All region kinds of the host's languages. Immutable once built; outlives every document.
class CDefRegions
{
public:
    SPhpRegionDefs Php;
};

} // namespace Kesh::SyntaxParser
