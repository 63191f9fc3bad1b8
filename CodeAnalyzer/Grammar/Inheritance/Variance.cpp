#include "Grammar/Inheritance/Variance.h"

#include <algorithm>

namespace Kesh::CodeAnalyzer {

namespace {

/// Of several, all of which must fit.
EFit And(EFit a, EFit b)
{
    return std::max(a, b);
}

/// Of several, one of which must fit.
EFit Or(EFit a, EFit b)
{
    return std::min(a, b);
}

} // namespace

const SBoundClass* CVariance::Lookup(const std::wstring& name, TScope scope)
{
    if (const SBoundClass* known = m_table.Find(name))
        return known;
    return scope.key == name ? &scope : nullptr;
}

// Before 7.4 a class fitted itself only.
EFit CVariance::IsSubclass(const std::wstring& part, TScope partScope, const std::wstring& whole,
                           TScope wholeScope)
{
    if (part == whole)
        return EFit::Fits;
    if (m_version != 0 && m_version < 704)
        return EFit::Clashes;
    const SBoundClass* a = Lookup(part, partScope);
    const SBoundClass* b = Lookup(whole, wholeScope);
    if (!a || !b)
        return EFit::Unknown;
    return a->IsA(*b) ? EFit::Fits : EFit::Clashes;
}

EFit CVariance::AnyIs(const TNames& part, TScope partScope, const std::wstring& whole, TScope wholeScope)
{
    EFit fit = EFit::Clashes;
    for (const std::wstring& name : part)
        fit = Or(fit, IsSubclass(name, partScope, whole, wholeScope));
    return fit;
}

// A class among the alternatives of a type.
EFit CVariance::ClassWithin(const std::wstring& part, TScope partScope, const SClassType& whole,
                            TScope wholeScope)
{
    EFit fit = EFit::Clashes;
    // Nobody extends a final class, so that it is all that `static` can be there.
    const bool isStatic =
        (whole.mask & TypeStatic) && part == partScope.key && (partScope.modifiers & ModFinal);
    if (isStatic && (m_version == 0 || m_version >= 805))
        return EFit::Fits;
    if (whole.mask & TypeObject)
        fit = Or(fit, Lookup(part, partScope) ? EFit::Fits : EFit::Unknown);
    if (whole.mask & TypeCallable)
        fit = Or(fit, part == L"closure"        ? EFit::Fits
                      : Lookup(part, partScope) ? EFit::Clashes
                                                : EFit::Unknown);
    for (const TNames& alternative : whole.classes) {
        EFit all = EFit::Fits;
        for (const std::wstring& name : alternative)
            all = And(all, IsSubclass(part, partScope, name, wholeScope));
        fit = Or(fit, all);
    }
    return fit;
}

// What is several classes at once.
EFit CVariance::AllWithin(const TNames& part, TScope partScope, const SClassType& whole, TScope wholeScope)
{
    EFit fit = EFit::Clashes;
    if (whole.mask & TypeObject) {
        const bool isKnown = std::any_of(part.begin(), part.end(), [&](const std::wstring& name) {
            return Lookup(name, partScope) != nullptr;
        });
        fit = isKnown ? EFit::Fits : EFit::Unknown;
    }
    for (const TNames& alternative : whole.classes) {
        EFit all = EFit::Fits;
        for (const std::wstring& name : alternative)
            all = And(all, AnyIs(part, partScope, name, wholeScope));
        fit = Or(fit, all);
    }
    return fit;
}

// `static` is part of whatever its class is part of.
bool CVariance::PermitsSelf(const SClassType& whole, TScope self)
{
    if (whole.mask & TypeObject)
        return true;
    for (const TNames& alternative : whole.classes) {
        const bool all = std::all_of(alternative.begin(), alternative.end(), [&](const std::wstring& name) {
            const SBoundClass* type = Lookup(name, self);
            return type && self.IsA(*type);
        });
        if (all)
            return true;
    }
    return false;
}

EFit CVariance::Within(const SClassType& part, TScope partScope, const SClassType& whole, TScope wholeScope)
{
    if (part.isUnknown || whole.isUnknown)
        return EFit::Unknown;
    if (whole.IsMixed() && !(part.mask & TypeVoid))
        return EFit::Fits;
    std::uint32_t added = part.mask & ~whole.mask;
    if ((added & TypeStatic) && PermitsSelf(whole, partScope))
        added &= ~static_cast<std::uint32_t>(TypeStatic);
    if (added == TypeNever)
        return EFit::Fits;
    if (added != 0)
        return EFit::Clashes;
    EFit fit = EFit::Fits;
    for (const TNames& alternative : part.classes)
        fit =
            And(fit, alternative.size() == 1 ? ClassWithin(alternative.front(), partScope, whole, wholeScope)
                                             : AllWithin(alternative, partScope, whole, wholeScope));
    return fit;
}

EFit CVariance::Same(const SClassType& child, TScope childScope, const SClassType& parent, TScope parentScope)
{
    if (child.isSet != parent.isSet)
        return EFit::Clashes;
    if (!child.isSet || child.text == parent.text)
        return EFit::Fits;
    return And(Within(parent, parentScope, child, childScope),
               Within(child, childScope, parent, parentScope));
}

EFit CVariance::Parameter(const SParameter& child, TScope childScope, const SParameter& parent,
                          TScope parentScope)
{
    if (child.byReference != parent.byReference)
        return EFit::Clashes;
    if (!child.type.isSet || child.type.IsMixed())
        return EFit::Fits;
    if (!parent.type.isSet)
        return EFit::Clashes;
    return Within(parent.type, parentScope, child.type, childScope);
}

EFit CVariance::Methods(SBoundMethod& childMethod, SBoundMethod& parentMethod)
{
    const SSignature& child = m_table.SignatureOf(childMethod);
    const SSignature& parent = m_table.SignatureOf(parentMethod);
    if (child.isUnknown || parent.isUnknown)
        return EFit::Unknown;
    if (parent.Required() < child.Required() || (parent.byReference && !child.byReference) ||
        (parent.IsVariadic() && !child.IsVariadic()))
        return EFit::Clashes;
    const SBoundClass& childScope = *childMethod.owner;
    const SBoundClass& parentScope = *parentMethod.owner;
    EFit fit = EFit::Fits;
    const std::size_t childCount = child.parameters.size();
    const std::size_t parentCount = parent.parameters.size();
    for (std::size_t i = 0; i < std::max(childCount, parentCount) && fit != EFit::Clashes; ++i) {
        if (i >= parentCount && !parent.IsVariadic())
            break; // a new one, which nobody has to give
        if (i >= childCount && !child.IsVariadic())
            return EFit::Clashes;
        fit = And(fit, Parameter(child.parameters[std::min(i, childCount - 1)], childScope,
                                 parent.parameters[std::min(i, parentCount - 1)], parentScope));
    }
    if (fit == EFit::Clashes || !parent.result.isSet)
        return fit;
    if (!child.result.isSet)
        return parent.isTentative ? fit : EFit::Clashes;
    const EFit result = Within(child.result, childScope, parent.result, parentScope);
    if (result == EFit::Clashes && parent.isTentative)
        return fit == EFit::Unknown ? fit : EFit::Fits;
    return And(fit, result);
}

} // namespace Kesh::CodeAnalyzer
