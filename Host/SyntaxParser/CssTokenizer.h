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

/// Cuts styles into the tokens of CSS Syntax Level 3. Linear in time.
class CCssTokenizer
{
public:
    /// Both must outlive the object.
    CCssTokenizer(const IMarkupPlaces& places, IStyleTokenSink& sink) : m_places(places), m_sink(sink) {}

    void Run(SMarkupSpan part);

private:
    const IMarkupPlaces& m_places;
    IStyleTokenSink& m_sink;
};

} // namespace Kesh::SyntaxParser
