#pragma once

#include "Application/HeadlessMainFrame.h"
#include "Application/Settings.h"
#include "Editor/TextHolder.h"
#include "GatedParser.h"
#include "LangSupport/Translations.h"
#include "ProjectManager/ProjectManager.h"
#include "Window/CAComponent.h"
#include "Window/CAErrorsBar.h"
#include "Window/Display.h"

#include <boost/make_shared.hpp>
#include <memory>
#include <string>

namespace Kesh::Tests {

/// The real host without a window, and the plug-in's component, started in it unless said otherwise. Like our
/// own hosts it asks for a thorough project check, unless it is plain.
struct CTestHost
{
    enum EStart { Started, NotStarted, Plain };

    explicit CTestHost(EStart start = Started)
    {
        application.AddComponent(parser);
        if (start != NotStarted)
            Start();
        component->GetProjectCheck()->SetThorough(start != Plain);
    }
    ~CTestHost() { parser->Gate().Open(); }

    void Start()
    {
        component->InitComponent(&application);
        frame.Build();
    }
    CodeAnalyzer::CCAErrorsManager& Errors()
    {
        return static_cast<CodeAnalyzer::CCAErrorsManager&>(*component->GetErrorsManager());
    }
    CodeAnalyzer::CCAErrorsBar& Bar() { return *component->GetErrorsBar(); }
    CGate& Gate() { return parser->Gate(); }
    ProjectManager::IProjectManager& Project() { return *application.Project().GetProjectManager(); }

    Host::CDocument& Open(const std::wstring& path, const std::string& text)
    {
        return application.Documents().OpenBytes(path, text);
    }
    void Close(Host::CDocument& document) { application.Documents().Close(document); }
    /// As the user's typing would.
    static void Edit(Host::CDocument& document, const std::wstring& text)
    {
        static_cast<Editor::CMemoryText&>(document.GetHolder()).Edit(text);
    }
    std::vector<CodeAnalyzer::SCAError> ErrorsOf(const std::wstring& path)
    {
        std::vector<CodeAnalyzer::SCAError> errors;
        Errors().GetErrors(path, errors);
        return errors;
    }

    Host::CHeadlessMainFrame frame;
    Host::CMemorySettings settings;
    LangSupport::CTranslations translations;
    Host::CDisplay display;
    Host::CApplication application{{frame, settings, translations, &display}};
    boost::shared_ptr<CGatedParser> parser = boost::make_shared<CGatedParser>(application.Parser());
    std::unique_ptr<CodeAnalyzer::CCAComponent> component = std::make_unique<CodeAnalyzer::CCAComponent>();
};

} // namespace Kesh::Tests
