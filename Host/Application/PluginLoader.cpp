#include "Application/PluginLoader.h"

#include "Application/Application.h"
#include "Base/CommonString.h"
#include "Base/Exception.h"

#include <QCoreApplication>
#include <QFile>
#include <cstdlib>
#include <dlfcn.h>
#include <vector>

namespace Kesh::Host {

namespace {

constexpr const char* LibraryName = "libCodeAnalyzer.so.1";

[[noreturn]] void Fail(const std::string& message, int line)
{
    throw Base::CWorkError(Base::CCommonString::FromUtf8(message), line, "Host/Application/PluginLoader");
}

std::vector<std::string> Candidates()
{
    if (const char* named = std::getenv("CODE_ANALYZER_PLUGIN"); named && *named)
        return {named};
    const std::string program = QFile::encodeName(QCoreApplication::applicationDirPath()).toStdString();
    return {program + "/../lib/" + LibraryName, std::string(CODE_ANALYZER_LIBDIR) + "/" + LibraryName};
}

} // namespace

CPlugin::CPlugin(CApplication& application) : m_application(application)
{
    std::string tried;
    for (const std::string& candidate : Candidates()) {
        m_library = ::dlopen(candidate.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (m_library) {
            m_path = candidate;
            break;
        }
        const char* reason = ::dlerror();
        tried += std::string("\n  ") + (reason ? reason : candidate.c_str());
    }
    if (!m_library)
        Fail("the code validator could not be loaded (CODE_ANALYZER_PLUGIN may name it):" + tried, __LINE__);

    m_component = Symbol<decltype(CodeAnalyzerCreate)>("CodeAnalyzerCreate")();
    m_component->InitComponent(&application);
    // The registry must not delete it: CodeAnalyzerDestroy() does.
    m_application.AddComponent(boost::shared_ptr<SDK::IComponent1<SDK::IApplication>>(
        m_component, [](SDK::IComponent1<SDK::IApplication>*) {}));
}

CPlugin::~CPlugin()
{
    m_application.RemoveComponent(m_component->GetComponentName());
    Symbol<decltype(CodeAnalyzerDestroy)>("CodeAnalyzerDestroy")(m_component);
    // The library stays loaded: Qt may still hold meta-objects and resources of it.
}

CodeAnalyzer::IErrorsSource& CPlugin::Errors()
{
    return *Symbol<decltype(CodeAnalyzerGetErrorsSource)>("CodeAnalyzerGetErrorsSource")(m_component);
}

CodeAnalyzer::ICustomNames& CPlugin::CustomNames()
{
    return *Symbol<decltype(CodeAnalyzerGetCustomNames)>("CodeAnalyzerGetCustomNames")(m_component);
}

CodeAnalyzer::IErrorDetails* CPlugin::ErrorDetails() const
{
    return Offered<CodeAnalyzer::IErrorDetails>("CodeAnalyzerGetErrorDetails");
}

CodeAnalyzer::IGrammarCheck* CPlugin::GrammarCheck() const
{
    return Offered<CodeAnalyzer::IGrammarCheck>("CodeAnalyzerGetGrammarCheck");
}

template <class TInterface> TInterface* CPlugin::Offered(const char* name) const
{
    using TFunction = TInterface*(CodeAnalyzer::ICAComponent*);
    void* address = ::dlsym(m_library, name);
    return address ? reinterpret_cast<TFunction*>(address)(m_component) : nullptr;
}

void CPlugin::RunCommand(const char* className)
{
    SDK::ICommand* command =
        Symbol<decltype(CodeAnalyzerCreateCommand)>("CodeAnalyzerCreateCommand")(m_component, className);
    if (!command)
        Fail(std::string("the code validator has no command ") + className, __LINE__);
    const std::unique_ptr<SDK::ICommand, void (*)(SDK::ICommand*)> owner(
        command, [](SDK::ICommand* ended) { ended->Free(); });
    command->OnCommand(0);
}

template <class TFunction> TFunction* CPlugin::Symbol(const char* name) const
{
    void* address = ::dlsym(m_library, name);
    if (!address)
        Fail(m_path + " is no code validator: it lacks " + name, __LINE__);
    return reinterpret_cast<TFunction*>(address);
}

} // namespace Kesh::Host
