#pragma once

#include "Base/CommonString.h"
#include "Kesh/SyntaxParser/IParser.h"
#include "Kesh/SyntaxParser/IReader.h"
#include "Kesh/SyntaxParser/Regions.h"
#include "Parsers/CParentParser.h"

#include <boost/container/flat_set.hpp>
#include <boost/shared_ptr.hpp>
#include <string>
#include <string_view>

namespace Kesh::CodeAnalyzer {

/// Base of the statement parsers: each is a small state machine for one kind of PHP statement. It claims a
/// statement by its first region, consumes the regions that follow, and reports the end or an error to its
/// parent, after which it is idle.
class CStatementParser
{
public:
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
    /// A region's characters: a look at the source's own text, or a copy where there is none.
    class CText
    {
    public:
        CText(SyntaxParser::CRegion* region, SyntaxParser::IReader* reader) : m_view(region->text)
        {
            if (!m_view.data())
                m_view = m_copy = reader->GetText(region->start, region->end);
        }
        CText(const CText&) = delete;
        CText& operator=(const CText&) = delete;

        std::wstring_view Trimmed() const { return Base::CCommonString::Trim(m_view); }
        std::wstring_view Whole() const { return m_view; }

    private:
        std::wstring m_copy;
        std::wstring_view m_view;
    };
    CText Text(SyntaxParser::CRegion* region) const { return {region, m_reader.get()}; }
    /// The character just before the region's end; tells the brackets apart.
    wchar_t LastChar(SyntaxParser::CRegion* region) const
    {
        return region->text.empty() ? ReadLastChar(region) : region->text.back();
    }

    const SyntaxParser::SPhpRegionDefs& Php() const { return m_defs->Php; }
    bool IsToken(SyntaxParser::CRegion* region, int index) const
    {
        return region->definition == m_defs->Php.TokenDefs[index];
    }
    bool IsOpening(SyntaxParser::CRegion* region, wchar_t bracket) const
    {
        return IsToken(region, 3) && LastChar(region) == bracket;
    }
    bool IsClosing(SyntaxParser::CRegion* region, wchar_t bracket) const
    {
        return IsToken(region, 4) && LastChar(region) == bracket;
    }
    /// A keyword region with this text, in any case.
    template <std::size_t Size>
    bool IsKeyword(SyntaxParser::CRegion* region, const wchar_t (&word)[Size]) const
    {
        return IsRegion(region, m_defs->Php.TokenDefs[2], {word, Size - 1}, 1);
    }
    /// Plain text that is exactly this operator.
    template <std::size_t Size>
    bool IsSymbol(SyntaxParser::CRegion* region, const wchar_t (&symbol)[Size]) const
    {
        return IsRegion(region, m_defs->Php.TokenDefs[1], {symbol, Size - 1}, 0);
    }
    /// A `;`, or the closing tag, which ends a statement like one.
    bool IsStatementEnd(SyntaxParser::CRegion* region) const
    {
        return IsToken(region, 10) || region->definition == m_defs->Php.TagDefs[2];
    }
    /// A name: an identifier, or a reserved word that may stand for one.
    bool IsWord(SyntaxParser::CRegion* region) const { return IsToken(region, 19) || IsToken(region, 17); }

private:
    bool HasText(SyntaxParser::CRegion* region, std::wstring_view text, int lowerCase) const;
    wchar_t ReadLastChar(SyntaxParser::CRegion* region) const;

protected:
    SyntaxParser::CDefRegions* m_defs;
    boost::shared_ptr<SyntaxParser::IReader> m_reader;
    CParentParser* m_parent;
    boost::container::flat_set<std::wstring_view> m_reservedWords;
};

} // namespace Kesh::CodeAnalyzer
