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

/// The PHP region kinds, each one distinct object, addressed by the numbers that the checker knows.
/// Entry 0 of every table is unused.
struct SPhpRegionDefs
{
    ISynRegion* TagDefs[3] = {};    ///< 1 opening tag, 2 closing tag
    ISynRegion* TokenDefs[23] = {}; ///< 1..21 as the checker knows them, 22 text outside PHP
    ISynRegion* ExtraDefs[6] = {};  ///< 1 `function`, 3 words called like functions, 5 a declared name
    ISynRegion* VarDefs[4] =
        {}; ///< 1 a word that declares a property, 2 the extra `$` before a variable, 3 a complete variable
    ISynRegion* CommentDefs[14] = {};  ///< 1..13 comments, and code in which there is nothing to check
    ISynRegion* ClassDefs[2] = {};     ///< 1 `class`
    ISynRegion* InterfaceDefs[2] = {}; ///< 1 `interface`
};

/// All region kinds of the host's languages. Immutable once built; outlives every document.
class CDefRegions
{
public:
    SPhpRegionDefs Php;
};

} // namespace Kesh::SyntaxParser
