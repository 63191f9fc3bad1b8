#pragma once

#include "Application/DocumentService.h"
#include "Application/ThreadService.h"
#include "Application/TimerService.h"
#include "Kesh/SDK/IApplication.h"

#include <map>
#include <mutex>

namespace Kesh::Host {

/// What plug-ins that show something need of the toolkit of windows. GUI thread.
class IDisplay
{
public:
    virtual SDK::IImageListService& Images() = 0;
    /// As IApplication::GetScaleFactor().
    virtual double ScaleFactor() = 0;

protected:
    ~IDisplay() = default;
};

/// The host as its plug-ins see it, with or without a window. Made on the GUI thread, after the
/// QCoreApplication.
class CApplication final : public SDK::IApplication
{
public:
    /// What the front end supplies; it all outlives the application.
    struct SParts
    {
        SDK::IMainFrame& mainFrame;
        SDK::ISettings& settings;
        LangSupport::ILangSource& langSource;
        IDisplay* display = nullptr; ///< null: there is no window, and plug-ins that show nothing only
    };
    explicit CApplication(const SParts& parts);
    /// Closes the documents, then the project.
    ~CApplication();

    boost::weak_ptr<SDK::IComponent1<SDK::IApplication>> GetComponent(const std::wstring& name) override;
    SDK::IMainFrame* GetMainFrame() override { return &m_parts.mainFrame; }
    SDK::IImageListService* GetImageListService() override
    {
        return m_parts.display ? &m_parts.display->Images() : nullptr;
    }
    SDK::ISettings* GetSettings() override { return &m_parts.settings; }
    SDK::ITimerService* GetTimerService() override { return &m_timers; }
    SDK::IThreadService* GetThreadService() override { return &m_threads; }
    SDK::IDocumentService* GetDocumentService() override { return &m_documents; }
    double GetScaleFactor() override { return m_parts.display ? m_parts.display->ScaleFactor() : 1.0; }
    LangSupport::ILangSource* GetLangSource() override { return &m_parts.langSource; }

    /// Makes a component known by its name.
    void AddComponent(const boost::shared_ptr<SDK::IComponent1<SDK::IApplication>>& component);
    void RemoveComponent(const std::wstring& name);

    CTimerService& Timers() { return m_timers; }
    CThreadService& Threads() { return m_threads; }
    CDocumentService& Documents() { return m_documents; }
    SyntaxParser::CParserComponent& Parser() { return *m_parser; }
    ProjectManager::CProjectManager& Project() { return *m_project; }

    /// Opens a folder as the project: finds its files and tells the plug-ins. Throws Base::CWorkError when it
    /// is no folder that can be read.
    void OpenProject(const std::wstring& folder);
    /// The same with files found beforehand.
    void OpenProject(const std::wstring& folder, std::vector<std::wstring> files);
    /// Looks for the project's files again; what is known of them stays.
    void ReopenProject(std::vector<std::wstring> files);

private:
    SParts m_parts;
    CTimerService m_timers;
    CThreadService m_threads;
    boost::shared_ptr<SyntaxParser::CParserComponent> m_parser;
    boost::shared_ptr<ProjectManager::CProjectManager> m_project;
    CDocumentService m_documents;
    std::mutex m_mutex; ///< guards what follows
    std::map<std::wstring, boost::shared_ptr<SDK::IComponent1<SDK::IApplication>>> m_components;
};

} // namespace Kesh::Host
