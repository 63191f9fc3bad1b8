#include "Session.h"

#include "SyntaxParser/ParserComponent.h"

namespace Kesh::CommandLine {

CSession::CSession() : m_application({m_frame, m_settings, m_translations})
{
    m_plugin.emplace(m_application);
    m_frame.Build();
    m_describer.emplace(m_plugin->Errors(), *m_application.Parser().GetCompletionData());
}

Findings::SFileFindings CSession::FindingsOf(const std::wstring& file, const Findings::SCheckedFile& checked)
{
    std::vector<CodeAnalyzer::SCAError> errors;
    m_plugin->Errors().GetErrors(file, errors);
    return m_describer->Describe(checked, std::move(errors));
}

} // namespace Kesh::CommandLine
