#include "Grammar/ValueRules.h"

#include "Grammar/ConstantNumbers.h"
#include "Grammar/ConstantValues.h"

namespace Kesh::CodeAnalyzer {

using K = SyntaxParser::EPhpTokenKind;

SGrammarValue CValueRules::VariableValue(const SGrammarValue& variable) const
{
    SGrammarValue value = variable;
    value.flags = NotConstant;
    value.kind = IsThis(variable.first) ? EValue::This : EValue::Variable;
    return value;
}

SGrammarValue CValueRules::NumberValue(const SGrammarValue& number)
{
    m_versions.Number(number);
    SGrammarValue value = number;
    value.kind = EValue::Literal;
    value.extra = TypeOfNumber(Text(number.first));
    return value;
}

SGrammarValue CValueRules::NameValue(const SGrammarValue& name) const
{
    SGrammarValue value = name;
    value.kind = EValue::Name;
    const std::size_t size = Text(name.first).size();
    if (size < 4 || size > 6)
        return value;
    if (IsWord(name.first, L"null") || IsWord(name.first, L"\\null"))
        value.extra = TypeNull;
    else if (IsWord(name.first, L"true") || IsWord(name.first, L"\\true"))
        value.extra = TypeTrue;
    else if (IsWord(name.first, L"false") || IsWord(name.first, L"\\false"))
        value.extra = TypeFalse;
    return value;
}

SGrammarValue CValueRules::MagicValue(const SGrammarValue& constant) const
{
    SGrammarValue value = constant;
    value.kind = EValue::Magic;
    if (IsWord(constant.first, L"__line__"))
        value.extra = TypeInt;
    else if (!IsWord(constant.first, L"__class__") || KnowsClass())
        value.extra = TypeString;
    return value;
}

// Whether the class is the one around: not what a trait is used by, nor what a closure is bound to.
bool CValueRules::KnowsClass() const
{
    const SFunctionScope::EKind kind = m_scopes.functions.back().kind;
    if (kind == SFunctionScope::Closure || kind == SFunctionScope::Arrow)
        return false;
    const auto& classes = m_scopes.classes;
    return classes.empty() ||
           (classes.back().kind != TraitKind && classes.back().depth + 1 >= m_scopes.functions.size());
}

SGrammarValue CValueRules::TextValue(const SGrammarValue& text) const
{
    SGrammarValue value = text;
    value.kind = EValue::Text;
    value.extra = TypeString;
    return value;
}

namespace {

/// 0: not known.
std::uint32_t TypeOfUnary(K op, std::uint32_t operand)
{
    if (op == K::Not)
        return TypeBool;
    if (op != K::Complement)
        return operand & TypeString ? 0U : TypeInt | TypeFloat;
    return operand == TypeString ? TypeString : operand == TypeInt || operand == TypeFloat ? TypeInt : 0U;
}

} // namespace

SGrammarValue CValueRules::Unary(const SGrammarValue& op, const SGrammarValue& operand) const
{
    SGrammarValue value = operand;
    const K kind = Tokens()[op.first].kind;
    const bool isSign = kind == K::Minus || kind == K::Plus;
    value.first = op.first;
    value.kind = EValue::Other;
    value.flags &= NotConstant | HasNew;
    const EKnown known = KnownOf(Tokens(), operand);
    if (isSign && operand.kind == EValue::Literal && (operand.extra & (TypeInt | TypeFloat))) {
        value.kind = EValue::SignedNumber;
        value.bad = operand.first;
    } else if (known != EKnown::Nothing) {
        value.flags |= Folded;
        const bool isArray = Ungrouped(operand).kind == EValue::ArrayLiteral;
        value.extra = isArray && kind != K::Not ? 0 : TypeOfUnary(kind, operand.extra);
        if (kind == K::Not && known != EKnown::Something)
            value.flags |= known == EKnown::True ? Falsy : Truthy;
    } else {
        value.extra = 0;
    }
    return isSign ? value : Worked(value, op.first);
}

// What both sides give is worked out when both are.
SGrammarValue CValueRules::Combined(const SGrammarValue& a, const SGrammarValue& b, std::uint32_t type) const
{
    SGrammarValue value = Binary(a, b);
    if (!(value.flags & (NotConstant | HasNew)) && KnownOf(Tokens(), a) != EKnown::Nothing &&
        KnownOf(Tokens(), b) != EKnown::Nothing) {
        value.flags |= Folded;
        const bool isArray =
            Ungrouped(a).kind == EValue::ArrayLiteral || Ungrouped(b).kind == EValue::ArrayLiteral;
        value.extra = isArray ? 0 : type;
    }
    return value;
}

SGrammarValue CValueRules::Compared(const SGrammarValue& a, const SGrammarValue& b) const
{
    SGrammarValue value = Combined(a, b, 0);
    if ((value.flags & Folded) && IsWorkedOut(a) && IsWorkedOut(b))
        value.extra = Tokens()[b.first - 1].kind == K::Spaceship ? TypeInt : TypeBool;
    return value;
}

// Two strings give a string.
SGrammarValue CValueRules::Bitwise(const SGrammarValue& a, const SGrammarValue& b) const
{
    const bool isKnown = a.extra == b.extra && (a.extra == TypeInt || a.extra == TypeString);
    return Combined(a, b, isKnown ? a.extra : 0);
}

// Numbers; what stands for another type may give either.
SGrammarValue CValueRules::Calculated(const SGrammarValue& a, const SGrammarValue& b) const
{
    SGrammarValue value = Combined(a, b, 0);
    if (value.flags & Folded)
        value.extra = TypeOfCalculation(Tokens(), a, Tokens()[b.first - 1].kind, b);
    return value;
}

// `&&` and `||`: the left side may settle it, so that nobody looks at the right one.
SGrammarValue CValueRules::Logic(const SGrammarValue& a, const SGrammarValue& b, bool settledBy)
{
    const EKnown left = KnownOf(Tokens(), a);
    SGrammarValue value = Binary(a, b);
    if (left == EKnown::Nothing)
        return value;
    const bool isSettled = (left == EKnown::True) == settledBy && left != EKnown::Something;
    if (isSettled || left == EKnown::Something) {
        value = {a.first, a.bad, TypeBool, Folded, EValue::Other, EValue::Other};
        if (isSettled) {
            value.flags |= settledBy ? Truthy : Falsy;
            m_scopes.ForgetLast(b.first);
        }
    } else if (const EKnown right = KnownOf(Tokens(), b); right != EKnown::Nothing) {
        value.extra = TypeBool;
        value.flags |= right == EKnown::Something ? Folded
                       : right == EKnown::True    ? Truthy | Folded
                                                  : Falsy | Folded;
    }
    return Worked(value, b.first - 1);
}

SGrammarValue CValueRules::Coalesced(const SGrammarValue& a, const SGrammarValue& b) const
{
    const EKnown left = KnownOf(Tokens(), a);
    if (left == EKnown::Nothing)
        return Binary(a, b);
    return Chosen(a.first, left == EKnown::Null ? b : a);
}

// One of the values of which an expression has the choice, made before the program runs.
SGrammarValue CValueRules::Chosen(std::uint32_t first, const SGrammarValue& choice) const
{
    const EKnown known = KnownOf(Tokens(), choice);
    SGrammarValue value = choice;
    if (Ungrouped(choice).kind == EValue::ArrayLiteral)
        value.extra = TypeArray;
    value.first = first;
    value.kind = EValue::Other;
    value.flags &= NotConstant | HasNew;
    if (known != EKnown::Nothing)
        value.flags |= known == EKnown::Something ? Folded
                       : known == EKnown::True    ? Folded | Truthy
                                                  : Folded | Falsy;
    return value;
}

// Since 8.5 a cast may be part of a constant.
SGrammarValue CValueRules::CastValue(const SGrammarValue& cast, const SGrammarValue& operand) const
{
    SGrammarValue value = operand;
    value.first = cast.first;
    value.kind = EValue::Other;
    value.flags &= NotConstant | HasNew;
    if (!IsFrom(FeatureOf(EFeature::ConstantCast).since) && !(value.flags & NotConstant)) {
        value.flags |= NotConstant;
        value.bad = cast.first;
    }
    return value;
}

SGrammarValue CValueRules::ClosureValue(const SGrammarValue& first) const
{
    SGrammarValue value = Computed(first);
    value.kind = EValue::Closure;
    return value;
}

// Since 8.5 a closure may be a constant that takes nothing along: not even $this, nor what an arrow function
// would.
SGrammarValue CValueRules::StaticClosure(const SGrammarValue& word, const SGrammarValue& closure) const
{
    SGrammarValue value = ClosureValue(word);
    if (closure.kind != EValue::Closure)
        value.bad = closure.first;
    else if (IsFrom(FeatureOf(EFeature::ConstantClosure).since))
        value.flags = 0;
    return value;
}

// Nested without brackets, it was read from the left once and must not be nested now.
SGrammarValue CValueRules::Ternary(const SGrammarValue& condition, const SGrammarValue& mark,
                                   const SGrammarValue& then, const SGrammarValue& otherwise)
{
    if (Version() >= GoneSince::NestedTernary &&
        (condition.kind == EValue::Ternary || condition.kind == EValue::ShortTernary))
        Report(Code::NestedTernary, mark);
    const EKnown known = KnownOf(Tokens(), condition);
    SGrammarValue value = known == EKnown::Nothing ? Binary(Binary(condition, then), otherwise)
                          : known == EKnown::Something
                              ? Chosen(condition.first, condition)
                              : Chosen(condition.first, known == EKnown::True ? then : otherwise);
    if (known == EKnown::Something)
        value.extra = 0; // nobody here knows which one
    value.kind = EValue::Ternary;
    return Worked(value, mark.first);
}

SGrammarValue CValueRules::ShortTernary(const SGrammarValue& condition, const SGrammarValue& mark,
                                        const SGrammarValue& otherwise)
{
    if (Version() >= GoneSince::NestedTernary && condition.kind == EValue::Ternary)
        Report(Code::NestedTernary, mark);
    const EKnown known = KnownOf(Tokens(), condition);
    const bool isChosen = known == EKnown::True || known == EKnown::Something;
    SGrammarValue value = known == EKnown::Nothing
                              ? Binary(condition, otherwise)
                              : Chosen(condition.first, isChosen ? condition : otherwise);
    if (known == EKnown::Something)
        value.extra = 0;
    value.kind = EValue::ShortTernary;
    return Worked(value, mark.first);
}

SGrammarValue CValueRules::Grouped(const SGrammarValue& bracket, const SGrammarValue& value) const
{
    SGrammarValue group = value;
    group.first = bracket.first;
    group.kind = EValue::Group;
    if (value.kind == EValue::Group)
        return group;
    group.inner = value.kind;
    if (!(value.flags & (NotConstant | HasNew)) && value.kind != EValue::SignedNumber)
        group.bad = value.first;
    return Worked(group, bracket.first);
}

SGrammarValue CValueRules::Joined(const SGrammarValue& quote, const SGrammarValue& parts) const
{
    SGrammarValue value = quote;
    value.kind = EValue::Literal;
    value.flags = parts.flags & NotConstant;
    value.bad = parts.bad;
    if (!value.flags)
        value.extra = TypeString;
    return value;
}

SGrammarValue CValueRules::StringParts(const SGrammarValue& a, const SGrammarValue& b) const
{
    SGrammarValue value = a;
    if (!(a.flags & NotConstant)) {
        value.flags = b.flags;
        value.bad = b.bad;
    }
    return value;
}

// `{` and `$` in a string hold a variable and what belongs to it, no other expression.
void CValueRules::InBraces(const SGrammarValue& value)
{
    if (!m_targets.IsPlace(value))
        Report(Code::OutOfPlace, value);
}

SGrammarValue CValueRules::Dim(const SGrammarValue& base, const SGrammarValue& bracket)
{
    SGrammarValue value = Dim(base, bracket, base);
    value.flags |= NotConstant;
    return value;
}

// What can be looked into. `new` could not before 8.4; a magic constant is no class and no function.
void CValueRules::CheckBase(const SGrammarValue& base, const SGrammarValue& op, EReach reach)
{
    if (base.kind == EValue::NewObject)
        Needs(EFeature::NewChain, op);
    else if (base.kind == EValue::Magic && (reach == EReach::StaticMember || reach == EReach::Call))
        Report(Code::OutOfPlace, op);
    else
        m_versions.Reach(base, op, reach);
    if (reach == EReach::StaticMember && (base.kind == EValue::Group || base.kind == EValue::ArrayLiteral))
        ClassValue(base);
}

SGrammarValue CValueRules::Dim(const SGrammarValue& base, const SGrammarValue& bracket,
                               const SGrammarValue& index)
{
    CheckBase(base, bracket, EReach::Offset);
    SGrammarValue value = Combined(base, index, 0);
    if ((value.flags & Folded) && IsCharacter(base, index))
        value.extra = TypeString;
    value.kind = EValue::Element;
    value.flags |= base.flags & Nullsafe;
    value.inner = RootOf(base);
    return value;
}

// Whether it is a character of a string that is written out.
bool CValueRules::IsCharacter(const SGrammarValue& base, const SGrammarValue& index) const
{
    const std::wstring_view text = Text(base.first);
    if (base.kind != EValue::Text || index.kind != EValue::Literal || index.extra != TypeInt ||
        text.find(L'\\') != std::wstring_view::npos)
        return false;
    const auto place = IntegerOf(Text(index.first));
    return place && *place + 2 < text.size();
}

// Whether writing to what is reached through `base` writes to something that stays.
EValue CValueRules::RootOf(const SGrammarValue& base) const
{
    switch (base.kind) {
    case EValue::Element:
    case EValue::Property: return base.inner;
    case EValue::Group:
        return base.inner == EValue::Name || base.inner == EValue::Literal || base.inner == EValue::Text
                   ? EValue::Name
                   : EValue::Group;
    default: return base.kind;
    }
}

SGrammarValue CValueRules::Property(const SGrammarValue& base, const SGrammarValue& arrow,
                                    const SGrammarValue& name)
{
    CheckBase(base, arrow, EReach::Member);
    SGrammarValue value = base;
    value.kind = EValue::Property;
    value.inner = RootOf(base);
    value.flags &= NotConstant | HasNew | Nullsafe;
    value.extra = 0;
    if (Tokens()[arrow.first].kind == K::NullsafeArrow)
        value.flags |= Nullsafe;
    if (!IsFrom(FeatureOf(EFeature::ConstantProperty).since) && !(value.flags & NotConstant)) {
        value.flags |= NotConstant;
        value.bad = arrow.first;
    }
    if (!(value.flags & NotConstant) && (name.flags & NotConstant)) {
        value.flags |= NotConstant;
        value.bad = name.bad;
    }
    return value;
}

SGrammarValue CValueRules::Call(const SGrammarValue& base, const SGrammarValue& arguments)
{
    CheckBase(base, arguments, EReach::Call);
    if (base.kind == EValue::DynamicMember) {
        m_scopes.Needs(EFeature::ComputedMethod, base.bad);
        m_scopes.pending.Drop(base.bad);
    }
    const bool isNamed =
        (base.kind == EValue::Name || base.kind == EValue::ClassConstant) && !(base.flags & NotConstant);
    SGrammarValue value = Computed(base);
    value.kind = EValue::Call;
    if (isNamed || !(arguments.flags & AsCallable))
        value.bad = arguments.first;
    value.flags |= base.flags & Nullsafe;
    if (arguments.flags & AsCallable) {
        if ((base.flags & Nullsafe) && base.kind == EValue::Property)
            Report(Code::ClosureOfNew, arguments);
        if (isNamed && IsFrom(FeatureOf(EFeature::ConstantCallable).since))
            value.flags &= ~NotConstant;
    }
    return value;
}

SGrammarValue CValueRules::NewValue(const SGrammarValue& word, const SGrammarValue& type) const
{
    SGrammarValue value = word;
    value.kind = EValue::Other;
    const bool constant = type.kind == EValue::Name && IsFrom(FeatureOf(EFeature::ConstantNew).since);
    value.flags = static_cast<std::uint16_t>(constant ? HasNew : NotConstant);
    return value;
}

SGrammarValue CValueRules::NewValue(const SGrammarValue& word, const SGrammarValue& type,
                                    const SGrammarValue& arguments)
{
    SGrammarValue value = NewValue(word, type);
    value.kind = EValue::NewObject;
    if (arguments.flags & AsCallable)
        Report(Code::ClosureOfNew, arguments);
    if (arguments.flags & (NotConstant | Unpacked)) {
        value.flags |= NotConstant;
        value.bad = arguments.bad;
    }
    return value;
}

// Whether a string names the class as its name would.
bool CValueRules::IsClassInText(const SGrammarValue& base) const
{
    const bool isGroup = base.kind == EValue::Group;
    return Ungrouped(base).kind == EValue::Text && !(base.flags & NotConstant) &&
           Tokens()[isGroup ? base.bad : base.first].kind == K::String;
}

SGrammarValue CValueRules::ClassConstant(const SGrammarValue& base, const SGrammarValue& colons,
                                         const SGrammarValue& name)
{
    CheckBase(base, colons, EReach::StaticMember);
    if ((base.kind == EValue::Name || Tokens()[base.first].kind == K::Static) && IsWord(name.first, L"class"))
        Needs(EFeature::ClassName, name);
    SGrammarValue value = base;
    value.kind = EValue::ClassConstant;
    value.extra = 0;
    value.flags &= NotConstant | HasNew;
    const bool isStatic = Tokens()[base.first].kind == K::Static && base.first + 1 == colons.first;
    // A value that is worked out later asks for its class later.
    const bool inClassBody = Class() && Class()->depth == m_scopes.functions.size();
    if ((base.kind == EValue::Name || isStatic) && Function().inBody && !inClassBody)
        m_names.CheckClassWord(base.first);
    if (isStatic) {
        value.flags |= NotConstant;
        value.bad = base.first;
    } else if (base.kind == EValue::Name) {
        value.extra = TypeOfConstant(base.first, name.first);
    } else if (!IsClassInText(base)) {
        value.flags |= NotConstant;
        value.bad = colons.first;
        if (IsWord(name.first, L"class"))
            Needs(EFeature::ClassOfObject, name);
    }
    return value;
}

// A class's name, or a constant that stands before in the class that is open; 0: not known.
std::uint32_t CValueRules::TypeOfConstant(std::uint32_t base, std::uint32_t name) const
{
    const bool isSelf = IsWord(base, L"self");
    if (IsWord(name, L"class"))
        return !(isSelf || IsWord(base, L"parent")) || KnowsClass() ? TypeString : 0U;
    // A parameter's default is worked out later.
    if (m_scopes.classes.empty() || m_scopes.classes.back().depth != m_scopes.functions.size())
        return 0;
    const SClassScope& type = m_scopes.classes.back();
    if (type.constantTypes.empty() || (!isSelf && Tokens().Lower(base) != Tokens().Lower(type.name)))
        return 0;
    const auto found = type.constantTypes.find(std::wstring(Text(name)));
    return found == type.constantTypes.end() ? 0 : found->second;
}

// `(1)::f()` and `new (1)`: what PHP already knows not to be the name of a class.
void CValueRules::ClassValue(const SGrammarValue& value)
{
    const bool isArray = Ungrouped(value).kind == EValue::ArrayLiteral;
    const bool isOther = value.extra != 0 && !(value.extra & TypeString);
    if (KnownOf(Tokens(), value) != EKnown::Nothing && (isArray ? !(value.flags & Unfolded) : isOther))
        Report(Code::NoClassName, value);
}

SGrammarValue CValueRules::StaticProperty(const SGrammarValue& base, const SGrammarValue& colons,
                                          const SGrammarValue& /*name*/)
{
    CheckBase(base, colons, EReach::StaticMember);
    if (base.kind == EValue::Name || Tokens()[base.first].kind == K::Static)
        m_names.CheckClassWord(base.first);
    SGrammarValue value = Computed(base);
    value.kind = EValue::StaticProperty;
    value.bad = colons.first;
    return value;
}

SGrammarValue CValueRules::DynamicMember(const SGrammarValue& base, const SGrammarValue& colons)
{
    SGrammarValue value = StaticProperty(base, colons, base);
    value.kind = EValue::DynamicMember;
    // A method could always be called so; a constant has a name of its own before 8.3.
    if (Version() != 0 && Version() < 803)
        m_scopes.pending.Add(colons.first, Code::TooNew, EFeature::DynamicConstant);
    return value;
}

void CValueRules::ClassReference(const SGrammarValue& name)
{
    m_names.CheckClassWord(name.first);
}

} // namespace Kesh::CodeAnalyzer
