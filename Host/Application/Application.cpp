#include "Application/Application.h"

#include "Application/ParserComponent.h"
#include "Base/CommonString.h"
#include "Base/Exception.h"
#include "Files/Fault.h"
#include "Files/FilePath.h"
#include "Kesh/LangSupport/LangSupport.h"
#include "ProjectManager/ProjectManager.h"

#include <boost/make_shared.hpp>

namespace Kesh::Host {

CApplication::CApplication(const SParts& parts)
    : m_parts(parts),
      m_parser(boost::make_shared<SyntaxParser::CParserComponent>()),
      m_project(boost::make_shared<ProjectManager::CProjectManager>()),
      m_documents(*m_parser, *m_project)
{
    LangSupport::CLangSupport::SetSource(&parts.langSource);
    AddComponent(m_parser);
    AddComponent(m_project);
    m_parser->InitComponent(this);
    m_project->InitComponent(this);
}

CApplication::~CApplication()
{
    for (CDocument* document : m_documents.GetDocuments())
        m_documents.Close(*document);
    m_project->Close();
    LangSupport::CLangSupport::SetSource(nullptr);
}

boost::weak_ptr<SDK::IComponent1<SDK::IApplication>> CApplication::GetComponent(const std::wstring& name)
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_components.find(name);
    return found == m_components.end() ? nullptr : found->second;
}

void CApplication::AddComponent(const boost::shared_ptr<SDK::IComponent1<SDK::IApplication>>& component)
{
    const std::lock_guard lock(m_mutex);
    m_components[component->GetComponentName()] = component;
}

void CApplication::RemoveComponent(const std::wstring& name)
{
    const std::lock_guard lock(m_mutex);
    m_components.erase(name);
}

void CApplication::OpenProject(const std::wstring& folder)
{
    const std::wstring absolute = AbsolutePath(folder);
    ProjectManager::SFileQuery query = ProjectManager::CProjectManager::MakeQuery();
    std::string problem;
    query.onError = [&](const std::wstring& path, const std::string& reason) {
        if (path == absolute)
            problem = reason;
    };
    std::vector<std::wstring> files = ProjectManager::FindFiles(absolute, query);
    if (!problem.empty())
        throw Base::CWorkError(Base::CCommonString::FromUtf8(problem), __LINE__,
                               "Host/Application/Application");
    OpenProject(absolute, std::move(files));
}

void CApplication::OpenProject(const std::wstring& folder, std::vector<std::wstring> files)
{
    m_project->Open(folder, std::move(files));
    Guard(L"open project", [this] { m_parser->GetProjectParsedSignal()(); });
}

void CApplication::ReopenProject(std::vector<std::wstring> files)
{
    const std::wstring folder = m_project->GetFolder();
    m_project->Close(true);
    OpenProject(folder, std::move(files));
}

} // namespace Kesh::Host
