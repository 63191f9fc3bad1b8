#pragma once

#include "Application/PluginLibrary.h"
#include "Kesh/CodeAnalyzer/IGrammarCheck.h"
#include "Kesh/CodeAnalyzer/IMarkupCheck.h"
#include "Kesh/CodeAnalyzer/Plugin.h"

#include <memory>
#include <string>

namespace Kesh::Host {

class CApplication;

/// The code validator, loaded from its shared library. GUI thread only.
class CPlugin
{
public:
    /// With an errors bar, or without a window.
    static constexpr const char* Windowed = "libCodeAnalyzer.so.1";
    static constexpr const char* Windowless = "libCodeAnalyzerChecks.so.1";

    /// Loads the library, makes its component and initialises it. Throws Base::CWorkError with a text for the
    /// user.
    explicit CPlugin(CApplication& application, const char* library = Windowed);
    /// Ends the component; its bar goes with it.
    ~CPlugin();
    CPlugin(const CPlugin&) = delete;
    CPlugin& operator=(const CPlugin&) = delete;

    CodeAnalyzer::ICAComponent& Component() { return *m_component; }
    /// Of one with a window.
    CodeAnalyzer::IErrorsManager& ErrorsManager() { return *m_component->GetErrorsManager(); }
    CodeAnalyzer::IErrorsSource& Errors();
    CodeAnalyzer::ICustomNames& CustomNames();
    CodeAnalyzer::IProjectCheck& ProjectCheck();
    /// Null when the plug-in offers none.
    CodeAnalyzer::IGrammarCheck* GrammarCheck() const;
    CodeAnalyzer::IMarkupCheck* MarkupCheck() const;
    /// Runs a command of the plug-in by its class name.
    void RunCommand(const char* className);
    /// Where the library was found.
    const std::string& GetLibraryPath() const { return m_library.GetPath(); }

private:
    template <class TInterface> TInterface* Offered(const char* name) const;

    CApplication& m_application;
    CPluginLibrary m_library;
    CodeAnalyzer::ICAComponent* m_component = nullptr;
};

} // namespace Kesh::Host
