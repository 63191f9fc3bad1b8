#include "Session.h"

namespace Kesh::CommandLine {

CSession::CSession() : m_application({m_frame, m_settings, m_translations})
{
    m_plugin.emplace(m_application);
    m_frame.Build();
}

std::vector<SRecord> CSession::RecordsOf(const std::wstring& file, const std::wstring& shown)
{
    std::vector<CodeAnalyzer::SCAError> errors;
    m_plugin->Errors().GetErrors(file, errors);
    std::vector<SRecord> records;
    for (const CodeAnalyzer::SCAError& error : errors)
        records.push_back({shown, error, m_plugin->Errors().GetErrorDescription(error)});
    return records;
}

} // namespace Kesh::CommandLine
