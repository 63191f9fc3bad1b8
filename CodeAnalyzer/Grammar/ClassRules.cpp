#include "Grammar/PhpRules.h"

#include <algorithm>
#include <array>

namespace Kesh::CodeAnalyzer {

using K = SyntaxParser::EPhpTokenKind;

namespace {

std::uint16_t ModifierOf(K kind)
{
    switch (kind) {
    case K::Public: return ModPublic;
    case K::Protected: return ModProtected;
    case K::Private: return ModPrivate;
    case K::Static: return ModStatic;
    case K::Abstract: return ModAbstract;
    case K::Final: return ModFinal;
    case K::Readonly: return ModReadonly;
    case K::Var: return ModVar;
    default: return ModSet;
    }
}

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

/// What PHP asks of the methods that it calls itself.
struct SMagicMethod
{
    enum EStatic : std::uint8_t { No, Yes, Either };

    std::wstring_view name;
    std::size_t parameters;
    EStatic isStatic;
    std::uint32_t returns; ///< types it may give back when it names one; 0: it may name none
};
constexpr std::uint32_t AnyType = 0xFFFFFFFF;
constexpr std::size_t AnyCount = 0xFF;
constexpr std::array<SMagicMethod, 17> MagicMethods{
    {{L"__construct", AnyCount, SMagicMethod::No, 0},
     {L"__destruct", 0, SMagicMethod::No, 0},
     {L"__clone", 0, SMagicMethod::No, TypeVoid},
     {L"__get", 1, SMagicMethod::No, AnyType},
     {L"__set", 2, SMagicMethod::No, TypeVoid},
     {L"__unset", 1, SMagicMethod::No, TypeVoid},
     {L"__isset", 1, SMagicMethod::No, TypeBool},
     {L"__call", 2, SMagicMethod::No, AnyType},
     {L"__callstatic", 2, SMagicMethod::Yes, AnyType},
     {L"__tostring", 0, SMagicMethod::No, TypeString},
     {L"__debuginfo", 0, SMagicMethod::No, TypeArray | TypeNull},
     {L"__serialize", 0, SMagicMethod::No, TypeArray},
     {L"__unserialize", 1, SMagicMethod::No, TypeVoid},
     {L"__set_state", 1, SMagicMethod::Yes, TypeObject},
     {L"__invoke", AnyCount, SMagicMethod::No, AnyType},
     {L"__sleep", 0, SMagicMethod::No, TypeArray | TypeNull},
     {L"__wakeup", 0, SMagicMethod::No, TypeVoid}}};

} // namespace

bool CPhpRules::IsReservedClassName(std::wstring_view lower) const
{
    return std::any_of(ReservedNames.begin(), ReservedNames.end(), [&](const SReservedName& reserved) {
        return reserved.name == lower && (reserved.since == 0 || m_version >= reserved.since);
    });
}

void CPhpRules::CheckClassName(std::uint32_t token)
{
    if (IsReservedClassName(m_tokens.Lower(token)))
        Report(Code::ReservedName, token);
}

// `self`, `parent` and `static` need a class around them; what a closure will be bound to nobody knows.
void CPhpRules::CheckClassWord(std::uint32_t token)
{
    const std::wstring_view text = Text(token);
    if (text.size() != 4 && text.size() != 6)
        return;
    const bool isParent = IsWord(token, L"parent");
    if (!isParent && !IsWord(token, L"self") && !IsWord(token, L"static"))
        return;
    const SFunctionScope& scope = Function();
    const SClassScope* type = Class();
    const bool inClassBody = type && type->depth == m_functions.size();
    if (!inClassBody) {
        if (scope.kind == SFunctionScope::Closure || scope.kind == SFunctionScope::Arrow ||
            scope.kind == SFunctionScope::File)
            return;
        if (scope.kind == SFunctionScope::Function) {
            Report(Code::NoClassHere, token);
            return;
        }
    }
    if (isParent && type && !type->hasParent && type->kind != TraitKind)
        Report(Code::NoClassHere, token);
}

void CPhpRules::ClassModifier(const SGrammarValue& word)
{
    const std::uint16_t modifier = ModifierOf(m_tokens[word.first].kind);
    const std::uint16_t all = m_modifiers.set | modifier;
    if ((m_modifiers.set & modifier) || ((all & ModAbstract) && (all & ModFinal)))
        Report(Code::ModifierConflict, word);
    m_modifiers.set = all;
}

void CPhpRules::AnonymousModifiers(const SGrammarValue& word)
{
    Needs(803, word);
    if (m_modifiers.set & ~ModReadonly)
        Report(Code::WordOutOfPlace, word);
}

void CPhpRules::MemberModifier(const SGrammarValue& word)
{
    const std::uint16_t modifier = ModifierOf(m_tokens[word.first].kind);
    const std::uint16_t before = m_modifiers.set;
    const std::uint16_t all = before | modifier;
    if (before && ((all & ModVar) != 0))
        Report(Code::WordOutOfPlace, word);
    else if ((before & modifier) || ((before & ModAccess) && (modifier & ModAccess)) ||
             ((all & ModAbstract) && (all & ModFinal)))
        Report(Code::ModifierConflict, word);
    if (!before)
        m_modifiers.first = word.first;
    m_modifiers.last = word.first;
    m_modifiers.set = all;
}

void CPhpRules::BeginClass(EClassKind kind, const SGrammarValue& /*word*/, const SGrammarValue& name)
{
    SClassScope scope;
    scope.kind = kind;
    scope.name = name.first;
    scope.depth = m_functions.size();
    if (kind == ClassKind || kind == AnonymousKind)
        scope.modifiers = m_modifiers.set;
    m_modifiers = {};
    if (kind != AnonymousKind)
        CheckClassName(name.first);
    m_classes.push_back(std::move(scope));
}

void CPhpRules::Extends(const SGrammarValue& name)
{
    if (IsWord(name.first, L"self") || IsWord(name.first, L"parent") || IsWord(name.first, L"static"))
        Report(Code::ReservedName, name);
    if (SClassScope* type = Class())
        type->hasParent = true;
}

void CPhpRules::Implements(const SGrammarValue& name)
{
    if (IsWord(name.first, L"self") || IsWord(name.first, L"parent") || IsWord(name.first, L"static"))
        Report(Code::ReservedName, name);
}

void CPhpRules::TraitName(const SGrammarValue& name)
{
    Implements(name);
}

void CPhpRules::TraitUse(const SGrammarValue& word)
{
    if (Class() && Class()->kind == InterfaceKind)
        Report(Code::MemberNotAllowed, word);
}

void CPhpRules::EnumType(const SGrammarValue& type)
{
    if (type.extra != TypeInt && type.extra != TypeString)
        Report(Code::EnumRule, type);
    if (Class())
        Class()->backed = true;
    m_typeNames.Clear();
}

void CPhpRules::EndClass()
{
    if (m_classes.empty())
        return;
    const SClassScope& type = m_classes.back();
    const bool concrete = (type.kind == ClassKind && !(type.modifiers & ModAbstract)) ||
                          type.kind == AnonymousKind || type.kind == EnumKind;
    if (concrete && type.abstractMethod)
        Report(Code::AbstractInConcrete, type.abstractMethod, type.name);
    m_classes.pop_back();
}

void CPhpRules::BeginProperties()
{
    SClassScope* type = Class();
    if (!type)
        return;
    type->member = m_modifiers;
    type->hasMemberType = false;
    type->memberType = 0;
    m_modifiers = {};
}

void CPhpRules::BeginProperties(const SGrammarValue& propertyType)
{
    BeginProperties();
    SClassScope* type = Class();
    if (!type)
        return;
    if (type->member.set & ModVar && m_version != 0)
        Needs(704, propertyType);
    type->hasMemberType = true;
    type->memberType = propertyType.extra;
    CheckPropertyType(propertyType.extra, propertyType.first);
}

void CPhpRules::AddProperty(std::uint32_t variable, const SGrammarValue* value)
{
    SClassScope* type = Class();
    if (!type)
        return;
    if (!type->properties.insert(std::wstring(Text(variable))).second)
        Report(Code::PropertyTwice, variable);
    const std::uint16_t set = type->member.set;
    if (type->kind == EnumKind)
        Report(Code::MemberNotAllowed, variable);
    if (set & ModFinal)
        Needs(804, {type->member.first, 0, 0, 0, EValue::Other, EValue::Other});
    if ((set | type->modifiers) & ModReadonly) {
        if (!type->hasMemberType || (set & ModStatic) || value)
            Report(Code::ReadonlyRule, variable);
    }
    if (!value)
        return;
    CheckConstant(*value, false);
    if (type->hasMemberType)
        CheckDefault(type->memberType, *value, false);
}

void CPhpRules::Property(const SGrammarValue& variable)
{
    AddProperty(variable.first, nullptr);
    const SClassScope* type = Class();
    if (type && type->kind == InterfaceKind)
        Report(Code::MemberNotAllowed, variable);
    if (type && (type->member.set & ModAbstract))
        Report(Code::ModifierMisused, type->member.first);
}

void CPhpRules::Property(const SGrammarValue& variable, const SGrammarValue& value)
{
    AddProperty(variable.first, &value);
    const SClassScope* type = Class();
    if (type && type->kind == InterfaceKind)
        Report(Code::MemberNotAllowed, variable);
    if (type && (type->member.set & ModAbstract))
        Report(Code::ModifierMisused, type->member.first);
}

void CPhpRules::BeginHooks(const SGrammarValue& variable)
{
    Needs(804, variable);
    AddProperty(variable.first, nullptr);
}

void CPhpRules::BeginHooks(const SGrammarValue& variable, const SGrammarValue& value)
{
    Needs(804, variable);
    AddProperty(variable.first, &value);
}

void CPhpRules::ConstantType(const SGrammarValue& type)
{
    CheckPropertyType(type.extra, type.first);
}

void CPhpRules::AddConstant(std::uint32_t name)
{
    SClassScope* type = Class();
    if (!type)
        return;
    if (IsWord(name, L"class"))
        Report(Code::ReservedName, name);
    else if (!type->constants.insert(std::wstring(Text(name))).second)
        Report(Code::ConstantTwice, name);
}

void CPhpRules::ClassConstant(const SGrammarValue& name, const SGrammarValue& value)
{
    m_typeNames.Clear();
    const std::uint16_t set = m_modifiers.set;
    const SClassScope* type = Class();
    const SGrammarValue first{m_modifiers.first, 0, 0, 0, EValue::Other, EValue::Other};
    if (set & (ModStatic | ModAbstract | ModReadonly | ModSet | ModVar))
        Report(set & ModVar ? Code::WordOutOfPlace : Code::ModifierMisused, first);
    else if ((set & ModFinal) && (set & ModPrivate))
        Report(Code::ModifierMisused, first);
    else if (type && type->kind == InterfaceKind && (set & (ModPrivate | ModProtected)))
        Report(Code::ModifierMisused, first);
    else if (set & ModFinal)
        Needs(801, first);
    else if (set)
        Needs(701, first);
    if (type && type->kind == TraitKind)
        Needs(802, name);
    CheckConstant(value, false);
    AddConstant(name.first);
}

void CPhpRules::EnumCase(const SGrammarValue& word, const SGrammarValue& name)
{
    const SClassScope* type = Class();
    if (type && (type->kind != EnumKind || type->backed))
        Report(Code::EnumRule, type->kind != EnumKind ? word : name);
    AddConstant(name.first);
}

void CPhpRules::EnumCase(const SGrammarValue& word, const SGrammarValue& name, const SGrammarValue& value)
{
    const SClassScope* type = Class();
    if (type && (type->kind != EnumKind || !type->backed))
        Report(Code::EnumRule, type->kind != EnumKind ? word : name);
    CheckConstant(value, false);
    AddConstant(name.first);
}

void CPhpRules::CheckMagicMethod(const SFunctionScope& scope)
{
    if (!Text(scope.token).starts_with(L"__"))
        return;
    const std::wstring name = m_tokens.Lower(scope.token);
    const auto found = std::find_if(MagicMethods.begin(), MagicMethods.end(),
                                    [&](const SMagicMethod& magic) { return magic.name == name; });
    if (found == MagicMethods.end())
        return;
    const bool isStatic = scope.modifiers.set & ModStatic;
    const bool counted = found->parameters != AnyCount;
    const bool typed = scope.hasReturnType && (m_version == 0 || m_version >= 800);
    if ((counted && scope.parameters.Count() != found->parameters) ||
        (counted && !scope.references.empty()) || (isStatic != (found->isStatic == SMagicMethod::Yes)))
        Report(Code::MagicMethod, scope.token);
    else if (typed && found->returns == 0)
        Report(Code::MagicMethod, scope.token);
    else if (typed && found->returns != AnyType && !IsAllowedReturn(scope.returnType, found->returns))
        Report(Code::MagicMethod, scope.token);
}

// A magic method may promise less than it could give back, and may promise never to come back.
bool CPhpRules::IsAllowedReturn(std::uint32_t type, std::uint32_t allowed) const
{
    if (allowed & TypeObject)
        allowed |= TypeClass | TypeStatic | TypeTraversable;
    return (type & ~(allowed | TypeNever)) == 0;
}

} // namespace Kesh::CodeAnalyzer
