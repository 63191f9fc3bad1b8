#include "Kesh/CodeAnalyzer/Plugin.h"

#include "Window/CACommands.h"
#include "Window/CAComponent.h"

#include <string_view>

using namespace Kesh::CodeAnalyzer;

ICAComponent* CodeAnalyzerCreate()
{
    return new CCAComponent;
}

Kesh::SDK::ICommand* CodeAnalyzerCreateCommand(ICAComponent* component, const char* className)
{
    auto* own = static_cast<CCAComponent*>(component);
    const std::string_view name = className ? className : "";
    if (name == "CCACheckNowCmd")
        return new CCACheckNowCmd(own);
    if (name == "CCACheckProjectCmd")
        return new CCACheckProjectCmd(own);
    return nullptr;
}
