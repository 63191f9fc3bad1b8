#include "Session.h"

#include "Application/ParserComponent.h"
#include "Findings/ApplyRules.h"
#include "Kesh/CodeAnalyzer/IGrammarCheck.h"
#include "Kesh/CodeAnalyzer/IMarkupCheck.h"

namespace Kesh::CommandLine {

CQtProcess::CQtProcess()
{
    static int argc = 1; // the command line is ours, Qt has options of its own
    static char name[] = "code-analyzer";
    static char* argv[] = {name, nullptr};
    m_application.emplace(argc, argv);
}

CSession::CSession() : m_application({m_frame, m_settings, m_translations})
{
    m_plugin.emplace(m_application, Host::CPlugin::Windowless);
}

void CSession::UseRules(TProjectRules rules)
{
    m_rules = std::move(rules);
    if (CodeAnalyzer::IGrammarCheck* grammar = m_plugin->GrammarCheck())
        grammar->SetEnabled(true);
    if (CodeAnalyzer::IMarkupCheck* markup = m_plugin->MarkupCheck())
        markup->SetEnabled(true);
    Findings::ApplyRules(m_rules, m_application.Parser(), m_plugin->GrammarCheck(), m_plugin->MarkupCheck());
}

Findings::SFileFindings CSession::FindingsOf(const Findings::SCheckedFile& checked)
{
    const Findings::CDescriber describer(m_plugin->Errors().GetTexts());
    return describer.Describe(checked, m_plugin->Errors().GetDiagnostics(checked.path),
                              *m_rules->For(checked.path));
}

} // namespace Kesh::CommandLine
