#pragma once

#include "Kesh/SyntaxParser/IMarkupTokens.h"

#include <functional>

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

/// Cuts a text into the tokens of the HTML standard, with the standard's parse errors. Linear in time; one
/// run.
class CHtmlTokenizer
{
public:
    /// Called for the style of an element or attribute before the token that holds it.
    using TStyle = std::function<void(EStyleKind, SMarkupSpan)>;

    /// All must outlive the object.
    CHtmlTokenizer(const IMarkupPlaces& places, IHtmlTokenSink& sink, const TStyle& style)
        : m_places(places), m_sink(sink), m_style(style)
    {
    }

    void Run();

private:
    const IMarkupPlaces& m_places;
    IHtmlTokenSink& m_sink;
    const TStyle& m_style;
};

} // namespace Kesh::SyntaxParser
