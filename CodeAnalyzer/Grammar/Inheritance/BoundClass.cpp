#include "Grammar/Inheritance/BoundClass.h"

#include <algorithm>

namespace Kesh::CodeAnalyzer {

std::size_t SSignature::Required() const
{
    const auto last = std::find_if(parameters.rbegin(), parameters.rend(), [](const SParameter& parameter) {
        return !parameter.isOptional && !parameter.isVariadic;
    });
    return static_cast<std::size_t>(parameters.rend() - last);
}

bool SBoundClass::IsA(const SBoundClass& other) const
{
    for (const SBoundClass* type = this; type; type = type->parent)
        if (type == &other ||
            std::find(type->interfaces.begin(), type->interfaces.end(), other.key) != type->interfaces.end())
            return true;
    return false;
}

std::wstring FullName(const SBoundMember& member, std::wstring_view behind)
{
    return member.owner->name + L"::" + member.name + std::wstring(behind);
}

std::wstring Written(const SBoundMethod& method)
{
    const SSignature& signature = *method.signature;
    std::wstring text = (signature.byReference ? L"& " : L"") + FullName(method, L"(");
    const wchar_t* comma = L"";
    for (const SParameter& parameter : signature.parameters) {
        text += comma;
        if (parameter.type.isSet)
            text += parameter.type.text + L' ';
        text += parameter.byReference ? L"&" : L"";
        text += (parameter.isVariadic ? L"..." : L"") + parameter.name;
        if (parameter.isOptional && !parameter.isVariadic)
            text += L" = " + parameter.value;
        comma = L", ";
    }
    text += L')';
    if (signature.result.isSet)
        text += L": " + signature.result.text;
    return text;
}

} // namespace Kesh::CodeAnalyzer
