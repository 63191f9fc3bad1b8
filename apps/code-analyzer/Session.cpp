#include "Session.h"

#include "Application/ParserComponent.h"
#include "Configuration/Apply.h"

namespace Kesh::CommandLine {

CQtProcess::CQtProcess()
{
    // The errors bar is a widget, which nobody will see here, whatever display the user's windows use.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int argc = 1; // the command line is ours, Qt has options of its own
    static char name[] = "code-analyzer";
    static char* argv[] = {name, nullptr};
    m_application.emplace(argc, argv);
}

CSession::CSession(const Configuration::SConfiguration& configuration)
    : m_application({m_frame, m_settings, m_translations})
{
    m_plugin.emplace(m_application);
    m_frame.Build();
    Configuration::Apply(configuration, m_application.Parser(), m_plugin->GrammarCheck());
    m_describer.emplace(Findings::CDescriber::SSources{m_plugin->Errors().GetTexts(), &configuration});
}

const Configuration::SConfiguration& CSession::NoConfiguration()
{
    static const Configuration::SConfiguration none;
    return none;
}

Findings::SFileFindings CSession::FindingsOf(const std::wstring& file, const Findings::SCheckedFile& checked)
{
    return m_describer->Describe(checked, m_plugin->Errors().GetDiagnostics(file));
}

} // namespace Kesh::CommandLine
