#include "Session.h"

#include "Configuration/Apply.h"
#include "SyntaxParser/ParserComponent.h"

namespace Kesh::CommandLine {

CSession::CSession(const Configuration::SConfiguration& configuration)
    : m_application({m_frame, m_settings, m_translations})
{
    m_plugin.emplace(m_application);
    m_frame.Build();
    Configuration::Apply(configuration, m_application.Parser(), m_plugin->GrammarCheck());
    CodeAnalyzer::IErrorsSource& errors = m_plugin->Errors();
    m_describer.emplace(Findings::CDescriber::SSources{
        [&errors](const CodeAnalyzer::SCAError& error) { return errors.GetErrorDescription(error); },
        *m_application.Parser().GetCompletionData(), m_plugin->ErrorDetails(), &configuration});
}

const Configuration::SConfiguration& CSession::NoConfiguration()
{
    static const Configuration::SConfiguration none;
    return none;
}

Findings::SFileFindings CSession::FindingsOf(const std::wstring& file, const Findings::SCheckedFile& checked)
{
    std::vector<CodeAnalyzer::SCAError> errors;
    m_plugin->Errors().GetErrors(file, errors);
    return m_describer->Describe(checked, std::move(errors));
}

} // namespace Kesh::CommandLine
