#include "Grammar/PhpRules.h"

namespace Kesh::CodeAnalyzer {

namespace {

constexpr std::uint16_t ConstantFlags = NotConstant | HasNew;
constexpr std::uint16_t ElementFlags =
    LastEmpty | Hole | Filled | Keyed | Unkeyed | Spread | NoTarget | ByReference | ListInside | ShortInside;

} // namespace

// Whether the element may be among those that values are assigned to.
bool CPhpRules::CanBeTarget(const SGrammarValue& value) const
{
    switch (value.kind) {
    case EValue::Variable:
    case EValue::VariableVariable:
    case EValue::StaticProperty: return true;
    case EValue::Element:
    case EValue::Property: return !(value.flags & Nullsafe);
    case EValue::ArrayLiteral:
        if (value.flags & LongArray)
            return false;
        [[fallthrough]];
    case EValue::ListLiteral: {
        const std::uint16_t mixed = value.kind == EValue::ListLiteral ? ShortInside : ListInside;
        return (value.flags & Filled) && !(value.flags & (Spread | NoTarget | mixed)) &&
               !((value.flags & Keyed) && (value.flags & (Unkeyed | Hole)));
    }
    default: return false;
    }
}

SGrammarValue CPhpRules::NoElement() const
{
    return {NoToken, NoToken, NoToken, LastEmpty, EValue::Other, EValue::Other};
}

SGrammarValue CPhpRules::Element(const SGrammarValue& value) const
{
    SGrammarValue element{
        value.first,   value.bad,
        NoToken,       static_cast<std::uint16_t>((value.flags & ConstantFlags) | Filled | Unkeyed),
        EValue::Other, EValue::Other};
    if (!CanBeTarget(value)) {
        element.flags |= NoTarget;
        element.extra = value.first;
    }
    if (value.kind == EValue::ListLiteral)
        element.flags |= ListInside;
    if (value.kind == EValue::ArrayLiteral)
        element.flags |= ShortInside;
    if (value.kind == EValue::ArrayLiteral || value.kind == EValue::ListLiteral)
        element.flags |= value.flags & ByReference;
    return element;
}

SGrammarValue CPhpRules::KeyedElement(const SGrammarValue& key, const SGrammarValue& value) const
{
    SGrammarValue element = Element(value);
    element.first = key.first;
    element.flags = static_cast<std::uint16_t>((element.flags & ~Unkeyed) | Keyed);
    if (key.flags & ConstantFlags) {
        element.flags |= key.flags & ConstantFlags;
        element.bad = key.bad;
    }
    return element;
}

SGrammarValue CPhpRules::ReferenceElement(const SGrammarValue& value)
{
    Consume(value.first);
    if (!IsPlace(value))
        Report(Code::OutOfPlace, value);
    else
        CheckPlace(value);
    SGrammarValue element = Element(value);
    element.flags |= ByReference | NotConstant;
    element.bad = value.first;
    return element;
}

SGrammarValue CPhpRules::KeyedReferenceElement(const SGrammarValue& key, const SGrammarValue& value)
{
    SGrammarValue element = ReferenceElement(value);
    element.first = key.first;
    element.flags = static_cast<std::uint16_t>((element.flags & ~Unkeyed) | Keyed);
    return element;
}

SGrammarValue CPhpRules::SpreadElement(const SGrammarValue& dots, const SGrammarValue& value)
{
    Needs(704, dots);
    return {dots.first,    value.bad,
            NoToken,       static_cast<std::uint16_t>((value.flags & ConstantFlags) | Filled | Spread),
            EValue::Other, EValue::Other};
}

SGrammarValue CPhpRules::ListElement(const SGrammarValue& list)
{
    m_pending.try_emplace(list.first, Code::ListAsValue);
    return Element(list);
}

SGrammarValue CPhpRules::KeyedListElement(const SGrammarValue& key, const SGrammarValue& list)
{
    m_pending.try_emplace(list.first, Code::ListAsValue);
    return KeyedElement(key, list);
}

SGrammarValue CPhpRules::NextElement(const SGrammarValue& before, const SGrammarValue& element) const
{
    SGrammarValue all = before;
    if (before.flags & LastEmpty)
        all.flags = static_cast<std::uint16_t>((all.flags & ~LastEmpty) | Hole);
    if (!(all.flags & NotConstant) && (element.flags & ConstantFlags))
        all.bad = element.bad;
    if (!(all.flags & NoTarget))
        all.extra = element.extra;
    all.flags |= element.flags;
    return all;
}

SGrammarValue CPhpRules::ArrayValue(const SGrammarValue& first, const SGrammarValue& elements)
{
    SGrammarValue value = elements;
    value.first = first.first;
    value.kind = EValue::ArrayLiteral;
    value.flags = elements.flags & (ConstantFlags | ElementFlags);
    if (elements.flags & Hole)
        m_pending.try_emplace(first.first, Code::HoleInArray);
    return value;
}

SGrammarValue CPhpRules::ListValue(const SGrammarValue& first, const SGrammarValue& elements)
{
    SGrammarValue value = elements;
    value.first = first.first;
    value.kind = EValue::ListLiteral;
    value.flags = elements.flags & (ConstantFlags | ElementFlags);
    return value;
}

SGrammarValue CPhpRules::NoArguments(const SGrammarValue& bracket) const
{
    SGrammarValue value = bracket;
    value.flags = NoneGiven;
    return value;
}

SGrammarValue CPhpRules::CallableSyntax(const SGrammarValue& bracket) const
{
    SGrammarValue value = bracket;
    value.flags = AsCallable;
    return value;
}

SGrammarValue CPhpRules::EndArguments(const SGrammarValue& bracket, const SGrammarValue& arguments) const
{
    SGrammarValue value = arguments;
    value.first = bracket.first;
    return value;
}

SGrammarValue CPhpRules::NextArgument(const SGrammarValue& before, const SGrammarValue& argument)
{
    const bool plain = !(argument.flags & (Named | Unpacked));
    if ((plain && (before.flags & (Named | Unpacked))) ||
        ((argument.flags & Unpacked) && (before.flags & Named)))
        Report(Code::ArgumentOrder, argument);
    SGrammarValue all = before;
    if (!(before.flags & Several))
        all.extra = argument.first;
    if (!(before.flags & NotConstant) && (argument.flags & NotConstant))
        all.bad = argument.bad;
    all.flags |= argument.flags | Several;
    return all;
}

// What is passed may be passed by reference.
SGrammarValue CPhpRules::PlainArgument(const SGrammarValue& value)
{
    if (value.kind == EValue::Element || value.kind == EValue::Property)
        Consume(value.first);
    return {value.first,   value.bad,    0, static_cast<std::uint16_t>(value.flags & ConstantFlags),
            EValue::Other, EValue::Other};
}

SGrammarValue CPhpRules::NamedArgument(const SGrammarValue& name, const SGrammarValue& value)
{
    SGrammarValue argument = PlainArgument(value);
    argument.first = name.first;
    argument.flags |= Named;
    return argument;
}

SGrammarValue CPhpRules::UnpackedArgument(const SGrammarValue& dots, const SGrammarValue& value)
{
    Needs(506, dots);
    return {
        dots.first,    value.bad,    0, static_cast<std::uint16_t>((value.flags & ConstantFlags) | Unpacked),
        EValue::Other, EValue::Other};
}

// Before 8.4 it was no function: one value at the most.
void CPhpRules::ExitArguments(const SGrammarValue& arguments)
{
    if (m_version == 0 || m_version >= 804)
        return;
    if (arguments.flags & (Several | Named | Unpacked | AsCallable))
        Report(Code::OutOfPlace, arguments.flags & Several ? arguments.extra : arguments.first + 1);
}

void CPhpRules::AttributeArguments(const SGrammarValue& arguments)
{
    if (m_version != 0 && m_version < 800)
        return;
    if (arguments.flags & AsCallable)
        Report(Code::ClosureOfNew, arguments);
    else if (arguments.flags & Unpacked)
        Report(Code::ArgumentOrder, arguments);
    CheckConstant(arguments, true);
}

// To older versions it is a comment, which ends with its line.
void CPhpRules::Attribute(const SGrammarValue& start, const SGrammarValue& end)
{
    if (m_version != 0 && m_version < 800 && m_tokens[start.first].line != m_tokens[end.first].line)
        Report(Code::TooNew, start);
}

} // namespace Kesh::CodeAnalyzer
