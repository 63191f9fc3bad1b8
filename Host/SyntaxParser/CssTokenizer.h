#pragma once

#include "Kesh/SyntaxParser/IMarkupTokens.h"

namespace Kesh::SyntaxParser {

class IStyleTokenSink
{
public:
    virtual void AddStyle(const SStyleToken& token) = 0;

protected:
    ~IStyleTokenSink() = default;
};

/// Cuts styles into the tokens of CSS Syntax Level 3, which follow each other without gaps. A character of an
/// island counts as a letter. Linear in time; ends early once nobody wants the results.
class CCssTokenizer
{
public:
    /// Both must outlive the object.
    CCssTokenizer(const IMarkupPlaces& places, IStyleTokenSink& sink) : m_places(places), m_sink(sink) {}

    void Run(SMarkupSpan part);

private:
    EStyleTokenKind Read(wchar_t c);
    EStyleTokenKind ReadSpace();
    EStyleTokenKind ReadString(wchar_t quote);
    EStyleTokenKind ReadNumber();
    EStyleTokenKind ReadIdentLike();
    EStyleTokenKind ReadUrl();
    EStyleTokenKind ReadBadUrl();
    EStyleTokenKind ReadComment();
    EStyleTokenKind ReadSign(wchar_t c);
    void SkipName();
    void SkipEscape();
    void SkipDigits();
    wchar_t At(std::size_t offset) const { return m_at + offset < m_text.size() ? m_text[m_at + offset] : 0; }
    bool IsAtEnd() const { return m_at >= m_text.size(); }
    bool StartsEscape(std::size_t offset) const;
    bool StartsName(std::size_t offset) const;
    bool StartsNumber() const;

    const IMarkupPlaces& m_places;
    IStyleTokenSink& m_sink;
    std::wstring_view m_text; ///< up to the end of the part
    std::size_t m_at = 0;
    bool m_unfinished = false;
};

} // namespace Kesh::SyntaxParser
