#include "Grammar/TypeRules.h"

#include "Grammar/Inheritance/ClassType.h"
#include "Grammar/TypeText.h"

#include <algorithm>
#include <array>

namespace Kesh::CodeAnalyzer {

namespace {

struct STypeName
{
    std::wstring_view name;
    std::uint32_t type;
    std::int32_t since;
};
constexpr std::array<STypeName, 18> TypeNames{{{L"int", TypeInt, 700},
                                               {L"float", TypeFloat, 700},
                                               {L"string", TypeString, 700},
                                               {L"bool", TypeBool, 700},
                                               {L"false", TypeFalse, 700},
                                               {L"true", TypeTrue, 700},
                                               {L"null", TypeNull, 700},
                                               {L"array", TypeArray, 0},
                                               {L"callable", TypeCallable, 504},
                                               {L"iterable", TypeIterable, 701},
                                               {L"object", TypeObject, 702},
                                               {L"mixed", TypeMixed, 800},
                                               {L"void", TypeVoid, 701},
                                               {L"never", TypeNever, 801},
                                               {L"static", TypeStatic, 800},
                                               {L"traversable", TypeClass | TypeTraversable, 0},
                                               {L"iterator", TypeClass | TypeTraversable, 0},
                                               {L"generator", TypeClass | TypeTraversable, 0}}};

constexpr std::uint32_t Standalone = TypeMixed | TypeVoid | TypeNever;

} // namespace

std::uint32_t TypeOfName(std::wstring_view lower, std::int32_t version)
{
    for (const STypeName& known : TypeNames)
        if (known.name == lower && (version == 0 || version >= known.since))
            return known.type;
    return TypeClass;
}

SGrammarValue CTypeRules::TypeName(const SGrammarValue& name)
{
    std::wstring lower = Tokens().Lower(name.first);
    if (lower.starts_with(L'\\'))
        lower.erase(0, 1);
    const std::uint32_t type = TypeOfName(lower, Version());
    if (type == TypeTrue)
        Needs(EFeature::TrueType, name);
    if (type == TypeClass || type == TypeStatic)
        m_names.CheckClassWord(name.first);
    return {name.first, m_typeNames.Add(name.first), type, 0, EValue::Type, EValue::Other};
}

SGrammarValue CTypeRules::Nullable(const SGrammarValue& mark, const SGrammarValue& type)
{
    if (type.extra & (Standalone | TypeNull))
        Report(Code::TypeNotAllowed, type);
    SGrammarValue result = type;
    result.first = mark.first;
    result.extra |= TypeNull;
    result.flags |= NullMark;
    return result;
}

void CTypeRules::ReportRedundant(std::uint32_t token, SRelatedToken other)
{
    m_isReported = true;
    Report(Code::TypeRedundant, token, other);
}

// Whether the last name stands before in the type that begins with the name at `from`.
void CTypeRules::CheckLastTypeName(std::uint32_t from)
{
    const std::uint32_t first = m_typeNames.FirstOfName(Tokens(), m_typeNames.Count() - 1, from);
    if (first != m_typeNames.Last())
        ReportRedundant(m_typeNames.Last(), FirstIs(first));
}

SGrammarValue CTypeRules::Union(const SGrammarValue& a, const SGrammarValue& b)
{
    constexpr std::uint32_t classes = TypeClass | TypeStatic;
    const std::uint32_t both = a.extra & b.extra & ~classes & ~TypeTraversable;
    const std::uint32_t all = a.extra | b.extra;
    if ((a.extra | b.extra) & Standalone)
        Report(Code::TypeNotAllowed, a.extra & Standalone ? a : b);
    else if (both != 0 || ((all & TypeBool) == TypeBool && (a.extra & TypeBool) && (b.extra & TypeBool)))
        ReportRedundant(b.first, {a.first, "The other type is here"});
    else if ((all & TypeObject) && (all & classes))
        ReportRedundant(b.first, {a.first, "The other type is here"});
    else if ((all & TypeIterable) && (all & (TypeArray)))
        ReportRedundant(b.first, {a.first, "The other type is here"});
    else if ((a.extra & b.extra & classes) && !((a.flags | b.flags) & IsIntersection))
        CheckLastTypeName(a.bad);
    SGrammarValue result = a;
    result.extra = all;
    result.flags = static_cast<std::uint16_t>((a.flags | b.flags) | IsUnion);
    return result;
}

SGrammarValue CTypeRules::Intersection(const SGrammarValue& a, const SGrammarValue& b)
{
    for (const SGrammarValue* part : {&a, &b})
        if (!(part->extra & TypeClass))
            Report(Code::TypeNotAllowed, *part);
    CheckLastTypeName(a.bad);
    SGrammarValue result = a;
    result.extra = a.extra & b.extra & TypeTraversable ? a.extra : TypeClass;
    result.flags = IsIntersection;
    return result;
}

// Both were parts of other types first.
void CTypeRules::CheckLone(std::uint32_t type, std::uint32_t token)
{
    if (type != 0 && !(type & ~(TypeNull | TypeFalse)))
        m_scopes.Needs(EFeature::LoneType, token);
}

// Names that are written otherwise may mean the same class, and what is several classes at once is one of
// them.
void CTypeRules::CheckWhole(const SGrammarValue& type)
{
    if (!(type.flags & (IsUnion | IsIntersection)) || !(type.extra & TypeClass) || m_isReported)
        return;
    std::uint32_t token = type.first;
    SClassType whole = ParseClassType(TypeText(Tokens(), token), Version(), [&](std::wstring_view name) {
        const std::wstring lower = LowerAscii(name);
        return lower == L"self" || lower == L"parent" ? lower : m_scopes.imports.ClassAt(type.first, name);
    });
    if (whole.isUnknown)
        return;
    bool isRedundant = false;
    for (auto& alternative : whole.classes) {
        std::sort(alternative.begin(), alternative.end());
        isRedundant |= std::adjacent_find(alternative.begin(), alternative.end()) != alternative.end();
    }
    for (std::size_t i = 0; i < whole.classes.size(); ++i)
        for (std::size_t j = 0; j < whole.classes.size(); ++j)
            isRedundant |= i != j && std::includes(whole.classes[i].begin(), whole.classes[i].end(),
                                                   whole.classes[j].begin(), whole.classes[j].end());
    if (isRedundant)
        Report(Code::TypeRedundant, type);
}

void CTypeRules::EndType()
{
    m_typeNames.Clear();
    m_isReported = false;
}

void CTypeRules::ParameterType(const SGrammarValue& type)
{
    SFunctionScope& scope = Function();
    scope.hasParameterType = true;
    scope.parameterType = type.extra;
    scope.parameterTypeToken = type.first;
    CheckLone(type.extra, type.first);
    if (type.extra & (TypeVoid | TypeNever))
        Report(Code::TypeNotAllowed, type);
    if (scope.promoting && (type.extra & TypeCallable))
        Report(Code::TypeNotAllowed, type);
    CheckWhole(type);
    EndType();
}

void CTypeRules::ReturnType(const SGrammarValue& type)
{
    SFunctionScope& scope = Function();
    scope.hasReturnType = true;
    scope.returnType = type.extra;
    CheckLone(type.extra, type.first);
    CheckWhole(type);
    EndType();
}

// The type of a property or a class constant.
void CTypeRules::CheckPropertyType(std::uint32_t type, std::uint32_t token)
{
    CheckLone(type, token);
    if (type & (TypeVoid | TypeNever | TypeCallable))
        Report(Code::TypeNotAllowed, token);
    EndType();
}

// A literal must be of its variable's type; whatever else is constant is looked at when the program runs.
void CTypeRules::CheckDefault(std::uint32_t type, const SGrammarValue& value, bool nullAllowed)
{
    const bool isLiteral = value.kind == EValue::Literal || value.kind == EValue::Text ||
                           value.kind == EValue::ArrayLiteral || value.kind == EValue::Name ||
                           value.kind == EValue::SignedNumber || value.kind == EValue::Magic ||
                           value.kind == EValue::ClassConstant || (value.flags & Folded);
    const std::uint32_t given = Ungrouped(value).kind == EValue::ArrayLiteral ? TypeArray : value.extra;
    if (!isLiteral || given == 0 || (value.flags & (NotConstant | HasNew)) || (type & TypeMixed))
        return;
    if ((given & type) || (given == TypeNull && nullAllowed))
        return;
    if ((given == TypeInt && (type & TypeFloat)) || (given == TypeArray && (type & TypeIterable)))
        return;
    Report(Code::DefaultOfOtherType, value);
}

} // namespace Kesh::CodeAnalyzer
