#pragma once

#include "Kesh/SyntaxParser/IMarkupTokens.h"
#include "SyntaxParser/HtmlCursor.h"
#include "SyntaxParser/HtmlForeign.h"
#include "SyntaxParser/HtmlTagReader.h"

#include <functional>
#include <string>

namespace Kesh::SyntaxParser {

/// Receives tokens and parse errors in document order.
class IHtmlTokenSink
{
public:
    virtual void AddHtml(const SHtmlToken& token) = 0;
    virtual void AddProblem(EHtmlProblem problem, SMarkupSpan span) = 0;

protected:
    ~IHtmlTokenSink() = default;
};

/// Cuts a text into the tokens of the HTML standard, with the standard's parse errors. Unless it is strict,
/// it recovers from lost quotes and ">". Linear in time; one run.
class CHtmlTokenizer
{
public:
    /// Called for the style of an element or attribute before the token that holds it.
    using TStyle = std::function<void(EStyleKind, SMarkupSpan)>;

    /// All must outlive the object.
    CHtmlTokenizer(const IMarkupPlaces& places, IHtmlTokenSink& sink, const TStyle& style, bool isStrict)
        : m_places(places), m_sink(sink), m_style(style), m_cursor(places), m_tags(m_cursor, !isStrict)
    {
    }

    void Run();

private:
    bool IsCancelled();
    void ReadIsland();
    void ReadLessThan();
    void ReadEndTagOpen();
    void ReadDeclaration();
    void ReadTag();
    void OpenElement(const SHtmlToken& tag);
    void ReadRawText(const SHtmlToken& tag, const std::wstring& name);
    void ReportSolidus(const SHtmlToken& tag, const std::wstring& name);
    void EmitStyleAttributes(const SHtmlToken& tag);
    const SHtmlAttribute* Find(const SHtmlToken& tag, std::wstring_view name) const;
    bool IsStyleSheet(const SHtmlToken& tag) const;

    void EndText();
    void EmitText(EHtmlTokenKind kind, SMarkupSpan span);
    void Emit(const SHtmlToken& token);
    void EmitBogus();
    void EmitProblems();

    const IMarkupPlaces& m_places;
    IHtmlTokenSink& m_sink;
    const TStyle& m_style;
    CHtmlCursor m_cursor;
    CHtmlTagReader m_tags;
    CHtmlForeign m_foreign;
    std::size_t m_textBegin = 0; ///< of the text not yet handed on
    std::size_t m_nextCheck = 0; ///< from here on, ask again whether to go on
    bool m_isInStyle = false;    ///< the next text is that of a style element of SVG
};

} // namespace Kesh::SyntaxParser
