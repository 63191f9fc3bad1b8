#include "Grammar/ListRules.h"

namespace Kesh::CodeAnalyzer {

namespace {

constexpr std::uint16_t ConstantFlags = NotConstant | HasNew;
constexpr std::uint16_t ElementFlags = LastEmpty | Hole | Filled | Keyed | Unkeyed | Spread | NoTarget |
                                       ByReference | ListInside | ShortInside | Unfolded;

} // namespace

// Whether the element may be among those that values are assigned to.
bool CListRules::CanBeTarget(const SGrammarValue& grouped) const
{
    const SGrammarValue value = Ungrouped(grouped);
    switch (value.kind) {
    case EValue::Variable:
    case EValue::VariableVariable:
    case EValue::StaticProperty: return true;
    case EValue::Element:
    case EValue::Property: return !(value.flags & Nullsafe) && CTargetRules::Stays(value);
    case EValue::ArrayLiteral:
        if (value.flags & LongArray)
            return false;
        [[fallthrough]];
    case EValue::ListLiteral: {
        const std::uint16_t mixed = value.kind == EValue::ListLiteral ? ShortInside : ListInside;
        return ((value.flags & Filled) || !IsFrom(GoneSince::EmptyList)) &&
               !(value.flags & (Spread | NoTarget | mixed)) &&
               !((value.flags & Keyed) && (value.flags & (Unkeyed | Hole)));
    }
    default: return false;
    }
}

SGrammarValue CListRules::NoElement() const
{
    return {NoToken, NoToken, NoToken, LastEmpty, EValue::Other, EValue::Other};
}

SGrammarValue CListRules::Element(const SGrammarValue& value) const
{
    SGrammarValue element{
        value.first,   value.bad,
        NoToken,       static_cast<std::uint16_t>((value.flags & ConstantFlags) | Filled | Unkeyed),
        EValue::Other, EValue::Other};
    if (!CanBeTarget(value)) {
        element.flags |= NoTarget;
        element.extra = value.first;
    }
    const EValue kind = Ungrouped(value).kind;
    if (kind == EValue::ListLiteral)
        element.flags |= ListInside;
    if (kind == EValue::ArrayLiteral)
        element.flags |= ShortInside;
    if (kind == EValue::ArrayLiteral || kind == EValue::ListLiteral)
        element.flags |= value.flags & ByReference;
    if (!IsWorkedOut(value))
        element.flags |= Unfolded;
    return element;
}

SGrammarValue CListRules::KeyedElement(const SGrammarValue& key, const SGrammarValue& value) const
{
    SGrammarValue element = Element(value);
    element.first = key.first;
    element.flags = static_cast<std::uint16_t>((element.flags & ~Unkeyed) | Keyed);
    if (!IsWorkedOut(key))
        element.flags |= Unfolded;
    if (key.flags & ConstantFlags) {
        element.flags |= key.flags & ConstantFlags;
        element.bad = key.bad;
    }
    return element;
}

SGrammarValue CListRules::ReferenceElement(const SGrammarValue& value)
{
    m_scopes.pending.Drop(value.first, NoToken);
    if (!m_targets.IsPlace(value))
        Report(Code::OutOfPlace, value);
    else if (value.kind == EValue::Call)
        Report(Code::NotAssignable, value);
    else
        m_targets.CheckPlace(value);
    SGrammarValue element = Element(value);
    element.flags |= ByReference | NotConstant;
    element.bad = value.first;
    return element;
}

SGrammarValue CListRules::KeyedReferenceElement(const SGrammarValue& key, const SGrammarValue& value)
{
    SGrammarValue element = ReferenceElement(value);
    element.first = key.first;
    element.flags = static_cast<std::uint16_t>((element.flags & ~Unkeyed) | Keyed);
    return element;
}

SGrammarValue CListRules::SpreadElement(const SGrammarValue& dots, const SGrammarValue& value)
{
    Needs(EFeature::ArraySpread, dots);
    auto flags = static_cast<std::uint16_t>((value.flags & ConstantFlags) | Filled | Spread);
    if (!IsWorkedOut(value))
        flags |= Unfolded;
    else if (Ungrouped(value).kind != EValue::ArrayLiteral && value.extra != 0)
        m_scalarSpread = dots.first;
    return {dots.first, value.bad, NoToken, flags, EValue::Other, EValue::Other};
}

SGrammarValue CListRules::ListElement(const SGrammarValue& list)
{
    m_scopes.pending.Add(list.first, Code::ListAsValue);
    return Element(list);
}

SGrammarValue CListRules::KeyedListElement(const SGrammarValue& key, const SGrammarValue& list)
{
    m_scopes.pending.Add(list.first, Code::ListAsValue);
    return KeyedElement(key, list);
}

// What stands empty is told of at the comma behind it.
SGrammarValue CListRules::NextElement(const SGrammarValue& before, const SGrammarValue& comma,
                                      const SGrammarValue& element)
{
    SGrammarValue all = before;
    if (before.flags & LastEmpty) {
        all.flags = static_cast<std::uint16_t>((all.flags & ~LastEmpty) | Hole);
        m_scopes.pending.Add(comma.first, Code::HoleInArray);
    }
    if (!(all.flags & NotConstant) && (element.flags & ConstantFlags))
        all.bad = element.bad;
    if (!(all.flags & NoTarget))
        all.extra = element.extra;
    all.flags |= element.flags;
    return all;
}

SGrammarValue CListRules::ArrayValue(const SGrammarValue& first, const SGrammarValue& elements)
{
    SGrammarValue value = elements;
    value.first = first.first;
    value.kind = EValue::ArrayLiteral;
    value.flags = elements.flags & (ConstantFlags | ElementFlags);
    if (m_scalarSpread != NoToken && m_scalarSpread > first.first) {
        // PHP puts it together now when it knows all that is in it.
        if (!(elements.flags & (ConstantFlags | Unfolded | Hole)))
            Report(Code::ScalarSpread, m_scalarSpread);
        m_scalarSpread = NoToken;
    }
    return value;
}

SGrammarValue CListRules::ListValue(const SGrammarValue& first, const SGrammarValue& elements)
{
    SGrammarValue value = elements;
    value.first = first.first;
    value.kind = EValue::ListLiteral;
    if (elements.flags & Hole)
        m_scopes.pending.Drop(first.first + 1, NoToken);
    value.flags = elements.flags & (ConstantFlags | ElementFlags);
    return value;
}

SGrammarValue CListRules::NoArguments(const SGrammarValue& bracket) const
{
    SGrammarValue value = bracket;
    value.flags = NoneGiven;
    return value;
}

SGrammarValue CListRules::CallableSyntax(const SGrammarValue& bracket) const
{
    SGrammarValue value = bracket;
    value.flags = AsCallable;
    return value;
}

SGrammarValue CListRules::EndArguments(const SGrammarValue& bracket, const SGrammarValue& arguments) const
{
    SGrammarValue value = arguments;
    value.first = bracket.first;
    return value;
}

SGrammarValue CListRules::NextArgument(const SGrammarValue& before, const SGrammarValue& argument)
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
SGrammarValue CListRules::PlainArgument(const SGrammarValue& value)
{
    if (value.kind == EValue::Element || value.kind == EValue::Property)
        m_scopes.pending.Drop(value.first, NoToken);
    return {value.first,   value.bad,    0, static_cast<std::uint16_t>(value.flags & ConstantFlags),
            EValue::Other, EValue::Other};
}

SGrammarValue CListRules::NamedArgument(const SGrammarValue& name, const SGrammarValue& value)
{
    SGrammarValue argument = PlainArgument(value);
    argument.first = name.first;
    argument.flags |= Named;
    return argument;
}

SGrammarValue CListRules::UnpackedArgument(const SGrammarValue& dots, const SGrammarValue& value)
{
    Needs(EFeature::ArgumentUnpacking, dots);
    return {
        dots.first,    value.bad,    0, static_cast<std::uint16_t>((value.flags & ConstantFlags) | Unpacked),
        EValue::Other, EValue::Other};
}

// Before 8.4 it was no function: one value at the most.
void CListRules::ExitArguments(const SGrammarValue& arguments)
{
    if (arguments.flags & (Several | Named | Unpacked | AsCallable))
        m_scopes.Needs(EFeature::ExitArguments,
                       arguments.flags & Several ? arguments.extra : arguments.first + 1);
}

void CListRules::AttributeArguments(const SGrammarValue& arguments)
{
    if (Version() != 0 && Version() < 800)
        return;
    if (arguments.flags & AsCallable)
        Report(Code::ClosureOfNew, arguments);
    else if (arguments.flags & Unpacked)
        Report(Code::ArgumentOrder, arguments);
    CheckConstant(arguments, true);
}

namespace {

/// Whether code follows in the line.
bool IsCodeBehind(const SGrammarToken& token)
{
    const wchar_t* p = token.text + token.size;
    while (*p == L' ' || *p == L'\t')
        ++p;
    const bool isComment = *p == L'#' || (*p == L'/' && (p[1] == L'/' || p[1] == L'*'));
    return *p != L'\n' && *p != 0 && !isComment;
}

} // namespace

// To older versions it is a comment, which ends with its line.
void CListRules::Attribute(const SGrammarValue& start, const SGrammarValue& end)
{
    if (Tokens()[start.first].line != Tokens()[end.first].line)
        Needs(EFeature::AttributeLines, start);
    else if (IsCodeBehind(Tokens()[end.first]))
        Needs(EFeature::AttributeInLine, start);
}

} // namespace Kesh::CodeAnalyzer
