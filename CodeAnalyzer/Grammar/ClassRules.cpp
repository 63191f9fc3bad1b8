#include "Grammar/ClassRules.h"

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

} // namespace

void CClassRules::ClassModifier(const SGrammarValue& word)
{
    const std::uint16_t modifier = ModifierOf(Tokens()[word.first].kind);
    const std::uint16_t all = m_scopes.modifiers.set | modifier;
    if ((m_scopes.modifiers.set & modifier) || ((all & ModAbstract) && (all & ModFinal)))
        Report(Code::ModifierConflict, word);
    m_scopes.modifiers.set = all;
}

void CClassRules::AnonymousModifiers(const SGrammarValue& word)
{
    Needs(EFeature::ReadonlyAnonymousClass, word);
    if (m_scopes.modifiers.set & ~ModReadonly)
        Report(Code::WordOutOfPlace, word);
}

void CClassRules::MemberModifier(const SGrammarValue& word)
{
    const std::uint16_t modifier = ModifierOf(Tokens()[word.first].kind);
    const std::uint16_t before = m_scopes.modifiers.set;
    const std::uint16_t all = before | modifier;
    if (before && ((all & ModVar) != 0))
        Report(Code::WordOutOfPlace, word);
    else if ((before & modifier) || ((before & ModAccess) && (modifier & ModAccess)) ||
             ((all & ModAbstract) && (all & ModFinal)))
        Report(Code::ModifierConflict, word);
    if (!before)
        m_scopes.modifiers.first = word.first;
    m_scopes.modifiers.last = word.first;
    m_scopes.modifiers.set = all;
}

void CClassRules::BeginClass(EClassKind kind, const SGrammarValue& /*word*/, const SGrammarValue& name)
{
    SClassScope scope;
    scope.kind = kind;
    scope.name = name.first;
    scope.depth = m_scopes.functions.size();
    if (kind == ClassKind || kind == AnonymousKind)
        scope.modifiers = m_scopes.modifiers.set;
    m_scopes.modifiers = {};
    if (kind != AnonymousKind)
        m_names.CheckClassName(name.first);
    if (kind != AnonymousKind && Function().inClass)
        Report(Code::NestedClass, name);
    m_scopes.classes.push_back(std::move(scope));
}

void CClassRules::Extends(const SGrammarValue& name)
{
    m_names.CheckNoClassWord(name);
    if (SClassScope* type = Class())
        type->parent = name.first;
}

void CClassRules::Implements(const SGrammarValue& name)
{
    m_names.CheckNoClassWord(name);
    if (SClassScope* type = Class())
        type->isLate = true;
}

void CClassRules::TraitName(const SGrammarValue& name)
{
    Implements(name);
}

void CClassRules::TraitUse(const SGrammarValue& word)
{
    if (Class() && Class()->kind == InterfaceKind)
        Report(Code::MemberNotAllowed, word);
}

void CClassRules::AliasModifier(const SGrammarValue& word)
{
    const std::uint16_t modifier = ModifierOf(Tokens()[word.first].kind);
    if (modifier == ModFinal)
        Needs(EFeature::FinalAlias, word);
    else if (!(modifier & ModAccess))
        Report(Code::ModifierMisused, word);
}

void CClassRules::EnumType(const SGrammarValue& type)
{
    if (type.extra != TypeInt && type.extra != TypeString)
        Report(Code::EnumRule, type);
    if (Class())
        Class()->backed = true;
    m_types.EndType();
}

void CClassRules::EndClass()
{
    if (m_scopes.classes.empty())
        return;
    SClassScope& type = m_scopes.classes.back();
    const bool concrete = (type.kind == ClassKind && !(type.modifiers & ModAbstract)) ||
                          type.kind == AnonymousKind || type.kind == EnumKind;
    if (concrete && type.abstractMethod)
        Report(Code::AbstractInConcrete, type.abstractMethod, {type.name, "The class is declared here"});
    if (type.kind != AnonymousKind)
        m_scopes.declaredClasses.push_back({type.kind, type.modifiers, false,
                                            type.isLate || type.kind == EnumKind, type.name, type.parent,
                                            std::move(type.members)});
    m_scopes.classes.pop_back();
}

void CClassRules::BeginProperties()
{
    SClassScope* type = Class();
    if (!type)
        return;
    type->member = m_scopes.modifiers;
    type->hasMemberType = false;
    type->memberType = 0;
    type->memberTypeToken = NoToken;
    m_scopes.modifiers = {};
}

void CClassRules::BeginProperties(const SGrammarValue& propertyType)
{
    BeginProperties();
    SClassScope* type = Class();
    if (!type)
        return;
    if (type->member.set & ModVar)
        Needs(EFeature::PropertyType, propertyType);
    type->hasMemberType = true;
    type->memberType = propertyType.extra;
    type->memberTypeToken = propertyType.first;
    m_types.CheckWhole(propertyType);
    m_types.CheckPropertyType(propertyType.extra, propertyType.first);
}

void CClassRules::AddProperty(std::uint32_t variable, const SGrammarValue* value)
{
    SClassScope* type = Class();
    if (!type)
        return;
    if (const auto [at, isNew] = type->properties.try_emplace(std::wstring(Text(variable)), variable); !isNew)
        Report(Code::PropertyTwice, variable, FirstIs(at->second));
    const std::uint16_t set = type->member.set;
    type->members.push_back({SMember::Property,
                             static_cast<std::uint16_t>(set | (type->modifiers & ModReadonly)), variable,
                             type->memberTypeToken});
    if (set & ModSet)
        type->isLate = true;
    if (type->kind == EnumKind)
        Report(Code::MemberNotAllowed, variable);
    if (set & ModFinal)
        m_scopes.Needs(EFeature::FinalProperty, type->member.first);
    if ((set & ModSet) && (set & ModStatic))
        m_scopes.Needs(EFeature::StaticAccessSet, type->member.first);
    if ((set | type->modifiers) & ModReadonly) {
        if (!type->hasMemberType || (set & ModStatic) || value)
            Report(Code::ReadonlyRule, variable);
    }
    if (!value)
        return;
    CheckConstant(*value, false);
    if (type->hasMemberType)
        m_types.CheckDefault(type->memberType, *value, false);
}

void CClassRules::Property(const SGrammarValue& variable)
{
    AddProperty(variable.first, nullptr);
    const SClassScope* type = Class();
    if (type && type->kind == InterfaceKind)
        Report(Code::MemberNotAllowed, variable);
    if (type && (type->member.set & ModAbstract))
        Report(Code::ModifierMisused, type->member.first);
}

void CClassRules::Property(const SGrammarValue& variable, const SGrammarValue& value)
{
    AddProperty(variable.first, &value);
    const SClassScope* type = Class();
    if (type && type->kind == InterfaceKind)
        Report(Code::MemberNotAllowed, variable);
    if (type && (type->member.set & ModAbstract))
        Report(Code::ModifierMisused, type->member.first);
}

void CClassRules::BeginHooks(const SGrammarValue& variable)
{
    Needs(EFeature::PropertyHook, variable);
    MakeLate();
    AddProperty(variable.first, nullptr);
}

void CClassRules::BeginHooks(const SGrammarValue& variable, const SGrammarValue& value)
{
    Needs(EFeature::PropertyHook, variable);
    MakeLate();
    AddProperty(variable.first, &value);
}

void CClassRules::MakeLate()
{
    if (SClassScope* type = Class())
        type->isLate = true;
}

void CClassRules::ConstantType(const SGrammarValue& type)
{
    m_types.CheckWhole(type);
    m_types.CheckPropertyType(type.extra, type.first);
    if (Class())
        Class()->constantTypeToken = type.first;
}

void CClassRules::EndConstants()
{
    m_scopes.modifiers = {};
    if (Class())
        Class()->constantTypeToken = NoToken;
}

void CClassRules::AddConstant(std::uint32_t name)
{
    SClassScope* type = Class();
    if (!type)
        return;
    type->members.push_back({SMember::Constant, m_scopes.modifiers.set, name, type->constantTypeToken});
    if (IsWord(name, L"class"))
        Report(Code::ReservedName, name);
    else if (const auto [at, isNew] = type->constants.try_emplace(std::wstring(Text(name)), name); !isNew)
        Report(Code::ConstantTwice, name, FirstIs(at->second));
}

void CClassRules::ClassConstant(const SGrammarValue& name, const SGrammarValue& value)
{
    m_types.EndType();
    const std::uint16_t set = m_scopes.modifiers.set;
    const SClassScope* type = Class();
    const SGrammarValue first{m_scopes.modifiers.first, 0, 0, 0, EValue::Other, EValue::Other};
    if (set & (ModStatic | ModAbstract | ModReadonly | ModSet | ModVar))
        Report(set & ModVar ? Code::WordOutOfPlace : Code::ModifierMisused, first);
    else if ((set & ModFinal) && (set & ModPrivate))
        Report(Code::ModifierMisused, first);
    else if (type && type->kind == InterfaceKind && (set & (ModPrivate | ModProtected)))
        Report(Code::ModifierMisused, first);
    else if (set & ModFinal)
        Needs(EFeature::FinalConstant, first);
    else if (set)
        Needs(EFeature::ConstantVisibility, first);
    if (type && type->kind == TraitKind)
        Needs(EFeature::TraitConstant, name);
    if (value.kind == EValue::ArrayLiteral)
        Needs(EFeature::ConstantArray, value);
    CheckConstant(value, false);
    AddConstant(name.first);
    const std::uint32_t known = Ungrouped(value).kind == EValue::ArrayLiteral ? TypeArray : value.extra;
    if (Class() && Class()->kind != TraitKind &&
        (IsWorkedOut(value) || value.kind == EValue::ClassConstant) && known)
        Class()->constantTypes.try_emplace(std::wstring(Text(name.first)), known);
}

void CClassRules::EnumCase(const SGrammarValue& word, const SGrammarValue& name)
{
    const SClassScope* type = Class();
    if (type && (type->kind != EnumKind || type->backed))
        Report(Code::EnumRule, type->kind != EnumKind ? word : name);
    AddConstant(name.first);
}

void CClassRules::EnumCase(const SGrammarValue& word, const SGrammarValue& name, const SGrammarValue& value)
{
    const SClassScope* type = Class();
    if (type && (type->kind != EnumKind || !type->backed))
        Report(Code::EnumRule, type->kind != EnumKind ? word : name);
    CheckConstant(value, false);
    AddConstant(name.first);
}

} // namespace Kesh::CodeAnalyzer
