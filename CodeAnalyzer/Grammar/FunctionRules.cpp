#include "Grammar/FunctionRules.h"

#include "Grammar/NewerConstants.h"
#include "Grammar/WordVersions.h"

namespace Kesh::CodeAnalyzer {

using K = SyntaxParser::EPhpTokenKind;

void CFunctionRules::PushFunction(SFunctionScope::EKind kind, std::uint32_t token)
{
    SFunctionScope scope;
    scope.kind = kind;
    scope.token = token;
    const bool closure = kind == SFunctionScope::Closure || kind == SFunctionScope::Arrow;
    scope.inClass =
        kind == SFunctionScope::Method || kind == SFunctionScope::Hook || (closure && Function().inClass);
    m_scopes.functions.push_back(std::move(scope));
}

void CFunctionRules::BeginFunction(const SGrammarValue& word, const SGrammarValue& name)
{
    const K kind = Tokens()[name.first].kind;
    // Only a method may have a reserved word for its name.
    const bool wasName = Version() != 0 && Version() < ReservedSince(kind);
    if (kind != K::Identifier && kind != K::Readonly && kind != K::Enum && kind != K::Match &&
        kind != K::Fn && !wasName)
        Report(Code::WordOutOfPlace, name);
    else if (kind == K::Match || kind == K::Fn)
        Needs(kind == K::Match ? EFeature::FunctionMatch : EFeature::FunctionFn, name);
    const bool isOldLoader = IsWord(name.first, L"__autoload") && m_scopes.namespaceName == NoToken;
    if (Version() >= GoneSince::FunctionAutoload && (isOldLoader || IsWord(name.first, L"assert")))
        Report(Code::ReservedName, name);
    PushFunction(SFunctionScope::Function, name.first);
    SetReference(word);
}

// `&` behind the word: what the function gives back is a place.
void CFunctionRules::SetReference(const SGrammarValue& word)
{
    const std::uint32_t next = word.first + 1;
    Function().byReference = next < Tokens().Count() && (Tokens()[next].kind == K::BitAnd ||
                                                         Tokens()[next].kind == K::BitAndBeforeVariable);
}

void CFunctionRules::BeginMethod(const SGrammarValue& word, const SGrammarValue& name)
{
    const SModifiers modifiers = m_scopes.modifiers;
    m_scopes.modifiers = {};
    if (modifiers.set & ModVar)
        Report(Code::WordOutOfPlace, word);
    PushFunction(SFunctionScope::Method, name.first);
    SetReference(word);
    Function().modifiers = modifiers;
    CheckMethod(name.first);
}

// What the modifiers of a method, its name and its class have to do with one another.
void CFunctionRules::CheckMethod(std::uint32_t name)
{
    SClassScope* type = Class();
    if (!type)
        return;
    const std::uint16_t set = Function().modifiers.set;
    const std::uint32_t first = Function().modifiers.first;
    type->members.push_back({SMember::Method, set, name});
    if (type->kind != TraitKind && IsWord(name, L"__tostring"))
        type->isLate = true; // it is an interface too

    if (const auto [at, isNew] = type->methods.try_emplace(Tokens().Lower(name), name); !isNew)
        Report(Code::MethodTwice, name, FirstIs(at->second));
    if (set & (ModReadonly | ModSet))
        Report(Code::ModifierMisused, first);
    if (type->kind == InterfaceKind) {
        if (set & (ModAbstract | ModFinal | ModPrivate | ModProtected))
            Report(Code::ModifierMisused, first);
        return;
    }
    if ((set & ModAbstract) && (set & ModPrivate) && type->kind != TraitKind)
        Report(Code::ModifierMisused, first);
    if ((set & ModAbstract) && (set & ModPrivate) && type->kind == TraitKind)
        m_scopes.Needs(EFeature::TraitAbstractPrivate, name);
    if ((set & ModAbstract) && type->abstractMethod == 0)
        type->abstractMethod = name;
}

void CFunctionRules::BeginHook(const SGrammarValue& name)
{
    if (!IsWord(name.first, L"get") && !IsWord(name.first, L"set"))
        Report(Code::HookRule, name);
    m_scopes.modifiers = {};
    PushFunction(SFunctionScope::Hook, name.first);
}

void CFunctionRules::BeginClosure(const SGrammarValue& word)
{
    PushFunction(Tokens()[word.first].kind == K::Fn ? SFunctionScope::Arrow : SFunctionScope::Closure,
                 word.first);
    SetReference(word);
}

void CFunctionRules::BeginBody(const SGrammarValue& brace)
{
    SFunctionScope& scope = Function();
    scope.inBody = scope.hasBody = true;
    const SClassScope* type = Class();
    if (scope.kind == SFunctionScope::Method && type &&
        (type->kind == InterfaceKind || (scope.modifiers.set & ModAbstract)))
        Report(Code::BodyNotAllowed, brace.first, {scope.token, "The method is declared here"});
}

void CFunctionRules::BeginArrow()
{
    Function().inBody = true;
    if (Function().returnType == TypeVoid)
        Report(Code::ReturnValue, Function().token);
}

void CFunctionRules::NoBody(const SGrammarValue& semicolon)
{
    const SFunctionScope& scope = Function();
    const SClassScope* type = Class();
    if (scope.kind == SFunctionScope::Method && type && type->kind != InterfaceKind &&
        !(scope.modifiers.set & ModAbstract))
        Report(Code::BodyMissing, semicolon.first, {scope.token, "The method is declared here"});
}

void CFunctionRules::EndFunction()
{
    if (m_scopes.functions.size() < 2)
        return;
    const SFunctionScope scope = std::move(m_scopes.functions.back());
    m_flow.CheckReturns(scope);
    m_flow.ResolveJumps(scope);
    if (scope.kind == SFunctionScope::Method)
        m_magicMethods.Check(scope);
    m_scopes.functions.pop_back();
}

void CFunctionRules::AddParameter(std::uint32_t variable)
{
    SFunctionScope& scope = Function();
    if (scope.variadic)
        Report(Code::VariadicMisused, variable, {scope.variadic, "The variadic parameter is here"});
    if (IsThis(variable) || IsSuperglobal(variable))
        Report(Code::ReservedVariable, variable);
    const std::uint32_t index = scope.parameters.Add(variable);
    if (const std::uint32_t first = scope.parameters.FirstOfName(Tokens(), index);
        first != variable && IsFrom(GoneSince::ParameterTwice))
        Report(Code::ParameterTwice, variable, FirstIs(first));
    scope.hasParameterType = false;
}

void CFunctionRules::Parameter(const SGrammarValue& variable)
{
    AddParameter(variable.first);
}

void CFunctionRules::ReferenceParameter(const SGrammarValue& variable)
{
    AddParameter(variable.first);
    Function().references.push_back(variable.first);
}

void CFunctionRules::Variadic(const SGrammarValue& dots, const SGrammarValue& variable)
{
    Needs(EFeature::Variadic, dots);
    AddParameter(variable.first);
    if (Function().promoting)
        Report(Code::PromotionMisused, dots);
    Function().variadic = dots.first;
}

void CFunctionRules::BeginPromotion(const SGrammarValue& modifiers)
{
    Needs(EFeature::Promotion, modifiers);
    SFunctionScope& scope = Function();
    scope.promotion = m_scopes.modifiers;
    m_scopes.modifiers = {};
    scope.promoting = true;
    constexpr std::uint16_t allowed = ModAccess | ModReadonly | ModSet | ModFinal;
    const SClassScope* type = Class();
    if (scope.promotion.set & ~allowed) {
        Report(Code::WordOutOfPlace, modifiers);
        return;
    }
    if (scope.promotion.set & ModFinal)
        Needs(EFeature::FinalPromotion, modifiers);
    if (scope.kind != SFunctionScope::Method || !type || !IsWord(scope.token, L"__construct"))
        Report(Code::PromotionMisused, modifiers);
    else if (type->kind == InterfaceKind || (scope.modifiers.set & ModAbstract))
        Report(Code::PromotionMisused, modifiers);
}

void CFunctionRules::EndPromotion()
{
    SFunctionScope& scope = Function();
    scope.promoting = false;
    SClassScope* type = Class();
    if (!type || scope.parameters.Count() == 0)
        return;
    const std::uint32_t variable = scope.parameters.Last();
    if (const auto [at, isNew] = type->properties.try_emplace(std::wstring(Text(variable)), variable); !isNew)
        Report(Code::PropertyTwice, variable, FirstIs(at->second));
    const auto set = static_cast<std::uint16_t>(scope.promotion.set | (type->modifiers & ModReadonly));
    type->members.push_back(
        {SMember::Property, set, variable, scope.hasParameterType ? scope.parameterTypeToken : NoToken});
    if (set & ModSet)
        type->isLate = true;
    if ((set & ModReadonly) && !scope.hasParameterType)
        Report(Code::ReadonlyRule, variable);
}

void CFunctionRules::BeginParameterHooks(const SGrammarValue& brace)
{
    Needs(EFeature::PropertyHook, brace);
    if (SClassScope* type = Class())
        type->isLate = true;
}

void CFunctionRules::DefaultValue(const SGrammarValue& value)
{
    const SFunctionScope& scope = Function();
    CheckConstant(value, true);
    if (scope.variadic)
        Report(Code::VariadicMisused, value);
    else if (scope.hasParameterType)
        m_types.CheckDefault(scope.parameterType, value, !scope.promotion.set);
}

void CFunctionRules::EndParameter()
{
    SFunctionScope& scope = Function();
    scope.promotion = {};
    const std::uint32_t index = scope.parameters.Count() - 1;
    if (scope.hasParameterType && index < scope.firstTypes.size())
        scope.firstTypes[index] = scope.parameterType;
    scope.hasParameterType = false;
}

void CFunctionRules::LexicalVariable(const SGrammarValue& variable)
{
    SFunctionScope& scope = Function();
    const std::uint32_t index = scope.parameters.Add(variable.first);
    if (IsThis(variable.first) || IsSuperglobal(variable.first))
        Report(Code::ReservedVariable, variable);
    else if (scope.parameters.FirstOfName(Tokens(), index) != variable.first &&
             IsFrom(GoneSince::ClosureTakesParameter))
        Report(Code::LexicalVariable, variable);
    scope.statics.emplace(Text(variable.first));
}

void CFunctionRules::StaticVariable(const SGrammarValue& variable)
{
    if (IsThis(variable.first))
        Report(Code::ReservedVariable, variable);
    else if (!Function().statics.emplace(Text(variable.first)).second)
        Needs(EFeature::StaticTwice, variable);
}

// Since 8.3 it is worked out when the program gets there.
void CFunctionRules::StaticValue(const SGrammarValue& value)
{
    if (IsFrom(FeatureOf(EFeature::StaticInitialiser).since) || !(value.flags & NotConstant))
        return;
    const EFeature feature = NewerConstant(Tokens(), value.bad).value_or(EFeature::StaticInitialiser);
    const bool isSooner = FeatureOf(feature).since < FeatureOf(EFeature::StaticInitialiser).since &&
                          !FeatureOf(feature).IsIn(Version());
    m_scopes.Needs(isSooner ? feature : EFeature::StaticInitialiser, value.bad);
}

void CFunctionRules::GlobalVariable(const SGrammarValue& variable)
{
    if (variable.kind == EValue::This)
        Report(Code::ReservedVariable, variable);
}

} // namespace Kesh::CodeAnalyzer
