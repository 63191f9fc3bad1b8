#include "Grammar/PhpRules.h"

#include <algorithm>

namespace Kesh::CodeAnalyzer {

using K = SyntaxParser::EPhpTokenKind;

void CPhpRules::PushFunction(SFunctionScope::EKind kind, std::uint32_t token)
{
    SFunctionScope scope;
    scope.kind = kind;
    scope.token = token;
    const bool closure = kind == SFunctionScope::Closure || kind == SFunctionScope::Arrow;
    scope.inClass =
        kind == SFunctionScope::Method || kind == SFunctionScope::Hook || (closure && Function().inClass);
    m_functions.push_back(std::move(scope));
}

void CPhpRules::BeginFunction(const SGrammarValue& word, const SGrammarValue& name)
{
    const K kind = m_tokens[name.first].kind;
    // Only a method may have a reserved word for its name.
    if (kind != K::Identifier && kind != K::Readonly && kind != K::Enum && kind != K::Match && kind != K::Fn)
        Report(Code::WordOutOfPlace, name);
    else if (kind == K::Match || kind == K::Fn)
        Gone(kind == K::Match ? 800 : 704, name);
    if ((m_version == 0 || m_version >= 800) &&
        (IsWord(name.first, L"__autoload") || IsWord(name.first, L"assert")) && m_version != 0)
        Report(Code::ReservedName, name);
    PushFunction(SFunctionScope::Function, name.first);
    SetReference(word);
}

// `&` behind the word: what the function gives back is a place.
void CPhpRules::SetReference(const SGrammarValue& word)
{
    const std::uint32_t next = word.first + 1;
    Function().byReference = next < m_tokens.Count() && (m_tokens[next].kind == K::BitAnd ||
                                                         m_tokens[next].kind == K::BitAndBeforeVariable);
}

void CPhpRules::BeginMethod(const SGrammarValue& word, const SGrammarValue& name)
{
    const SModifiers modifiers = m_modifiers;
    m_modifiers = {};
    if (modifiers.set & ModVar)
        Report(Code::WordOutOfPlace, word);
    PushFunction(SFunctionScope::Method, name.first);
    SetReference(word);
    Function().modifiers = modifiers;
    CheckMethod(name.first);
}

// What the modifiers of a method, its name and its class have to do with one another.
void CPhpRules::CheckMethod(std::uint32_t name)
{
    SClassScope* type = Class();
    if (!type)
        return;
    const std::uint16_t set = Function().modifiers.set;
    const std::uint32_t first = Function().modifiers.first;
    if (!type->methods.insert(m_tokens.Lower(name)).second)
        Report(Code::MethodTwice, name);
    if (set & (ModReadonly | ModSet))
        Report(Code::ModifierMisused, first);
    if (type->kind == InterfaceKind) {
        if (set & (ModAbstract | ModFinal | ModPrivate | ModProtected))
            Report(Code::ModifierMisused, first);
        return;
    }
    if ((set & ModAbstract) && (set & ModPrivate) && type->kind != TraitKind)
        Report(Code::ModifierMisused, first);
    if ((set & ModAbstract) && type->abstractMethod == 0)
        type->abstractMethod = name;
}

void CPhpRules::BeginHook(const SGrammarValue& name)
{
    Needs(804, name);
    if (!IsWord(name.first, L"get") && !IsWord(name.first, L"set"))
        Report(Code::HookRule, name);
    m_modifiers = {};
    PushFunction(SFunctionScope::Hook, name.first);
}

void CPhpRules::BeginClosure(const SGrammarValue& word)
{
    PushFunction(m_tokens[word.first].kind == K::Fn ? SFunctionScope::Arrow : SFunctionScope::Closure,
                 word.first);
    SetReference(word);
}

void CPhpRules::BeginBody(const SGrammarValue& brace)
{
    SFunctionScope& scope = Function();
    scope.inBody = scope.hasBody = true;
    const SClassScope* type = Class();
    if (scope.kind == SFunctionScope::Method && type &&
        (type->kind == InterfaceKind || (scope.modifiers.set & ModAbstract)))
        Report(Code::BodyNotAllowed, brace.first, scope.token);
}

void CPhpRules::BeginArrow()
{
    Function().inBody = true;
    if (Function().returnType == TypeVoid)
        Report(Code::ReturnValue, Function().token);
}

void CPhpRules::NoBody(const SGrammarValue& semicolon)
{
    const SFunctionScope& scope = Function();
    const SClassScope* type = Class();
    if (scope.kind == SFunctionScope::Method && type && type->kind != InterfaceKind &&
        !(scope.modifiers.set & ModAbstract))
        Report(Code::BodyMissing, semicolon.first, scope.token);
}

void CPhpRules::EndFunction()
{
    if (m_functions.size() < 2)
        return;
    const SFunctionScope scope = std::move(m_functions.back());
    CheckReturns(scope);
    ResolveJumps(scope);
    if (scope.kind == SFunctionScope::Method)
        CheckMagicMethod(scope);
    m_functions.pop_back();
}

void CPhpRules::AddParameter(std::uint32_t variable)
{
    SFunctionScope& scope = Function();
    if (scope.variadic)
        Report(Code::VariadicMisused, variable, scope.variadic);
    if (IsThis(variable) || IsSuperglobal(variable))
        Report(Code::ReservedVariable, variable);
    for (const std::uint32_t other : scope.parameters) {
        if (Text(other) == Text(variable)) {
            Report(Code::ParameterTwice, variable, other);
            break;
        }
    }
    scope.parameters.push_back(variable);
    scope.hasParameterType = false;
}

void CPhpRules::Parameter(const SGrammarValue& variable)
{
    AddParameter(variable.first);
}

void CPhpRules::ReferenceParameter(const SGrammarValue& variable)
{
    AddParameter(variable.first);
    Function().references.push_back(variable.first);
}

void CPhpRules::Variadic(const SGrammarValue& dots, const SGrammarValue& variable)
{
    Needs(506, dots);
    AddParameter(variable.first);
    if (Function().promoting)
        Report(Code::PromotionMisused, dots);
    Function().variadic = dots.first;
}

void CPhpRules::BeginPromotion(const SGrammarValue& modifiers)
{
    Needs(800, modifiers);
    SFunctionScope& scope = Function();
    scope.promotion = m_modifiers;
    m_modifiers = {};
    scope.promoting = true;
    constexpr std::uint16_t allowed = ModAccess | ModReadonly | ModSet | ModFinal;
    const SClassScope* type = Class();
    if (scope.promotion.set & ~allowed) {
        Report(Code::WordOutOfPlace, modifiers);
        return;
    }
    if (scope.promotion.set & ModFinal)
        Needs(805, modifiers);
    if (scope.kind != SFunctionScope::Method || !type || !IsWord(scope.token, L"__construct"))
        Report(Code::PromotionMisused, modifiers);
    else if (type->kind == InterfaceKind || (scope.modifiers.set & ModAbstract))
        Report(Code::PromotionMisused, modifiers);
}

void CPhpRules::EndPromotion()
{
    SFunctionScope& scope = Function();
    scope.promoting = false;
    SClassScope* type = Class();
    if (!type || scope.parameters.empty())
        return;
    const std::uint32_t variable = scope.parameters.back();
    if (!type->properties.insert(std::wstring(Text(variable))).second)
        Report(Code::PropertyTwice, variable);
    if (((scope.promotion.set | type->modifiers) & ModReadonly) && !scope.hasParameterType)
        Report(Code::ReadonlyRule, variable);
}

void CPhpRules::BeginParameterHooks(const SGrammarValue& brace)
{
    Needs(804, brace);
    if (!Function().promotion.set)
        Report(Code::PromotionMisused, brace);
}

void CPhpRules::DefaultValue(const SGrammarValue& value)
{
    const SFunctionScope& scope = Function();
    CheckConstant(value, true);
    if (scope.variadic)
        Report(Code::VariadicMisused, value);
    else if (scope.hasParameterType)
        CheckDefault(scope.parameterType, value, !scope.promotion.set);
}

void CPhpRules::EndParameter()
{
    SFunctionScope& scope = Function();
    scope.promotion = {};
    scope.hasParameterType = false;
}

void CPhpRules::LexicalVariable(const SGrammarValue& variable)
{
    SFunctionScope& scope = Function();
    const auto isSame = [&](std::uint32_t other) { return Text(other) == Text(variable.first); };
    if (IsThis(variable.first) || IsSuperglobal(variable.first))
        Report(Code::ReservedVariable, variable);
    else if (std::any_of(scope.parameters.begin(), scope.parameters.end(), isSame))
        Report(Code::LexicalVariable, variable);
    scope.parameters.push_back(variable.first);
    scope.statics.emplace(Text(variable.first));
}

void CPhpRules::StaticVariable(const SGrammarValue& variable)
{
    if (IsThis(variable.first))
        Report(Code::ReservedVariable, variable);
    else if (!Function().statics.emplace(Text(variable.first)).second)
        Gone(803, variable);
}

// Since 8.3 it is worked out when the program gets there.
void CPhpRules::StaticValue(const SGrammarValue& value)
{
    if (m_version != 0 && m_version < 803)
        CheckConstant(value, true);
}

void CPhpRules::GlobalVariable(const SGrammarValue& variable)
{
    if (variable.kind == EValue::This)
        Report(Code::ReservedVariable, variable);
}

} // namespace Kesh::CodeAnalyzer
