#pragma once

#include "Kesh/SyntaxParser/IMarkupTokens.h"

namespace Kesh::SyntaxParser {
class ISPDocument;
}

namespace Kesh::CodeAnalyzer {

/// One subject of the check of HTML. It hears each pass as IMarkupHandler does, and reports what it finds;
/// one thread at a time.
class IMarkupPart
{
public:
    virtual ~IMarkupPart() = default;

    /// Once, for those that need more of the document than its markup.
    virtual void Follow(SyntaxParser::ISPDocument& /*document*/) {}

    virtual void Begin() {}
    virtual void AddHtml(const SyntaxParser::SHtmlToken& /*token*/) {}
    virtual void AddProblem(SyntaxParser::EHtmlProblem /*problem*/, SyntaxParser::SMarkupSpan /*span*/) {}
    virtual void End() {}
};

} // namespace Kesh::CodeAnalyzer
