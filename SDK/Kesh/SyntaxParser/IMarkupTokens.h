#pragma once

#include "Kesh/SDK/IComponent.h"
#include "Kesh/SyntaxParser/Position.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace Kesh::SyntaxParser {

class ISPDocument;

/// Stands in the texts of markup tokens for each character of PHP and of template engines' placeholders.
inline constexpr wchar_t MarkupIsland = 0xFDD0;

/// A part of the text; offsets in UTF-32 characters, end exclusive.
struct SMarkupSpan
{
    std::size_t begin = 0;
    std::size_t end = 0;

    bool IsEmpty() const { return begin == end; }
    friend bool operator==(const SMarkupSpan&, const SMarkupSpan&) = default;
};

/// The parse errors that the HTML standard names, one kind for each.
enum class EHtmlProblem : std::uint8_t {
#define HTML_PROBLEM(name, standardName) name,
#include "Kesh/SyntaxParser/HtmlProblems.def"
#undef HTML_PROBLEM
    Count
};

/// As the standard writes it: "eof-in-tag".
constexpr const char* NameOf(EHtmlProblem problem)
{
    constexpr const char* names[] = {
#define HTML_PROBLEM(name, standardName) standardName,
#include "Kesh/SyntaxParser/HtmlProblems.def"
#undef HTML_PROBLEM
    };
    return names[static_cast<std::size_t>(problem)];
}

enum class EHtmlTokenKind : std::uint8_t {
    Text, ///< also the content of raw text elements, whole
    StartTag,
    EndTag,
    Comment, ///< also what the standard takes for one
    Doctype,
    CData,
    Island ///< PHP, or a placeholder, that stands outside of tags
};

struct SHtmlAttribute
{
    SMarkupSpan span; ///< with its value, quotes included
    SMarkupSpan name;
    SMarkupSpan value; ///< without quotes; empty without one
    bool hasValue = false;
};

/// One token, valid only during the call that delivers it. Tokens follow each other without gaps.
struct SHtmlToken
{
    EHtmlTokenKind kind = EHtmlTokenKind::Text;
    SMarkupSpan span;
    SMarkupSpan name;                       ///< of a tag
    std::vector<SHtmlAttribute> attributes; ///< as written, equal ones included
    bool selfClosing = false;               ///< "/>"
    bool unfinished = false;                ///< a tag or comment that the text's end cuts off
};

enum class EStyleKind : std::uint8_t { Sheet, Element, Attribute };

/// The tokens of CSS Syntax Level 3; comments come too.
enum class EStyleTokenKind : std::uint8_t {
    Ident,
    Function, ///< with its "("
    AtKeyword,
    Hash,
    String,
    BadString,
    Url,
    BadUrl,
    Number,
    Percentage,
    Dimension,
    Delim,
    Space,
    Comment,
    Cdo,
    Cdc,
    Colon,
    Semicolon,
    Comma,
    SquareOpen,
    SquareClose,
    RoundOpen,
    RoundClose,
    CurlyOpen,
    CurlyClose
};

struct SStyleToken
{
    EStyleTokenKind kind = EStyleTokenKind::Space;
    SMarkupSpan span;
    bool unfinished = false; ///< a string, URL or comment that the end cuts off
};

/// The text of a pass. Lives until EndMarkup has returned.
class IMarkupPlaces
{
public:
    /// The whole text, islands filled with MarkupIsland.
    virtual std::wstring_view Text() const = 0;
    /// The same as it is written.
    virtual std::wstring_view Written() const = 0;
    virtual CIterator PositionOf(std::size_t offset) const = 0;
    /// The other way round, for a position in the text.
    virtual std::size_t OffsetOf(CIterator position) const = 0;
    /// Whether nobody wants the results any more; handlers then return soon.
    virtual bool IsCancelled() const = 0;
    /// Whether the placeholders of a template engine stand in the text.
    virtual bool HasPlaceholders() const = 0;

    std::wstring_view Text(SMarkupSpan span) const
    {
        return Text().substr(span.begin, span.end - span.begin);
    }
    bool IsTouched(SMarkupSpan span) const
    {
        return Text(span).find(MarkupIsland) != std::wstring_view::npos;
    }
    SScheme SpanOf(SMarkupSpan span) const { return {PositionOf(span.begin), PositionOf(span.end)}; }

protected:
    ~IMarkupPlaces() = default;
};

/// Receives the markup of each pass, in document order, after the PHP tokens and before the end-of-parse
/// signal: BeginMarkup, then tokens and problems, EndMarkup. The tokens of a style element or attribute come
/// between BeginStyle and EndStyle, those of an attribute before the token of its tag. PHP without any tag
/// may come without all of this. The thread that parses.
class IMarkupHandler
{
public:
    /// True takes part in the pass; otherwise nothing more of it comes.
    virtual bool BeginMarkup(const IMarkupPlaces& places) = 0;
    virtual void AddHtml(const SHtmlToken& token) = 0;
    virtual void AddProblem(EHtmlProblem problem, SMarkupSpan span) = 0;
    virtual void BeginStyle(EStyleKind kind, SMarkupSpan whole) = 0;
    virtual void AddStyle(const SStyleToken& token) = 0;
    virtual void EndStyle() = 0;
    virtual void EndMarkup() = 0;

protected:
    ~IMarkupHandler() = default;
};

/// Hands on the markup around the PHP; a document component by the name "IMarkupTokens", which a host need
/// not have.
class IMarkupTokens : public SDK::IComponent1<ISPDocument>
{
public:
    /// Registers `handler` for every later pass. It stays owned by the caller and must live as long as the
    /// document is parsed.
    virtual void AddMarkupHandler(IMarkupHandler* handler) = 0;

protected:
    ~IMarkupTokens() = default;
};

} // namespace Kesh::SyntaxParser
