#pragma once

#include "Base/CommonString.h"
#include "Kesh/SyntaxParser/IParser.h"
#include "Kesh/SyntaxParser/IReader.h"
#include "Kesh/SyntaxParser/Regions.h"
#include "Parsers/CParentParser.h"
#include "Parsers/RegionClasses.h"

#include <boost/shared_ptr.hpp>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// Base of the statement parsers: each is a small state machine for one kind of PHP statement. It claims a
/// statement by its first region, consumes the regions that follow, and reports the end or an error to its
/// parent, after which it is idle.
class CStatementParser
{
public:
    using PhpExtra = SyntaxParser::PhpExtra;
    using PhpInterface = SyntaxParser::PhpInterface;
    using PhpTag = SyntaxParser::PhpTag;
    using PhpToken = SyntaxParser::PhpToken;
    using PhpVar = SyntaxParser::PhpVar;

    CStatementParser(SyntaxParser::CDefRegions* defs, boost::shared_ptr<SyntaxParser::IReader> reader,
                     CParentParser* parent);
    CStatementParser(const CStatementParser&) = delete;
    CStatementParser& operator=(const CStatementParser&) = delete;
    virtual ~CStatementParser() = default;

    /// One region while this parser is active.
    virtual void DispathRegion(SyntaxParser::CRegion* region) = 0;
    /// Every bracket region, whether this parser is active or not.
    virtual void HandleBracketRegion(SyntaxParser::CRegion* /*region*/) {}
    /// Non-zero claims the statement that `region` starts; the state is then set for what follows it.
    virtual int StatementStartRegion(SyntaxParser::CRegion* region) = 0;
    virtual void BeforeParse(const SyntaxParser::STextChange& /*change*/) {}
    virtual void AfterParse() {}
    /// Before each pass: whether statements nested in one another are told apart exactly, as the host wants
    /// that has the grammar checked too, or by what one statement of a kind can remember.
    void SetExact(bool exact) { m_exact = exact; }

    /// Whether the region carries no code: blanks, comments, and the word "php" of a short opening tag.
    virtual int IsNonSignificantRegion(SyntaxParser::CRegion* region);
    /// The statements nested inside this one have ended; this parser is active again.
    virtual void RestoreForContinue() {}
    /// An error has ended everything that was suspended, this parser included.
    virtual void OnError() {}

    /// Whether the region is of kind `def` and its trimmed text is `text`. With `lowerCase` the text is
    /// lowered first; `text` must then be in lower case.
    int IsRegion(SyntaxParser::CRegion* region, SyntaxParser::ISynRegion* def, std::wstring_view text,
                 int lowerCase) const
    {
        return region->definition == def && HasText(region, text, lowerCase);
    }
    /// Whether the word is not reserved, so that it may stand in an expression.
    int IsExpressionKeyword(std::wstring_view word);

protected:
    /// A region's characters: a look at the source's own text, or else at a copy that stays until the next
    /// region is read.
    std::wstring_view Text(SyntaxParser::CRegion* region) const
    {
        return region->text.data() ? region->text : ReadText(region);
    }
    /// The same without white space at both ends.
    std::wstring_view TrimmedText(SyntaxParser::CRegion* region) const
    {
        return Base::CCommonString::Trim(Text(region));
    }
    /// Compares with a literal; a loop that the compiler unrolls.
    template <std::size_t Size> static bool Equals(std::wstring_view text, const wchar_t (&literal)[Size])
    {
        bool equal = text.size() == Size - 1;
        for (std::size_t i = 0; equal && i < Size - 1; ++i)
            equal = text[i] == literal[i];
        return equal;
    }
    /// The character just before the region's end; tells the brackets apart.
    wchar_t LastChar(SyntaxParser::CRegion* region) const
    {
        return region->text.empty() ? ReadLastChar(region) : region->text.back();
    }

    const SyntaxParser::SPhpRegionDefs& Php() const { return m_defs->Php; }
    bool IsToken(SyntaxParser::CRegion* region, PhpToken::EIndex index) const
    {
        return region->definition == m_defs->Php.TokenDefs[index];
    }
    bool IsVar(SyntaxParser::CRegion* region, PhpVar::EIndex index) const
    {
        return region->definition == m_defs->Php.VarDefs[index];
    }
    bool IsExtra(SyntaxParser::CRegion* region, PhpExtra::EIndex index) const
    {
        return region->definition == m_defs->Php.ExtraDefs[index];
    }
    /// What begins the head of a class.
    bool IsClassWord(SyntaxParser::CRegion* region) const
    {
        return region->definition == m_defs->Php.ClassDefs[SyntaxParser::PhpClass::Class];
    }
    bool IsOpening(SyntaxParser::CRegion* region, wchar_t bracket) const
    {
        return IsToken(region, PhpToken::Opening) && LastChar(region) == bracket;
    }
    bool IsClosing(SyntaxParser::CRegion* region, wchar_t bracket) const
    {
        return IsToken(region, PhpToken::Closing) && LastChar(region) == bracket;
    }
    /// A keyword region with this text, in any case.
    template <std::size_t Size>
    bool IsKeyword(SyntaxParser::CRegion* region, const wchar_t (&word)[Size]) const
    {
        if (region->definition != m_defs->Php.TokenDefs[PhpToken::Keyword])
            return false;
        if (BeginsOtherwise(region, word[0])) // as most keywords do
            return false;
        return HasText(region, {word, Size - 1}, 1);
    }
    /// A keyword that stands between two operands.
    bool IsWordOperator(SyntaxParser::CRegion* region) const
    {
        return IsKeyword(region, L"and") || IsKeyword(region, L"or") || IsKeyword(region, L"xor") ||
               IsKeyword(region, L"instanceof");
    }
    /// Plain text that is exactly this operator.
    template <std::size_t Size>
    bool IsSymbol(SyntaxParser::CRegion* region, const wchar_t (&symbol)[Size]) const
    {
        return region->definition == m_defs->Php.TokenDefs[PhpToken::Text] &&
               Equals(TrimmedText(region), symbol);
    }
    /// A `;`, or the closing tag, which ends a statement like one.
    bool IsStatementEnd(SyntaxParser::CRegion* region) const
    {
        return IsToken(region, PhpToken::Semicolon) ||
               region->definition == m_defs->Php.TagDefs[PhpTag::Closing];
    }
    /// A `;`; the closing tag only where all is followed exactly.
    bool IsSemicolon(SyntaxParser::CRegion* region) const
    {
        return IsToken(region, PhpToken::Semicolon) ||
               (m_exact && region->definition == m_defs->Php.TagDefs[PhpTag::Closing]);
    }
    /// A name: an identifier, or a reserved word that may stand for one.
    bool IsWord(SyntaxParser::CRegion* region) const
    {
        return IsToken(region, PhpToken::Word) || IsToken(region, PhpToken::ConstantWord);
    }

private:
    bool HasText(SyntaxParser::CRegion* region, std::wstring_view text, int lowerCase) const
    {
        const std::wstring_view found = TrimmedText(region);
        return lowerCase ? Base::CCommonString::LowersTo(found, text) : found == text;
    }
    /// Whether the region's first character shows that it is no word that begins with this letter.
    static bool BeginsOtherwise(const SyntaxParser::CRegion* region, wchar_t letter)
    {
        const wchar_t first =
            region->text.empty() ? L'\0' : Base::CCommonString::AsciiLower(region->text.front());
        return first >= L'a' && first <= L'z' && first != letter;
    }
    std::wstring_view ReadText(SyntaxParser::CRegion* region) const;
    wchar_t ReadLastChar(SyntaxParser::CRegion* region) const;

protected:
    SyntaxParser::CDefRegions* m_defs;
    boost::shared_ptr<SyntaxParser::IReader> m_reader;
    CParentParser* m_parent;
    std::span<const std::wstring_view> m_reservedWords; ///< an ordered set, one for all parsers
    std::shared_ptr<const CRegionClasses> m_classes;
    bool m_exact = false;

private:
    mutable std::wstring m_copy; ///< of the region last read from the reader
};

} // namespace Kesh::CodeAnalyzer
