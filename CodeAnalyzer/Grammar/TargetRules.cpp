#include "Grammar/TargetRules.h"

#include <algorithm>

namespace Kesh::CodeAnalyzer {

void CTargetRules::Append(SGrammarValue& value, const SGrammarValue& bracket)
{
    value.flags |= Appending;
    m_scopes.pending.Add(bracket.first, Code::AppendRead);
}

// Whether the value is a place, or the call of something that may give one back.
bool CTargetRules::IsPlace(const SGrammarValue& value) const
{
    switch (value.kind) {
    case EValue::Variable:
    case EValue::This:
    case EValue::VariableVariable:
    case EValue::Element:
    case EValue::Property:
    case EValue::StaticProperty:
    case EValue::Call: return true;
    default: return false;
    }
}

// Whether what is reached through a constant or the like stays anywhere.
void CTargetRules::CheckPlace(const SGrammarValue& target)
{
    if (target.flags & Nullsafe) {
        Report(Code::NullsafeWritten, target);
        return;
    }
    if (target.kind == EValue::Variable && Text(target.first) == L"$GLOBALS" &&
        IsFrom(GoneSince::GlobalsWritten)) {
        Report(Code::NotAssignable, target);
        return;
    }
    if (!Stays(target))
        Report(Code::NotAssignable, target);
}

bool CTargetRules::Stays(const SGrammarValue& target)
{
    if (target.kind != EValue::Element && target.kind != EValue::Property)
        return true;
    switch (target.inner) {
    case EValue::Name:
    case EValue::Magic:
    case EValue::Text:
    case EValue::ArrayLiteral:
    case EValue::ClassConstant: return false;
    default: return true;
    }
}

// Something that a value is assigned to, in whatever way; `op` is what says so.
void CTargetRules::CheckTarget(const SGrammarValue& target, std::uint32_t op)
{
    if (!IsPlace(target))
        Report(Code::OutOfPlace, op);
    else if (target.kind == EValue::Call)
        Report(Code::NotAssignable, target);
    else
        CheckPlace(target);
}

void CTargetRules::Assign(const SGrammarValue& target, const SGrammarValue& op, const SGrammarValue& value)
{
    m_scopes.pending.Drop(target.first, op.first);
    if (target.kind == EValue::This) {
        Report(Code::ThisAssigned, target);
    } else if (target.kind == EValue::ListLiteral ||
               (target.kind == EValue::ArrayLiteral && !(target.flags & LongArray))) {
        if (target.kind == EValue::ArrayLiteral)
            Needs(EFeature::ShortList, target);
        Destructure(target);
        if ((target.flags & ByReference) && !IsPlace(Ungrouped(value)))
            Report(Code::NotAssignable, value);
    } else if (target.kind == EValue::Text && target.first > 0 && IsElementBehind(target.first - 1)) {
        Report(Code::WrongToken, op);
    } else {
        CheckTarget(target, op.first);
    }
}

// Whether the key of an element may come behind the token.
bool CTargetRules::IsElementBehind(std::uint32_t token) const
{
    using K = SyntaxParser::EPhpTokenKind;
    const K kind = Tokens()[token].kind;
    return kind == K::OpenSquare || kind == K::Comma ||
           (kind == K::OpenRound && token > 0 && Tokens()[token - 1].kind == K::Array);
}

void CTargetRules::AssignReference(const SGrammarValue& target, const SGrammarValue& op,
                                   const SGrammarValue& value)
{
    m_scopes.pending.Drop(target.first, NoToken);
    if (target.kind == EValue::This)
        Report(Code::ThisAssigned, target);
    else
        CheckTarget(target, op.first);
    if (!IsPlace(value))
        Report(Code::OutOfPlace, value);
    else
        CheckPlace(value);
}

// `+=` and its like, `++` and `--`: what is there is read and written.
void CTargetRules::Change(const SGrammarValue& target, const SGrammarValue& op)
{
    using K = SyntaxParser::EPhpTokenKind;
    // Nothing can be there yet behind `[]`, so there is nothing to ask about.
    if (Tokens()[op.first].kind != K::CoalesceAssign)
        m_scopes.pending.Drop(target.first, NoToken);
    CheckTarget(target, op.first < target.first ? target.first : op.first);
}

// What `foreach` assigns to.
void CTargetRules::Target(const SGrammarValue& target)
{
    m_scopes.pending.Drop(target.first, NoToken);
    if (target.kind == EValue::This) {
        Report(Code::ThisAssigned, target);
    } else if (target.kind == EValue::ListLiteral ||
               (target.kind == EValue::ArrayLiteral && !(target.flags & LongArray))) {
        if (target.kind == EValue::ArrayLiteral)
            Needs(EFeature::ShortList, target);
        Destructure(target);
    } else {
        CheckTarget(target, target.first);
    }
}

void CTargetRules::ReferenceTarget(const SGrammarValue& target)
{
    // Also of what is walked through.
    m_scopes.pending.Clear();
    if (target.kind == EValue::This)
        Report(Code::ThisAssigned, target);
    else
        CheckTarget(target, target.first);
}

void CTargetRules::ForeachKey(const SGrammarValue& key)
{
    if (key.kind == EValue::ArrayLiteral || key.kind == EValue::ListLiteral || key.kind == EValue::Reference)
        Report(Code::NotAssignable, key);
}

void CTargetRules::UnsetTarget(const SGrammarValue& target)
{
    if (target.kind == EValue::This)
        Report(Code::NotUnsettable, target);
    else
        CheckTarget(target, target.first);
}

void CTargetRules::IssetTarget(const SGrammarValue& value)
{
    SGrammarValue inner = value;
    if (value.kind == EValue::Group)
        inner.kind = value.inner;
    if (!IsPlace(inner) || inner.kind == EValue::Call)
        Report(Code::IssetOfValue, value);
}

// The first element of a list that has a key where the others have none, or the other way round.
std::uint32_t CTargetRules::FirstOfOtherKind(std::uint32_t list) const
{
    using K = SyntaxParser::EPhpTokenKind;
    std::uint32_t token = list + (Tokens()[list].kind == K::List ? 2 : 1);
    std::uint32_t begin = token;
    int depth = 0;
    bool isFirst = true;
    bool firstKeyed = false;
    bool keyed = false;
    for (; token < Tokens().Count() && depth >= 0; ++token) {
        const K kind = Tokens()[token].kind;
        keyed |= depth == 0 && kind == K::DoubleArrow;
        depth += kind == K::OpenRound || kind == K::OpenSquare || kind == K::OpenBrace;
        depth -= kind == K::CloseRound || kind == K::CloseSquare || kind == K::CloseBrace;
        if (depth > 0 || (depth == 0 && kind != K::Comma))
            continue;
        if (!isFirst && keyed != firstKeyed && (depth == 0 || token > begin))
            return begin;
        firstKeyed = isFirst ? keyed : firstKeyed;
        isFirst = keyed = false;
        begin = token + 1;
    }
    return list;
}

// A list of places, one for each value of an array.
void CTargetRules::Destructure(const SGrammarValue& list)
{
    if (list.flags & Spread)
        Report(Code::SpreadInList, list);
    else if (!(list.flags & Filled) && IsFrom(GoneSince::EmptyList))
        Report(Code::EmptyList, list);
    else if ((list.flags & Keyed) && (list.flags & (Unkeyed | Hole)))
        Report(Code::MixedKeys, FirstOfOtherKind(list.first));
    else if (list.flags & NoTarget)
        Report(Text(list.extra) == L"$this" ? Code::ThisAssigned : Code::NotAssignable, list.extra);
    else if (list.flags & (list.kind == EValue::ListLiteral ? ShortInside : ListInside))
        Report(Code::NotAssignable, list);
    if (list.flags & ByReference)
        Needs(EFeature::ListReference, list);
    if (list.flags & Keyed)
        Needs(EFeature::ListKey, list);
}

} // namespace Kesh::CodeAnalyzer
