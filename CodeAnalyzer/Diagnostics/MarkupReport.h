#pragma once

#include "Kesh/CodeAnalyzer/Diagnostic.h"
#include "Kesh/SyntaxParser/IMarkupTokens.h"

#include <cstdint>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// Takes what the markup checkers find in one text. One thread at a time.
class CMarkupReport
{
public:
    /// The text of the pass that begins; it must live until the next Take().
    void Begin(const SyntaxParser::IMarkupPlaces& places);
    const SyntaxParser::IMarkupPlaces& Places() const { return *m_places; }

    /// With the severity of the catalogue.
    void Add(std::int32_t code, SyntaxParser::SMarkupSpan span, SDetails details = {});
    void Add(std::int32_t code, std::int32_t severity, SyntaxParser::SMarkupSpan span, SDetails details);

    /// An argument {name} of a message: a piece of the text, shown in quotes.
    SArgument Source(std::string name, SyntaxParser::SMarkupSpan span) const;
    SRelatedPlace Related(SyntaxParser::SMarkupSpan span, std::string message) const;
    SFix Fix(EFix kind, SyntaxParser::SMarkupSpan span, std::wstring text) const;

    std::size_t Count() const { return m_found.size(); }
    /// Drops what came after so many.
    void Forget(std::size_t count) { m_found.resize(count); }

    /// Says that a tag from `begin` on is not what it seems, up to the first `stop` from `end` on, and to the
    /// ">" after it: its names are not worth telling.
    void Break(std::size_t begin, std::size_t end, wchar_t stop);
    /// The same of a tag whose end is known.
    void Break(SyntaxParser::SMarkupSpan tag);
    bool IsBroken(SyntaxParser::CIterator place) const;

    /// All since Begin(), in the text's order.
    std::vector<SDiagnostic> Take();

private:
    const SyntaxParser::IMarkupPlaces* m_places = nullptr;
    std::vector<SDiagnostic> m_found;
    std::vector<SyntaxParser::SScheme> m_broken; ///< in the text's order
};

} // namespace Kesh::CodeAnalyzer
