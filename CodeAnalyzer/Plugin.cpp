#include "Kesh/CodeAnalyzer/Plugin.h"

#include "Components/CACommands.h"
#include "Components/CAComponent.h"

#include <string_view>

using namespace Kesh::CodeAnalyzer;

namespace {

CCAComponent* Own(ICAComponent* component)
{
    return static_cast<CCAComponent*>(component);
}

} // namespace

ICAComponent* CodeAnalyzerCreate()
{
    return new CCAComponent;
}

void CodeAnalyzerDestroy(ICAComponent* component)
{
    delete Own(component);
}

Kesh::SDK::ICommand* CodeAnalyzerCreateCommand(ICAComponent* component, const char* className)
{
    const std::string_view name = className ? className : "";
    if (name == "CCACheckNowCmd")
        return new CCACheckNowCmd(Own(component));
    if (name == "CCACheckProjectCmd")
        return new CCACheckProjectCmd(Own(component));
    return nullptr;
}

IErrorsSource* CodeAnalyzerGetErrorsSource(ICAComponent* component)
{
    return Own(component)->GetErrorsSource();
}

IGrammarCheck* CodeAnalyzerGetGrammarCheck(ICAComponent* component)
{
    return Own(component)->GetGrammarCheck();
}

IMarkupCheck* CodeAnalyzerGetMarkupCheck(ICAComponent* component)
{
    return Own(component)->GetMarkupCheck();
}

ICustomNames* CodeAnalyzerGetCustomNames(ICAComponent* component)
{
    return Own(component)->GetHtmlCustomItemsKeeper();
}

IProjectCheck* CodeAnalyzerGetProjectCheck(ICAComponent* component)
{
    return Own(component)->GetProjectCheck();
}
