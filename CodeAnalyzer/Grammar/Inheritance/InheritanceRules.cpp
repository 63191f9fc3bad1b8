#include "Grammar/Inheritance/InheritanceRules.h"

#include <algorithm>

namespace Kesh::CodeAnalyzer {

namespace {

// Nobody writes more, and no class costs more than so many look-ups for each of its members.
constexpr std::uint32_t MostAncestors = 64;
constexpr std::size_t MostOpen = 1000;

constexpr const char* ParentHere = "The parent declares it here";

SArgument Quoted(const char* place, std::wstring value)
{
    return {place, std::move(value)};
}

bool IsNarrower(const SBoundMember& child, const SBoundMember& parent)
{
    return (child.modifiers & ModAccess) > (parent.modifiers & ModAccess);
}

std::vector<SArgument> AccessArguments(std::wstring child, std::wstring parent,
                                       const SBoundMember& parentMember)
{
    return {Quoted("name", std::move(child)),
            Quoted("parent", std::move(parent)),
            {"access", parentMember.Is(ModPublic) ? L"public" : L"protected or public", SArgument::Plain}};
}

/// What a message says depends on which of both has something.
std::vector<SArgument> EitherArguments(bool mustHave, std::wstring child, std::wstring parent)
{
    return {Quoted(mustHave ? "with" : "without", std::move(child)), Quoted("parent", std::move(parent))};
}

/// Each member with the nearest one of its name among the ancestors, in the order in which PHP compares them.
template <class TPair, class TMember>
std::vector<TPair> PairsOf(SBoundClass& type, SBoundClass& parent,
                           SBoundMembers<TMember> SBoundClass::*members, bool isCaseOne)
{
    std::vector<TPair> pairs;
    for (TMember& child : (type.*members).all) {
        const std::wstring key = isCaseOne ? LowerAscii(child.name) : child.name;
        for (SBoundClass* ancestor = &parent; ancestor; ancestor = ancestor->parent) {
            if (TMember* found = (ancestor->*members).Find(key)) {
                pairs.push_back({&child, found, parent.depth - ancestor->depth});
                break;
            }
        }
    }
    std::sort(pairs.begin(), pairs.end(), [](const TPair& a, const TPair& b) {
        return a.distance != b.distance ? a.distance < b.distance : a.parent < b.parent;
    });
    return pairs;
}

} // namespace

void CInheritanceRules::Check()
{
    const auto& declared = m_scopes.declaredClasses;
    if (IsFrom(803) && Version() != 0)
        CheckOverrides();
    const bool anyChild = std::any_of(declared.begin(), declared.end(), [](const SDeclaredClass& type) {
        return type.isTop && type.parent != NoToken && !type.isLate;
    });
    if (!anyChild || !m_scopes.IsTrusted())
        return;
    CClassTable table(m_scopes);
    for (const SDeclaredClass& type : declared)
        if (!type.isTop)
            table.Hide(m_scopes.imports.DeclaredClass(type.name));
    for (const SDeclaredClass& type : declared)
        if (type.isTop && !type.isLate)
            Declare(table, type);
}

// Where there is no parent, nothing can be overridden.
void CInheritanceRules::CheckOverrides()
{
    if (!m_scopes.IsTrusted())
        return;
    for (const SDeclaredClass& type : m_scopes.declaredClasses)
        if (!type.isLate && type.parent == NoToken && type.kind != TraitKind)
            for (const SMember& member : type.members)
                if (member.isOverride)
                    Report(Code::OverrideOfNothing, member.name);
}

void CInheritanceRules::Declare(CClassTable& table, const SDeclaredClass& declaration)
{
    std::wstring key = m_scopes.imports.DeclaredClass(declaration.name);
    if (declaration.parent == NoToken) {
        table.Add(table.Make(declaration, std::move(key), std::wstring(Text(declaration.name))));
        return;
    }
    SBoundClass* parent = table.Find(m_scopes.imports.ClassAt(declaration.name, Text(declaration.parent)));
    if (!parent || parent->depth >= MostAncestors || parent->open.size() > MostOpen || table.Find(key))
        return;
    SBoundClass& type = table.Make(declaration, std::move(key), std::wstring(Text(declaration.name)));
    type.parentKey = parent->key;
    table.Read(type);
    if (Bind(table, type, *parent))
        table.Add(type);
}

// Whether the class is known from now on: not when something depends on classes that are not, before anything
// else is wrong.
bool CInheritanceRules::Bind(CClassTable& table, SBoundClass& type, SBoundClass& parent)
{
    CVariance variance(table, Version());
    // What it is within its own members.
    type.parent = &parent;
    auto methods = PairsOf<SPair<SBoundMethod>>(type, parent, &SBoundClass::methods, true);
    auto properties = PairsOf<SPair<SBoundMember>>(type, parent, &SBoundClass::properties, false);
    auto constants = PairsOf<SPair<SBoundMember>>(type, parent, &SBoundClass::constants, false);
    std::vector<std::pair<const SBoundMember*, SFault>> methodFaults;
    std::vector<std::pair<const SBoundMember*, SFault>> otherFaults;
    for (const auto& pair : methods) {
        SVerdict verdict = CheckMethod(variance, *pair.child, *pair.parent);
        if (verdict.fault)
            methodFaults.emplace_back(pair.child, std::move(*verdict.fault));
        else if (verdict.fit == EFit::Unknown && methodFaults.empty())
            return false;
    }
    for (const auto& pair : properties) {
        table.ReadType(*pair.child);
        table.ReadType(*pair.parent);
        SVerdict verdict = CheckProperty(variance, *pair.child, *pair.parent);
        if (verdict.fault)
            otherFaults.emplace_back(pair.child, std::move(*verdict.fault));
        else if (verdict.fit == EFit::Unknown && methodFaults.empty() && otherFaults.empty())
            return false;
    }
    if (!CheckParent(type, parent))
        return false;
    for (const auto& pair : constants) {
        table.ReadType(*pair.child);
        table.ReadType(*pair.parent);
        if (SVerdict verdict = CheckConstant(variance, *pair.child, *pair.parent); verdict.fault)
            otherFaults.emplace_back(pair.child, std::move(*verdict.fault));
    }
    for (const auto& [member, fault] : otherFaults)
        ReportInClass(*member, fault);
    for (const auto& [member, fault] : methodFaults)
        ReportMember(*member, fault);
    if (IsFrom(803) && Version() != 0)
        CheckOverrides(type, parent);
    CClassTable::Inherit(type, parent);
    CheckOpen(type);
    return true;
}

bool CInheritanceRules::CheckParent(const SBoundClass& type, const SBoundClass& parent)
{
    SRuleReport report{0, type.declaration->name, {}};
    if (parent.declaration)
        report.related = {parent.declaration->name, ParentHere};
    report.arguments = {Quoted("name", type.name), Quoted("parent", parent.name)};
    if (parent.kind != ClassKind) {
        report.code = Code::ExtendsNoClass;
        report.arguments.push_back(
            {"kind", parent.kind == InterfaceKind ? L"an interface" : L"a trait", SArgument::Key});
    } else if (parent.modifiers & ModFinal) {
        report.code = Code::ExtendsFinal;
    } else if ((type.modifiers ^ parent.modifiers) & ModReadonly) {
        report.code = Code::ReadonlyClassMismatch;
        report.arguments = EitherArguments(parent.modifiers & ModReadonly, type.name, parent.name);
    } else {
        return true;
    }
    Report(std::move(report));
    return false;
}

CInheritanceRules::SVerdict CInheritanceRules::CheckMethod(CVariance& variance, SBoundMethod& child,
                                                           SBoundMethod& parent)
{
    const bool isConstructor = LowerAscii(parent.name) == L"__construct";
    if (parent.Is(ModPrivate) && !parent.Is(ModAbstract) && !isConstructor)
        return {};
    const auto fault = [&](std::int32_t code, std::vector<SArgument> arguments) {
        return SVerdict{EFit::Clashes, SFault{code, &parent, std::move(arguments)}};
    };
    const std::wstring name = FullName(child, L"()");
    const std::wstring parentName = FullName(parent, L"()");
    if (parent.Is(ModFinal))
        return fault(Code::FinalOverridden, {Quoted("name", name), Quoted("parent", parentName)});
    if (child.Is(ModStatic) != parent.Is(ModStatic))
        return fault(Code::StaticMismatch, EitherArguments(parent.Is(ModStatic), name, parentName));
    if (child.Is(ModAbstract) && !parent.Is(ModAbstract))
        return fault(Code::AbstractOverride, {Quoted("name", name), Quoted("parent", parentName)});
    SBoundMethod* model = &parent;
    if (isConstructor) {
        model = const_cast<SBoundMethod*>(parent.prototype ? parent.prototype : &parent);
        if (!model->Is(ModAbstract))
            return {};
        child.prototype = model;
    }
    if (IsNarrower(child, parent))
        return fault(Code::AccessNarrowed, AccessArguments(name, parentName, parent));
    return CheckSignature(variance, child, *model);
}

// Before 8.0 only what is abstract bound those that have it to its signature, and PHP's own had others.
CInheritanceRules::SVerdict CInheritanceRules::CheckSignature(CVariance& variance, SBoundMethod& child,
                                                              SBoundMethod& parent)
{
    if (!IsFrom(800) && (!parent.Is(ModAbstract) || parent.token == NoToken))
        return {};
    SVerdict verdict{variance.Methods(child, parent)};
    if (verdict.fit == EFit::Clashes)
        verdict.fault = SFault{Code::SignatureMismatch,
                               &parent,
                               {Quoted("declaration", Written(child)), Quoted("parent", Written(parent))}};
    return verdict;
}

CInheritanceRules::SVerdict CInheritanceRules::CheckProperty(CVariance& variance, const SBoundMember& child,
                                                             const SBoundMember& parent)
{
    if (parent.Is(ModPrivate))
        return {};
    const auto fault = [&](std::int32_t code, std::vector<SArgument> arguments) {
        return SVerdict{EFit::Clashes, SFault{code, &parent, std::move(arguments)}};
    };
    const std::wstring name = FullName(child);
    const std::wstring parentName = FullName(parent);
    // Where both have a type, it comes first whether they can be compared.
    const EFit fit = variance.Same(child.type, *child.owner, parent.type, *parent.owner);
    if (fit == EFit::Unknown)
        return {fit};
    if (child.Is(ModStatic) != parent.Is(ModStatic))
        return fault(Code::StaticMismatch, EitherArguments(parent.Is(ModStatic), name, parentName));
    if (child.Is(ModReadonly) != parent.Is(ModReadonly))
        return fault(Code::ReadonlyMismatch, EitherArguments(parent.Is(ModReadonly), name, parentName));
    if (IsNarrower(child, parent))
        return fault(Code::AccessNarrowed, AccessArguments(name, parentName, parent));
    if (parent.Is(ModFinal))
        return fault(Code::FinalOverridden, {Quoted("name", name), Quoted("parent", parentName)});
    if (fit == EFit::Fits)
        return {};
    if (!parent.type.isSet)
        return fault(Code::PropertyTypeMismatch, {Quoted("untyped", name), Quoted("parent", parentName)});
    return fault(Code::PropertyTypeMismatch,
                 {Quoted("name", name), Quoted("type", parent.type.text), Quoted("parent", parentName)});
}

CInheritanceRules::SVerdict CInheritanceRules::CheckConstant(CVariance& variance, const SBoundMember& child,
                                                             const SBoundMember& parent)
{
    if (parent.Is(ModPrivate))
        return {};
    const auto fault = [&](std::int32_t code, std::vector<SArgument> arguments) {
        return SVerdict{EFit::Clashes, SFault{code, &parent, std::move(arguments)}};
    };
    const std::wstring name = FullName(child);
    const std::wstring parentName = FullName(parent);
    if (IsNarrower(child, parent))
        return fault(Code::AccessNarrowed, AccessArguments(name, parentName, parent));
    if (parent.Is(ModFinal))
        return fault(Code::FinalOverridden, {Quoted("name", name), Quoted("parent", parentName)});
    if (!parent.type.isSet)
        return {};
    const EFit fit = child.type.isSet ? variance.Within(child.type, *child.owner, parent.type, *parent.owner)
                                      : EFit::Clashes;
    if (fit != EFit::Clashes)
        return {};
    return fault(Code::ConstantTypeMismatch,
                 {Quoted("name", name), Quoted("type", parent.type.text), Quoted("parent", parentName)});
}

void CInheritanceRules::CheckOverrides(const SBoundClass& type, SBoundClass& parent)
{
    for (const SBoundMethod& method : type.methods.all) {
        if (!method.isOverride)
            continue;
        const std::wstring key = LowerAscii(method.name);
        bool isFound = false;
        for (SBoundClass* ancestor = &parent; ancestor && !isFound; ancestor = ancestor->parent) {
            const SBoundMethod* overridden = ancestor->methods.Find(key);
            isFound = overridden &&
                      (!overridden->Is(ModPrivate) || overridden->Is(ModAbstract) || key == L"__construct");
        }
        if (!isFound)
            Report(Code::OverrideOfNothing, method.token);
    }
}

// A class that makes objects has a body for each of its methods.
void CInheritanceRules::CheckOpen(SBoundClass& type)
{
    if (type.open.empty() || type.IsAbstract())
        return;
    const SBoundMethod& first = *type.open.front();
    if (first.owner != &type) {
        constexpr std::size_t most = 3;
        std::wstring names;
        for (std::size_t i = 0; i < std::min(most, type.open.size()); ++i)
            names += (i == 0 ? L"" : L", ") + FullName(*type.open[i], L"()");
        if (type.open.size() > most)
            names += L", ...";
        SRuleReport report{Code::AbstractMethodsLeft, type.declaration->name, {first.token, ParentHere}};
        report.arguments = {Quoted("name", type.name), Quoted("methods", names)};
        Report(std::move(report));
    }
    type.open.clear();
}

void CInheritanceRules::ReportMember(const SBoundMember& child, const SFault& fault)
{
    SRuleReport report{fault.code, child.token, {fault.parent->token, ParentHere}};
    report.arguments = fault.arguments;
    Report(std::move(report));
}

// PHP names the line of the class.
void CInheritanceRules::ReportInClass(const SBoundMember& child, const SFault& fault)
{
    SRuleReport report{fault.code, child.owner->declaration->name, {child.token, "It is declared here"}};
    report.arguments = fault.arguments;
    report.other = {fault.parent->token, ParentHere};
    Report(std::move(report));
}

} // namespace Kesh::CodeAnalyzer
