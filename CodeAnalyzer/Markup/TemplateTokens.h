#pragma once

#include "Kesh/SyntaxParser/ITokenSource.h"

#include <cstdint>
#include <vector>

namespace Kesh::SyntaxParser {
class ISPDocument;
}

namespace Kesh::CodeAnalyzer {

/// A PHP token that has to do with the way of control.
class CTemplateToken
{
public:
    explicit CTemplateToken(const SyntaxParser::SPhpToken& token)
        : m_kind(token.kind), m_start(token.start), m_end(token.end)
    {
    }
    SyntaxParser::CIterator Start() const { return m_start.Wide(); }
    SyntaxParser::CIterator End() const { return m_end.Wide(); }

    SyntaxParser::EPhpTokenKind Kind() const { return m_kind; }

private:
    /// Of half the size: a large document has many.
    struct SPlace
    {
        explicit SPlace(SyntaxParser::CIterator place)
            : column(static_cast<std::uint32_t>(place.x)), line(static_cast<std::uint32_t>(place.y))
        {
        }
        SyntaxParser::CIterator Wide() const { return {column, line}; }

        std::uint32_t column;
        std::uint32_t line;
    };
    SyntaxParser::EPhpTokenKind m_kind;
    SPlace m_start;
    SPlace m_end;
};

/// Keeps those tokens of a document's passes. One thread at a time.
class CTemplateTokens final : public SyntaxParser::ITokenHandler
{
public:
    /// Follows the document's tokens from now on; without a token source there never are any. Lives as long
    /// as the document is parsed.
    void Follow(SyntaxParser::ISPDocument& document);
    /// Of the last pass, up to its end.
    const std::vector<CTemplateToken>& All() const { return m_tokens; }

    bool BeginTokens() override;
    void AddToken(const SyntaxParser::SPhpToken& token) override;
    void AddTokens(const SyntaxParser::SPhpToken* tokens, std::size_t count) override;
    void EndTokens(SyntaxParser::CIterator /*end*/) override {}

private:
    std::vector<CTemplateToken> m_tokens;
    bool m_names = false; ///< after an arrow or `::`
};

} // namespace Kesh::CodeAnalyzer
