#pragma once

#include "Grammar/GrammarFeed.h"
#include "Grammar/GrammarRecovery.h"
#include "Grammar/GrammarReporter.h"
#include "Kesh/SyntaxParser/ITokenSource.h"

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace Kesh::SyntaxParser {
class ISPDocument;
}

namespace Kesh::CodeAnalyzer {

/// Checks the PHP of a document against the whole grammar, in the pass that also delivers its regions. One
/// thread at a time; no nesting and no size of a document costs more than linear time and memory on the heap.
class CPhpGrammarChecker final : public SyntaxParser::ITokenHandler
{
public:
    CPhpGrammarChecker();
    ~CPhpGrammarChecker();
    CPhpGrammarChecker(const CPhpGrammarChecker&) = delete;
    CPhpGrammarChecker& operator=(const CPhpGrammarChecker&) = delete;

    /// Follows the document's tokens from now on; false when its host hands none on. Lives as long as the
    /// document is parsed.
    bool Follow(SyntaxParser::ISPDocument& document);
    /// Before each pass: whether to check it, and for which version, as IGrammarCheck::SetPhpVersion() takes
    /// it; messages say that `versionFrom` asks for it, if that is not empty.
    void Expect(bool wanted, std::int32_t version, const std::wstring& versionFrom = {});
    /// Whether the expected pass has been checked to its end.
    bool HasVerdict() const { return m_wanted && m_complete; }

    /// Whether the grammar takes the whole text as it is; other rules of the language may be broken.
    bool Accepts() const;
    /// The tokens of that pass; all of them if the grammar accepts the text.
    const CGrammarTokens& Tokens() const { return m_tokens; }
    /// What that pass has found, in document order.
    const std::vector<SGrammarDiagnostic>& Diagnostics() const { return m_reporter.Diagnostics(); }

    bool BeginTokens() override;
    void AddToken(const SyntaxParser::SPhpToken& token) override;
    void AddTokens(const SyntaxParser::SPhpToken* tokens, std::size_t count) override;
    void EndTokens(SyntaxParser::CIterator end) override;

private:
    bool Feed(std::uint32_t token);
    bool IsCalm() const;
    void Pump(bool ended);

    std::int32_t m_version = 0;
    std::wstring m_versionFrom;
    bool m_wanted = false;
    bool m_complete = false;
    CGrammarTokens m_tokens;
    CGrammarFeed m_feed{m_tokens};
    CGrammarReporter m_reporter{m_tokens};
    CGrammarRecovery m_recovery{m_tokens, m_feed, m_reporter};
    std::unique_ptr<SGrammarParse> m_parse;
    boost::shared_ptr<SyntaxParser::ITokenSource> m_source;
    std::uint32_t m_next = 0; ///< the token to feed next
    bool m_stalled = false;   ///< it cannot be fed; more tokens are awaited
    bool m_calm = false;      ///< IsCalm(), asked for each token
};

} // namespace Kesh::CodeAnalyzer
