#include "Grammar/MagicMethodRules.h"

#include <algorithm>
#include <array>

namespace Kesh::CodeAnalyzer {

namespace {

/// What PHP asks of the methods that it calls itself.
struct SMagicMethod
{
    enum EStatic : std::uint8_t { No, Yes, Either };

    std::wstring_view name;
    std::size_t parameters;
    std::array<std::uint32_t, 2> types; ///< what the first two must take, where they have a type
    EStatic isStatic;
    std::uint32_t returns; ///< types it may give back when it names one; 0: it may name none
};
constexpr std::uint32_t AnyType = 0xFFFFFFFF;
constexpr std::size_t AnyCount = 0xFF;
constexpr std::array<SMagicMethod, 17> MagicMethods{
    {{L"__construct", AnyCount, {}, SMagicMethod::No, 0},
     {L"__destruct", 0, {}, SMagicMethod::No, 0},
     {L"__clone", 0, {}, SMagicMethod::No, TypeVoid},
     {L"__get", 1, {TypeString}, SMagicMethod::No, AnyType},
     {L"__set", 2, {TypeString}, SMagicMethod::No, TypeVoid},
     {L"__unset", 1, {TypeString}, SMagicMethod::No, TypeVoid},
     {L"__isset", 1, {TypeString}, SMagicMethod::No, TypeBool},
     {L"__call", 2, {TypeString, TypeArray}, SMagicMethod::No, AnyType},
     {L"__callstatic", 2, {TypeString, TypeArray}, SMagicMethod::Yes, AnyType},
     {L"__tostring", 0, {}, SMagicMethod::No, TypeString},
     {L"__debuginfo", 0, {}, SMagicMethod::No, TypeArray | TypeNull},
     {L"__serialize", 0, {}, SMagicMethod::No, TypeArray},
     {L"__unserialize", 1, {TypeArray}, SMagicMethod::No, TypeVoid},
     {L"__set_state", 1, {TypeArray}, SMagicMethod::Yes, TypeObject},
     {L"__invoke", AnyCount, {}, SMagicMethod::No, AnyType},
     {L"__sleep", 0, {}, SMagicMethod::No, TypeArray | TypeNull},
     {L"__wakeup", 0, {}, SMagicMethod::No, TypeVoid}}};

} // namespace

void CMagicMethodRules::Check(const SFunctionScope& scope)
{
    if (!Text(scope.token).starts_with(L"__"))
        return;
    const std::wstring name = Tokens().Lower(scope.token);
    const auto found = std::find_if(MagicMethods.begin(), MagicMethods.end(),
                                    [&](const SMagicMethod& magic) { return magic.name == name; });
    if (found == MagicMethods.end())
        return;
    const bool isStatic = scope.modifiers.set & ModStatic;
    const bool counted = found->parameters != AnyCount;
    const bool typed = scope.hasReturnType && IsFrom(800);
    const std::size_t count = scope.parameters.Count() - (scope.variadic ? 1 : 0);
    if ((counted && count != found->parameters) || (counted && !scope.references.empty()) ||
        (isStatic != (found->isStatic == SMagicMethod::Yes)))
        Report(Code::MagicMethod, scope.token);
    else if (IsFrom(800) && !Takes(scope, found->types))
        Report(Code::MagicMethod, scope.token);
    else if (typed && found->returns == 0)
        Report(Code::MagicMethod, scope.token);
    else if (typed && found->returns != AnyType && !IsAllowedReturn(scope.returnType, found->returns))
        Report(Code::MagicMethod, scope.token);
}

bool CMagicMethodRules::Takes(const SFunctionScope& scope, const std::array<std::uint32_t, 2>& types) const
{
    for (std::size_t i = 0; i < types.size(); ++i) {
        std::uint32_t given = scope.firstTypes[i];
        if (given & TypeIterable)
            given |= TypeArray;
        if (given != 0 && types[i] != 0 && !(given & (types[i] | TypeMixed)))
            return false;
    }
    return true;
}

// A magic method may promise less than it could give back, and may promise never to come back.
bool CMagicMethodRules::IsAllowedReturn(std::uint32_t type, std::uint32_t allowed) const
{
    if (allowed & TypeObject)
        allowed |= TypeClass | TypeStatic | TypeTraversable;
    return (type & ~(allowed | TypeNever)) == 0;
}

} // namespace Kesh::CodeAnalyzer
