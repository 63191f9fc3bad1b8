#include "Grammar/PhpGrammarChecker.h"

#include "Kesh/SyntaxParser/ISPDocument.h"

#include <algorithm>
#include <boost/pointer_cast.hpp>

namespace Kesh::CodeAnalyzer {

using SyntaxParser::CIterator;
using SyntaxParser::EPhpTokenKind;
using SyntaxParser::ITokenSource;
using SyntaxParser::SPhpToken;

CPhpGrammarChecker::CPhpGrammarChecker() : m_parse(std::make_unique<SGrammarParse>(m_tokens)) {}

CPhpGrammarChecker::~CPhpGrammarChecker() = default;

bool CPhpGrammarChecker::Follow(SyntaxParser::ISPDocument& document)
{
    m_source = boost::dynamic_pointer_cast<ITokenSource>(document.GetComponent(L"ITokenSource").lock());
    if (m_source)
        m_source->AddTokenHandler(this);
    return m_source != nullptr;
}

void CPhpGrammarChecker::Expect(bool wanted, std::int32_t version, const std::wstring& versionFrom)
{
    m_wanted = wanted;
    m_version = version;
    m_versionFrom = versionFrom;
    m_complete = false;
}

bool CPhpGrammarChecker::Accepts() const
{
    const auto& found = Diagnostics();
    return !m_recovery.HasStopped() &&
           std::none_of(found.begin(), found.end(),
                        [](const SGrammarDiagnostic& diagnostic) { return diagnostic.stopsParse; });
}

bool CPhpGrammarChecker::BeginTokens()
{
    if (!m_wanted)
        return false;
    m_tokens.Clear();
    // A large text would else be held twice each time they grow.
    constexpr std::size_t CharactersPerToken = 8;
    m_tokens.Reserve(m_source ? m_source->GetText().size() / CharactersPerToken : 0);
    m_parse->rules.Begin(m_version);
    m_parse->parser.Begin();
    m_feed.Begin(m_version);
    m_reporter.Begin(m_version, m_versionFrom);
    m_recovery.Begin(m_source.get());
    m_next = 0;
    m_stalled = m_complete = false;
    m_calm = true;
    return true;
}

void CPhpGrammarChecker::AddToken(const SPhpToken& token)
{
    if (m_calm && CGrammarFeed::IsPlain(token.kind)) {
        if (m_parse->parser.Push(GrammarSymbol(token.kind), m_tokens.Add(token))) [[likely]] {
            ++m_next;
            return;
        }
        Pump(false);
    } else {
        if (token.kind == EPhpTokenKind::OpenTag || m_recovery.IsDeaf())
            return;
        const std::uint32_t index = m_tokens.Add(token);
        if (m_next == index && !m_recovery.IsSkipping() && !m_tokens.IsBad(index) && Feed(index))
            ++m_next;
        else
            Pump(false);
    }
    m_calm = IsCalm();
}

// Whether all tokens have been fed, and nothing that went before has to do with the next one.
bool CPhpGrammarChecker::IsCalm() const
{
    return m_next == m_tokens.Count() && m_feed.Edits().empty() && !m_recovery.IsSkipping() &&
           !m_recovery.IsQuiet() && !m_recovery.IsDeaf();
}

void CPhpGrammarChecker::AddTokens(const SPhpToken* tokens, std::size_t count)
{
    for (const SPhpToken* token = tokens; token != tokens + count; ++token)
        AddToken(*token);
}

void CPhpGrammarChecker::EndTokens(CIterator end)
{
    m_complete = true;
    if (!m_recovery.HasGivenUp()) {
        SPhpToken token;
        token.start = token.end = end;
        token.text = {L"", 0};
        m_tokens.Add(token);
        m_stalled = false;
        Pump(true);
    }
    m_parse->rules.Finish();
    m_reporter.AddRuleReports(m_recovery.KeptReports());
    m_reporter.AddRuleReports(m_parse->rules.Reports());
    m_reporter.Finish();
}

bool CPhpGrammarChecker::Feed(std::uint32_t token)
{
    if (!m_feed.Feed(*m_parse, token))
        return false;
    if (m_recovery.IsQuiet()) [[unlikely]]
        m_recovery.OnFed(*m_parse, token);
    return true;
}

// Feeds what has come, as far as that can be decided yet.
void CPhpGrammarChecker::Pump(bool ended)
{
    while (m_next < m_tokens.Count() && !m_recovery.HasGivenUp()) {
        if (m_recovery.IsSkipping()) {
            m_recovery.Skip(*m_parse, m_next);
            continue;
        }
        if (!m_stalled && m_tokens.IsBad(m_next) && m_recovery.OnLexicalError(m_parse, m_next))
            continue;
        if (!m_stalled && Feed(m_next)) {
            ++m_next;
            continue;
        }
        m_stalled = true;
        if (!ended && m_tokens.Count() - m_next < CGrammarRecovery::Window)
            return;
        m_stalled = false;
        m_recovery.Resolve(m_parse, m_next);
    }
}

} // namespace Kesh::CodeAnalyzer
