#pragma once

#include "Kesh/SyntaxParser/ITokenSource.h"

#include <cstdint>
#include <vector>

namespace Kesh::SyntaxParser {
class ISPDocument;
}

namespace Kesh::CodeAnalyzer {

/// A PHP token that has to do with the way of control.
struct STemplateToken
{
    SyntaxParser::EPhpTokenKind kind;
    SyntaxParser::CIterator start;
    SyntaxParser::CIterator end;
};

/// Keeps those tokens of a document's passes. One thread at a time.
class CTemplateTokens final : public SyntaxParser::ITokenHandler
{
public:
    /// Follows the document's tokens from now on; without a token source there never are any. Lives as long
    /// as the document is parsed.
    void Follow(SyntaxParser::ISPDocument& document);
    /// Of the last pass, up to its end.
    const std::vector<STemplateToken>& All() const { return m_tokens; }

    bool BeginTokens() override;
    void AddToken(const SyntaxParser::SPhpToken& token) override;
    void AddTokens(const SyntaxParser::SPhpToken* tokens, std::size_t count) override;
    void EndTokens(SyntaxParser::CIterator /*end*/) override {}

private:
    std::vector<STemplateToken> m_tokens;
    bool m_names = false; ///< after an arrow or `::`
};

} // namespace Kesh::CodeAnalyzer
