#pragma once

#include "Grammar/GrammarCodes.h"
#include "Grammar/GrammarTokens.h"
#include "Grammar/GrammarValue.h"
#include "Grammar/NameTokens.h"
#include "Grammar/RuleScopes.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// What a rule of the language found.
struct SRuleReport
{
    std::int32_t code;
    std::uint32_t token;
    std::uint32_t related; ///< a second token; NoToken: none
};
constexpr std::uint32_t NoToken = 0xFFFFFFFF;

/// The rules of PHP beyond its grammar that need no other file. The grammar calls it with what it recognises,
/// in the order in which it does. One document at a time.
class CPhpRules
{
public:
    /// `tokens` outlives the rules.
    explicit CPhpRules(const CGrammarTokens& tokens) : m_tokens(tokens) {}

    /// A new document. `version` as IGrammarCheck::SetPhpVersion() takes it.
    void Begin(std::int32_t version);
    /// The end of the document.
    void Finish();
    /// What is recognised from now on was put right by guesses: it breaks no rule that would be worth
    /// telling.
    void Distrust() { m_trusted = false; }
    const std::vector<SRuleReport>& Reports() const { return m_reports; }

    void Report(std::int32_t code, std::uint32_t token, std::uint32_t related = NoToken);
    void Report(std::int32_t code, const SGrammarValue& value) { Report(code, value.first); }
    /// What begins at `value` came with a version, or went with one (major * 100 + minor).
    void Needs(std::int32_t version, const SGrammarValue& value)
    {
        if (m_version != 0 && m_version < version)
            Report(Code::TooNew, value.first);
    }
    void Gone(std::int32_t version, const SGrammarValue& value)
    {
        if (m_version >= version)
            Report(Code::TooOld, value.first);
    }

    // FileRules.cpp: namespaces, imports, declare.
    void TopStatement(const SGrammarValue& statement);
    void Halt(const SGrammarValue& word);
    void NamespaceStatement(const SGrammarValue& word);
    void BeginNamespace(const SGrammarValue& word);
    void EndNamespace();
    void UseItem(const SGrammarValue& name, const SGrammarValue& alias);
    void RetypeUse(EImport import);
    void Uses(const SGrammarValue& word, EImport import);
    void Constant(const SGrammarValue& name, const SGrammarValue& value);
    void ConstStatement(const SGrammarValue& word);
    void DeclareItem(const SGrammarValue& name, const SGrammarValue& value);
    void EndDeclare(const SGrammarValue& word, const SGrammarValue& statement);
    void EndDeclareBlock(const SGrammarValue& word);

    // FlowRules.cpp: loops, jumps, results.
    void BeginLoop() { OpenBlock(SBlock::Loop); }
    void EndLoop() { CloseBlock(); }
    void BeginSwitch() { OpenBlock(SBlock::Switch); }
    void EndSwitch() { CloseBlock(); }
    void BeginFinally() { OpenBlock(SBlock::Finally); }
    void EndFinally() { CloseBlock(); }
    void DefaultCase(const SGrammarValue& word);
    void Leave(const SGrammarValue& word);
    void Leave(const SGrammarValue& word, const SGrammarValue& depth);
    void Goto(const SGrammarValue& label);
    void Label(const SGrammarValue& label);
    void Return(const SGrammarValue& word);
    void Return(const SGrammarValue& word, const SGrammarValue& value);
    void YieldHere(const SGrammarValue& word);
    void ThrowHere(const SGrammarValue& word);
    void TryAlone(const SGrammarValue& word, const SGrammarValue& catches);
    void CatchType(const SGrammarValue& name);
    void CatchVariable(const SGrammarValue& variable);
    void MatchHead(const SGrammarValue& word, const SGrammarValue& arguments);
    void DefaultArm(const SGrammarValue& word);
    void EndMatch();

    // FunctionRules.cpp: functions, parameters, closures.
    void BeginFunction(const SGrammarValue& word, const SGrammarValue& name);
    void BeginMethod(const SGrammarValue& word, const SGrammarValue& name);
    void BeginHook(const SGrammarValue& name);
    void BeginClosure(const SGrammarValue& word);
    void BeginBody(const SGrammarValue& brace);
    void BeginArrow();
    void NoBody(const SGrammarValue& semicolon);
    void EndFunction();
    void Parameter(const SGrammarValue& variable);
    void ReferenceParameter(const SGrammarValue& variable);
    void Variadic(const SGrammarValue& dots, const SGrammarValue& variable);
    void ParameterType(const SGrammarValue& type);
    void DefaultValue(const SGrammarValue& value);
    void EndParameter();
    void BeginPromotion(const SGrammarValue& modifiers);
    void EndPromotion();
    void BeginParameterHooks(const SGrammarValue& brace);
    void ReturnType(const SGrammarValue& type);
    void LexicalVariable(const SGrammarValue& variable);
    void StaticVariable(const SGrammarValue& variable);
    void StaticValue(const SGrammarValue& value);
    void GlobalVariable(const SGrammarValue& variable);

    // ClassRules.cpp: classes and their members.
    void BeginModifiers() { m_modifiers = {}; }
    void NoModifiers() { m_modifiers = {}; }
    void ClassModifier(const SGrammarValue& word);
    void MemberModifier(const SGrammarValue& word);
    void AnonymousModifiers(const SGrammarValue& word);
    void BeginClass(EClassKind kind, const SGrammarValue& word, const SGrammarValue& name);
    void Extends(const SGrammarValue& name);
    void Implements(const SGrammarValue& name);
    void EnumType(const SGrammarValue& type);
    void EndClass();
    void TraitName(const SGrammarValue& name);
    void TraitUse(const SGrammarValue& word);
    void BeginProperties();
    void BeginProperties(const SGrammarValue& type);
    void Property(const SGrammarValue& variable);
    void Property(const SGrammarValue& variable, const SGrammarValue& value);
    void BeginHooks(const SGrammarValue& variable);
    void BeginHooks(const SGrammarValue& variable, const SGrammarValue& value);
    void ConstantType(const SGrammarValue& type);
    void ClassConstant(const SGrammarValue& name, const SGrammarValue& value);
    void EndConstants() { m_modifiers = {}; }
    void EnumCase(const SGrammarValue& word, const SGrammarValue& name);
    void EnumCase(const SGrammarValue& word, const SGrammarValue& name, const SGrammarValue& value);

    // TypeRules.cpp.
    SGrammarValue TypeName(const SGrammarValue& name);
    SGrammarValue Nullable(const SGrammarValue& mark, const SGrammarValue& type);
    SGrammarValue Union(const SGrammarValue& a, const SGrammarValue& b);
    SGrammarValue Intersection(const SGrammarValue& a, const SGrammarValue& b);

    // ValueRules.cpp: expressions.
    SGrammarValue VariableValue(const SGrammarValue& variable) const;
    SGrammarValue NumberValue(const SGrammarValue& number) const;
    SGrammarValue NameValue(const SGrammarValue& name) const;
    SGrammarValue TextValue(const SGrammarValue& text) const;
    SGrammarValue CastValue(const SGrammarValue& cast, const SGrammarValue& operand) const;
    SGrammarValue ClosureValue(const SGrammarValue& first) const;
    /// A value that only the running program has.
    SGrammarValue Computed(const SGrammarValue& first) const
    {
        return {first.first, first.first, 0, NotConstant, EValue::Other, EValue::Other};
    }
    SGrammarValue Binary(const SGrammarValue& a, const SGrammarValue& b) const
    {
        const bool badLeft = a.flags & (NotConstant | HasNew);
        const auto flags = static_cast<std::uint16_t>((a.flags | b.flags) & (NotConstant | HasNew));
        return {a.first, badLeft ? a.bad : b.bad, 0, flags, EValue::Other, EValue::Other};
    }
    SGrammarValue Unary(const SGrammarValue& op, const SGrammarValue& operand) const;
    SGrammarValue Ternary(const SGrammarValue& condition, const SGrammarValue& mark,
                          const SGrammarValue& then, const SGrammarValue& otherwise);
    SGrammarValue ShortTernary(const SGrammarValue& condition, const SGrammarValue& mark,
                               const SGrammarValue& otherwise);
    SGrammarValue Grouped(const SGrammarValue& bracket, const SGrammarValue& value) const;
    SGrammarValue Joined(const SGrammarValue& quote, const SGrammarValue& parts) const;
    SGrammarValue StringParts(const SGrammarValue& a, const SGrammarValue& b) const;
    SGrammarValue CodeInString(const SGrammarValue& first) const { return Computed(first); }
    void InBraces(const SGrammarValue& value);
    SGrammarValue Dim(const SGrammarValue& base, const SGrammarValue& bracket);
    SGrammarValue Dim(const SGrammarValue& base, const SGrammarValue& bracket, const SGrammarValue& index);
    SGrammarValue Property(const SGrammarValue& base, const SGrammarValue& arrow, const SGrammarValue& name);
    SGrammarValue Call(const SGrammarValue& base, const SGrammarValue& arguments);
    SGrammarValue NewValue(const SGrammarValue& word, const SGrammarValue& type) const;
    SGrammarValue NewValue(const SGrammarValue& word, const SGrammarValue& type,
                           const SGrammarValue& arguments);
    SGrammarValue ClassConstant(const SGrammarValue& base, const SGrammarValue& colons,
                                const SGrammarValue& name);
    SGrammarValue StaticProperty(const SGrammarValue& base, const SGrammarValue& colons,
                                 const SGrammarValue& name);
    SGrammarValue DynamicMember(const SGrammarValue& base, const SGrammarValue& colons);
    void ClassReference(const SGrammarValue& name);

    // WriteRules.cpp: what is written to.
    void Assign(const SGrammarValue& target, const SGrammarValue& op, const SGrammarValue& value);
    void AssignReference(const SGrammarValue& target, const SGrammarValue& op, const SGrammarValue& value);
    void Change(const SGrammarValue& target, const SGrammarValue& op);
    void Target(const SGrammarValue& target);
    void ReferenceTarget(const SGrammarValue& target);
    void ForeachKey(const SGrammarValue& key);
    void UnsetTarget(const SGrammarValue& target);
    void IssetTarget(const SGrammarValue& value);
    void Append(SGrammarValue& value, const SGrammarValue& bracket);

    // ListRules.cpp: arrays and lists, arguments, attributes.
    SGrammarValue ArrayValue(const SGrammarValue& first, const SGrammarValue& elements);
    SGrammarValue ListValue(const SGrammarValue& first, const SGrammarValue& elements);
    SGrammarValue NoElement() const;
    SGrammarValue Element(const SGrammarValue& value) const;
    SGrammarValue KeyedElement(const SGrammarValue& key, const SGrammarValue& value) const;
    SGrammarValue ReferenceElement(const SGrammarValue& value);
    SGrammarValue KeyedReferenceElement(const SGrammarValue& key, const SGrammarValue& value);
    SGrammarValue SpreadElement(const SGrammarValue& dots, const SGrammarValue& value);
    SGrammarValue ListElement(const SGrammarValue& list);
    SGrammarValue KeyedListElement(const SGrammarValue& key, const SGrammarValue& list);
    SGrammarValue NextElement(const SGrammarValue& before, const SGrammarValue& element) const;
    SGrammarValue NoArguments(const SGrammarValue& bracket) const;
    SGrammarValue CallableSyntax(const SGrammarValue& bracket) const;
    SGrammarValue EndArguments(const SGrammarValue& bracket, const SGrammarValue& arguments) const;
    SGrammarValue NextArgument(const SGrammarValue& before, const SGrammarValue& argument);
    SGrammarValue PlainArgument(const SGrammarValue& value);
    SGrammarValue NamedArgument(const SGrammarValue& name, const SGrammarValue& value);
    SGrammarValue UnpackedArgument(const SGrammarValue& dots, const SGrammarValue& value);
    void ExitArguments(const SGrammarValue& arguments);
    void AttributeArguments(const SGrammarValue& arguments);
    void Attribute(const SGrammarValue& start, const SGrammarValue& end);

private:
    std::wstring_view Text(std::uint32_t token) const { return m_tokens.Text(token); }
    bool IsWord(std::uint32_t token, std::wstring_view lower) const;
    bool IsThis(std::uint32_t token) const { return Text(token) == L"$this"; }
    bool IsSuperglobal(std::uint32_t token) const;
    void CheckConstant(const SGrammarValue& value, bool allowNew);
    void CheckClassWord(std::uint32_t token);
    void CheckClassName(std::uint32_t token);
    bool IsReservedClassName(std::wstring_view lower) const;

    SFunctionScope& Function() { return m_functions.back(); }
    SClassScope* Class() { return m_classes.empty() ? nullptr : &m_classes.back(); }
    void OpenBlock(SBlock::EKind kind);
    void CloseBlock();
    void ResolveJumps(const SFunctionScope& scope);
    void CheckReturns(const SFunctionScope& scope);
    void PushFunction(SFunctionScope::EKind kind, std::uint32_t token);
    void AddParameter(std::uint32_t variable);
    void SetReference(const SGrammarValue& word);
    void CheckMethod(std::uint32_t name);
    void CheckMagicMethod(const SFunctionScope& scope);
    bool IsAllowedReturn(std::uint32_t type, std::uint32_t allowed) const;
    void CheckDefault(std::uint32_t type, const SGrammarValue& value, bool nullAllowed);
    void CheckPropertyType(std::uint32_t type, std::uint32_t token);
    void AddProperty(std::uint32_t variable, const SGrammarValue* value);
    void AddConstant(std::uint32_t name);
    void DeclareFunction(std::uint32_t name);
    void DeclareClass(std::uint32_t name);
    void BeginCodeInNamespace(std::uint32_t token);
    void CheckLastTypeName(std::uint32_t from);
    void CheckBase(const SGrammarValue& base, const SGrammarValue& op, bool looksUp);
    EValue RootOf(const SGrammarValue& base) const;
    void Consume(std::uint32_t first, std::uint32_t end = NoToken);
    bool IsPlace(const SGrammarValue& value) const;
    void CheckPlace(const SGrammarValue& target);
    void CheckTarget(const SGrammarValue& target, std::uint32_t op);
    void Destructure(const SGrammarValue& list);
    bool CanBeTarget(const SGrammarValue& value) const;

    const CGrammarTokens& m_tokens;
    std::int32_t m_version = 0;
    bool m_trusted = true;
    std::vector<SRuleReport> m_reports;
    std::vector<SFunctionScope> m_functions;
    std::vector<SClassScope> m_classes;
    std::vector<std::uint32_t> m_matchDefaults; ///< the default arm of each open match; NoToken: none yet
    /// Codes by token: an array with a hole, or a list among the elements of one, or a `[]`: right only where
    /// something is assigned to it, which is seen later.
    std::map<std::uint32_t, std::int32_t> m_pending;
    SModifiers m_modifiers;
    CNameTokens m_typeNames{CNameTokens::ECase::IsOne}; ///< of the type being read

    // The file.
    enum class ENamespaces : std::uint8_t { None, Plain, Braces } m_namespaces = ENamespaces::None;
    bool m_inNamespaceBraces = false;
    bool m_anyStatement = false; ///< one came before that a namespace may not follow
    bool m_anyCode = false;      ///< one before which strict_types may not stand
    struct SImport
    {
        std::uint32_t alias;
        EImport type;
        bool retyped;
    };
    std::vector<SImport> m_useItems;
    /// Names in use in the namespace: of imports and of what is declared, by type of import and lower-case
    /// name.
    std::map<std::pair<EImport, std::wstring>, std::uint32_t> m_imports;
    std::map<std::pair<EImport, std::wstring>, std::uint32_t> m_declared;
    bool m_strictTypes = false;
    std::uint32_t m_strictTypesWord = 0;
};

} // namespace Kesh::CodeAnalyzer
