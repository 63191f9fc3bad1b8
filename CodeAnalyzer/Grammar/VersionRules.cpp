#include "Grammar/VersionRules.h"

#include "Grammar/WordVersions.h"

#include <string_view>

namespace Kesh::CodeAnalyzer {

using K = SyntaxParser::EPhpTokenKind;

void CVersionRules::Reach(const SGrammarValue& base, const SGrammarValue& op, EReach reach)
{
    if (Version() != 0 && Version() < 800) [[unlikely]]
        ReachOld(base, op, reach);
}

// What an operator could go on from before 7.0 was a list of cases, and had some gaps until 8.0.
void CVersionRules::ReachOld(const SGrammarValue& base, const SGrammarValue& op, EReach reach)
{
    const EFeature any = reach == EReach::Call ? EFeature::CallOfExpression : EFeature::ExpressionBase;
    switch (base.kind) {
    case EValue::Name:
    case EValue::ClassConstant:
        if (reach == EReach::Offset)
            Needs(EFeature::ConstantOffset, op);
        else if (reach == EReach::Member ||
                 (reach == EReach::StaticMember && base.kind == EValue::ClassConstant))
            Needs(EFeature::ConstantMember, op);
        break;
    case EValue::Magic: Needs(EFeature::MagicOffset, op); break;
    case EValue::Text:
        if (Tokens()[base.first].kind == K::Quote) {
            Needs(EFeature::StringOffset, op);
            break;
        }
        [[fallthrough]];
    case EValue::ArrayLiteral: Needs(reach == EReach::Offset ? EFeature::LiteralOffset : any, op); break;
    case EValue::Call:
        if (reach == EReach::Offset)
            Needs(EFeature::CallOffset, op);
        else if (reach != EReach::Member)
            Needs(any, op);
        break;
    case EValue::Group: ReachFromGroup(base, op, reach); break;
    case EValue::Property:
    case EValue::StaticProperty:
        if (reach == EReach::StaticMember)
            Needs(any, op);
        break;
    case EValue::Element:
        if (reach != EReach::Offset && (base.inner == EValue::Text || base.inner == EValue::ArrayLiteral))
            Needs(any, op);
        else if (reach == EReach::StaticMember && base.inner != EValue::Variable &&
                 base.inner != EValue::This && base.inner != EValue::VariableVariable)
            Needs(any, op);
        break;
    default: break;
    }
}

void CVersionRules::ReachFromGroup(const SGrammarValue& group, const SGrammarValue& op, EReach reach)
{
    const bool isNew = Tokens()[group.first + 1].kind == K::New;
    if (isNew && (reach == EReach::Offset || reach == EReach::Member))
        Needs(EFeature::NewMember, op);
    else
        Needs(reach == EReach::Call ? EFeature::CallOfExpression : EFeature::ExpressionBase, op);
}

void CVersionRules::Number(const SGrammarValue& number)
{
    if (Version() == 0 || Version() >= 801)
        return;
    const std::wstring_view text = Text(number.first);
    const wchar_t letter = text.size() > 1 && text[0] == L'0' ? text[1] | 0x20 : 0;
    if (letter == L'o')
        Needs(EFeature::OctalPrefix, number);
    else if (text.find(L'_') != std::wstring_view::npos)
        Needs(EFeature::NumberSeparator, number);
    else if (letter == L'b')
        Needs(EFeature::BinaryNumber, number);
}

void CVersionRules::OffsetInString(const SGrammarValue& index)
{
    if (Text(index.first).starts_with(L'-'))
        Needs(EFeature::NegativeOffset, index);
}

// Once the label began its line, and nothing but `;` stood behind it.
void CVersionRules::HeredocEnd(const SGrammarValue& label)
{
    if (FeatureOf(EFeature::FlexibleHeredoc).IsIn(Version()))
        return;
    const SGrammarToken& token = Tokens()[label.first];
    const wchar_t* after = token.text + token.size;
    after += *after == L';';
    if (token.column > 0 || (*after != L'\n' && *after != 0))
        Needs(EFeature::FlexibleHeredoc, label);
}

bool CVersionRules::IsReserved(const SGrammarValue& word) const
{
    const K kind = Tokens()[word.first].kind;
    const bool isWord = ClassOf(kind) == SyntaxParser::EPhpTokenClass::Word && kind != K::Enum;
    return (isWord || kind == K::MagicConstant) && ReservedSince(kind) <= Version();
}

void CVersionRules::MemberName(const SGrammarValue& name)
{
    if (Version() != 0 && Version() < 700 && IsReserved(name))
        Needs(EFeature::KeywordMember, name);
}

void CVersionRules::NamespaceName(const SGrammarValue& name)
{
    if (Version() != 0 && Version() < 800 && IsReserved(name))
        Needs(EFeature::NameKeyword, name);
}

void CVersionRules::Operator(const SGrammarValue& op)
{
    if (Tokens()[op.first].kind == K::PowerAssign)
        Needs(EFeature::PowerAssign, op);
}

void CVersionRules::Emptiness(const SGrammarValue& value)
{
    switch (value.kind) {
    case EValue::Variable:
    case EValue::This:
    case EValue::VariableVariable:
    case EValue::Element:
    case EValue::Property:
    case EValue::StaticProperty: break;
    default: Needs(EFeature::EmptyOfValue, value);
    }
}

void CVersionRules::InstanceOf(const SGrammarValue& value)
{
    const bool isWord = value.kind == EValue::Name && value.extra != 0; // true, false or null
    if (isWord || value.kind == EValue::Literal || value.kind == EValue::Text)
        Needs(EFeature::LiteralInstanceof, value);
}

} // namespace Kesh::CodeAnalyzer
