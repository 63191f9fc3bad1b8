#pragma once

#include "Grammar/PhpGrammarParser.h"

#include <cstdint>

namespace Kesh::CodeAnalyzer {

/// After an error, what comes before a statement or a member has parsed is about the same mistake.
class CGrammarQuiet
{
public:
    void Begin() { m_active = false; }
    /// An error has been told, and the parse goes on. `inStatement`: in the statement that it is in, of which
    /// the end is enough.
    void Start(bool inStatement);
    bool IsActive() const { return m_active; }
    /// A token has passed.
    void Pass(const CPhpGrammarParser& parser, SyntaxParser::EPhpTokenKind kind);

private:
    bool m_active = false;
    std::uint32_t m_tokens = 0; ///< that have passed since the last end of a statement
    std::uint32_t m_braces = 0; ///< opened since the error
    std::uint32_t m_all = 0;    ///< tokens that have passed since the error
    bool m_inStatement = false;
};

} // namespace Kesh::CodeAnalyzer
