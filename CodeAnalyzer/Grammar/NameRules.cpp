#include "Grammar/NameRules.h"

#include <algorithm>
#include <array>

namespace Kesh::CodeAnalyzer {

namespace {

struct SReservedName
{
    std::wstring_view name;
    std::int32_t since;
};
constexpr std::array<SReservedName, 15> ReservedNames{{{L"self", 0},
                                                       {L"parent", 0},
                                                       {L"static", 0},
                                                       {L"int", 700},
                                                       {L"float", 700},
                                                       {L"bool", 700},
                                                       {L"string", 700},
                                                       {L"true", 700},
                                                       {L"false", 700},
                                                       {L"null", 700},
                                                       {L"void", 701},
                                                       {L"iterable", 701},
                                                       {L"object", 702},
                                                       {L"mixed", 800},
                                                       {L"never", 801}}};

} // namespace

bool CNameRules::IsReservedClassName(std::wstring_view lower) const
{
    return std::any_of(ReservedNames.begin(), ReservedNames.end(), [&](const SReservedName& reserved) {
        return reserved.name == lower && (reserved.since == 0 || Version() >= reserved.since);
    });
}

void CNameRules::CheckClassName(std::uint32_t token)
{
    if (IsReservedClassName(Tokens().Lower(token)))
        Report(Code::ReservedName, token);
}

// `self`, `parent` and `static` need a class around them; what a closure will be bound to nobody knows.
void CNameRules::CheckClassWord(std::uint32_t token)
{
    const std::wstring_view text = Text(token);
    if (text.size() != 4 && text.size() != 6)
        return;
    const bool isParent = IsWord(token, L"parent");
    if (!isParent && !IsWord(token, L"self") && !IsWord(token, L"static"))
        return;
    const SFunctionScope& scope = Function();
    const SClassScope* type = Class();
    const bool inClassBody = type && type->depth == m_scopes.functions.size();
    if (!inClassBody) {
        if (scope.kind == SFunctionScope::Closure || scope.kind == SFunctionScope::Arrow ||
            scope.kind == SFunctionScope::File)
            return;
        if (scope.kind == SFunctionScope::Function) {
            Report(Code::NoClassHere, token);
            return;
        }
    }
    if (isParent && type && type->parent == NoToken && type->kind != TraitKind)
        Report(Code::NoClassHere, token);
}

void CNameRules::CheckNoClassWord(const SGrammarValue& name)
{
    if (IsWord(name.first, L"self") || IsWord(name.first, L"parent") || IsWord(name.first, L"static"))
        Report(Code::ReservedName, name);
}

} // namespace Kesh::CodeAnalyzer
