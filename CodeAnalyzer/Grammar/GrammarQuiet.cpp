#include "Grammar/GrammarQuiet.h"

namespace Kesh::CodeAnalyzer {

using K = SyntaxParser::EPhpTokenKind;

void CGrammarQuiet::Start(bool inStatement)
{
    m_active = true;
    m_tokens = m_braces = m_all = 0;
    m_inStatement = inStatement;
}

void CGrammarQuiet::Pass(const CPhpGrammarParser& parser, K kind)
{
    ++m_tokens;
    // So many tokens pass by chance only rarely.
    constexpr std::uint32_t enough = 16;
    if (++m_all == enough) {
        m_active = false;
        return;
    }
    const bool closes = kind == K::CloseBrace;
    if (kind == K::OpenBrace)
        ++m_braces;
    if (kind != K::Semicolon && kind != K::CloseTag && !closes)
        return;
    // The end of a block that was open before says nothing.
    const bool isOuter = closes && m_braces == 0;
    m_braces -= closes && m_braces > 0;
    const bool isWhole = !isOuter && (m_tokens > 1 || m_inStatement);
    if (!parser.Accepts(GrammarSymbol(StatementMark)) && !parser.Accepts(GrammarSymbol(MemberMark)))
        return;
    m_active = !isWhole;
    m_tokens = 0;
}

} // namespace Kesh::CodeAnalyzer
