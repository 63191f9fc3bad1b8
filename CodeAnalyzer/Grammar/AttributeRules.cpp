#include "Grammar/AttributeRules.h"

#include <algorithm>
#include <array>

namespace Kesh::CodeAnalyzer {

namespace {

struct SBuiltinAttribute
{
    std::wstring_view name;
    std::uint8_t targets;
    std::int32_t since;
    const char* text; ///< what it is for; the key of its translation
};
/// Of one with several rows the newest that the version has counts.
constexpr std::array<SBuiltinAttribute, 8> Attributes{
    {{L"attribute", TargetClass, 800, "classes"},
     {L"returntypewillchange", TargetMethod, 801, "methods"},
     {L"allowdynamicproperties", TargetClass, 802, "classes"},
     {L"sensitiveparameter", TargetParameter, 802, "parameters"},
     {L"override", TargetMethod | TargetProperty, 805, "methods and properties"},
     {L"override", TargetMethod, 803, "methods"},
     {L"deprecated", TargetFunction | TargetMethod | TargetClassConstant | TargetConstant | TargetClass, 804,
      "functions, methods and constants"},
     {L"nodiscard", TargetFunction | TargetMethod, 805, "functions and methods"}}};
constexpr std::size_t Longest = 22;

} // namespace

void CAttributeRules::Target(const SGrammarValue& first, std::uint8_t targets)
{
    const auto from = std::lower_bound(m_names.begin(), m_names.end(), first.first) - m_names.begin();
    if (IsFrom(800) && !IsDelayed(from)) {
        std::array<std::uint32_t, Attributes.size()> firsts;
        firsts.fill(NoToken);
        for (std::size_t i = from; i < m_names.size(); ++i)
            Check(m_names[i], firsts, targets);
    }
    m_names.resize(from);
}

// Whether one of them says that the others are looked at when the program asks for them.
bool CAttributeRules::IsDelayed(std::size_t from) const
{
    return IsFrom(805) && std::any_of(m_names.begin() + static_cast<std::ptrdiff_t>(from), m_names.end(),
                                      [&](std::uint32_t token) {
                                          return IsWord(token, L"delayedtargetvalidation") ||
                                                 IsWord(token, L"\\delayedtargetvalidation");
                                      });
}

void CAttributeRules::Declaration(const SGrammarValue& first, const SGrammarValue& declaration)
{
    Target(first, declaration.kind == EValue::FunctionDeclaration ? TargetFunction : TargetClass);
}

void CAttributeRules::Member(const SGrammarValue& first, const SGrammarValue& member)
{
    Target(first, member.kind == EValue::FunctionDeclaration ? TargetMethod
                  : member.kind == EValue::Property          ? TargetProperty
                                                             : TargetClassConstant);
}

void CAttributeRules::Check(std::uint32_t token, std::span<std::uint32_t> firsts, std::uint8_t targets)
{
    const std::wstring_view text = Text(token);
    // An alias may be shorter, a name of the global namespace is its last part.
    if (LastPart(text).size() > Longest)
        return;
    const std::wstring name = m_scopes.imports.ClassAt(token, text);
    const auto known =
        std::find_if(Attributes.begin(), Attributes.end(), [&](const SBuiltinAttribute& attribute) {
            return attribute.name == name && IsFrom(attribute.since);
        });
    if (known == Attributes.end())
        return;
    if (!(known->targets & targets)) {
        SRuleReport report{Code::AttributeTarget, token};
        report.arguments = {{"name", std::wstring(text)},
                            {"targets",
                             {known->text, known->text + std::char_traits<char>::length(known->text)},
                             SArgument::Key}};
        Report(std::move(report));
        return;
    }
    std::uint32_t& first = firsts[static_cast<std::size_t>(known - Attributes.begin())];
    if (first != NoToken) {
        Report(Code::AttributeTwice, token, FirstIs(first));
        return;
    }
    first = token;
    if (known->name == L"allowdynamicproperties")
        CheckDynamicProperties(token);
    if (known->name == L"override" && Class()) {
        auto& members = Class()->members;
        const auto method = std::find_if(members.rbegin(), members.rend(), [](const SMember& member) {
            return member.kind == SMember::Method;
        });
        if (method != members.rend())
            method->isOverride = true;
    }
}

// Only a class that makes objects to which something can be added.
void CAttributeRules::CheckDynamicProperties(std::uint32_t token)
{
    if (m_scopes.declaredClasses.empty())
        return;
    const SDeclaredClass& type = m_scopes.declaredClasses.back();
    if (type.name > token &&
        (type.kind == InterfaceKind || type.kind == TraitKind || (type.modifiers & ModReadonly) ||
         (type.kind == EnumKind && m_scopes.version >= 804))) {
        SRuleReport report{Code::AttributeTarget, token};
        report.arguments = {{"name", std::wstring(Text(token))},
                            {"targets", L"classes that are not readonly", SArgument::Key}};
        Report(std::move(report));
    }
}

} // namespace Kesh::CodeAnalyzer
