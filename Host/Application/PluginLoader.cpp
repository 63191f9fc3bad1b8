#include "Application/PluginLoader.h"

#include "Application/Application.h"
#include "Base/CommonString.h"
#include "Base/Exception.h"

namespace Kesh::Host {

namespace {

[[noreturn]] void Fail(const std::string& message, int line)
{
    throw Base::CWorkError(Base::CCommonString::FromUtf8(message), line, "Host/Application/PluginLoader");
}

} // namespace

CPlugin::CPlugin(CApplication& application, const char* library)
    : m_application(application), m_library(library)
{
    m_component = m_library.Symbol<decltype(CodeAnalyzerCreate)>("CodeAnalyzerCreate")();
    m_component->InitComponent(&application);
    Errors().SetDetailed(true);
    // The registry must not delete it: CodeAnalyzerDestroy() does.
    m_application.AddComponent(boost::shared_ptr<SDK::IComponent1<SDK::IApplication>>(
        m_component, [](SDK::IComponent1<SDK::IApplication>*) {}));
}

CPlugin::~CPlugin()
{
    m_application.RemoveComponent(m_component->GetComponentName());
    m_library.Symbol<decltype(CodeAnalyzerDestroy)>("CodeAnalyzerDestroy")(m_component);
}

CodeAnalyzer::IErrorsSource& CPlugin::Errors()
{
    return *m_library.Symbol<decltype(CodeAnalyzerGetErrorsSource)>("CodeAnalyzerGetErrorsSource")(
        m_component);
}

CodeAnalyzer::ICustomNames& CPlugin::CustomNames()
{
    return *m_library.Symbol<decltype(CodeAnalyzerGetCustomNames)>("CodeAnalyzerGetCustomNames")(m_component);
}

CodeAnalyzer::IGrammarCheck* CPlugin::GrammarCheck() const
{
    return Offered<CodeAnalyzer::IGrammarCheck>("CodeAnalyzerGetGrammarCheck");
}

CodeAnalyzer::IMarkupCheck* CPlugin::MarkupCheck() const
{
    return Offered<CodeAnalyzer::IMarkupCheck>("CodeAnalyzerGetMarkupCheck");
}

template <class TInterface> TInterface* CPlugin::Offered(const char* name) const
{
    const auto function = m_library.Find<TInterface*(CodeAnalyzer::ICAComponent*)>(name);
    return function ? function(m_component) : nullptr;
}

CodeAnalyzer::IProjectCheck& CPlugin::ProjectCheck()
{
    return *m_library.Symbol<decltype(CodeAnalyzerGetProjectCheck)>("CodeAnalyzerGetProjectCheck")(
        m_component);
}

void CPlugin::RunCommand(const char* className)
{
    SDK::ICommand* command = m_library.Symbol<decltype(CodeAnalyzerCreateCommand)>(
        "CodeAnalyzerCreateCommand")(m_component, className);
    if (!command)
        Fail(std::string("the code validator has no command ") + className, __LINE__);
    const std::unique_ptr<SDK::ICommand, void (*)(SDK::ICommand*)> owner(
        command, [](SDK::ICommand* ended) { ended->Free(); });
    command->OnCommand(0);
}

} // namespace Kesh::Host
