#pragma once

#include "Grammar/GrammarTokens.h"
#include "Grammar/GrammarValue.h"
#include "Grammar/Imports.h"
#include "Grammar/NameTokens.h"
#include "Grammar/RuleReport.h"
#include "Kesh/CodeAnalyzer/Catalog.h"

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

namespace Kesh::CodeAnalyzer {

enum EClassKind : std::uint8_t { ClassKind, InterfaceKind, TraitKind, EnumKind, AnonymousKind };

/// Modifiers of classes and members.
enum EModifier : std::uint16_t {
    ModPublic = 1 << 0,
    ModProtected = 1 << 1,
    ModPrivate = 1 << 2,
    ModStatic = 1 << 3,
    ModAbstract = 1 << 4,
    ModFinal = 1 << 5,
    ModReadonly = 1 << 6,
    ModVar = 1 << 7,
    ModSet = 1 << 8,

    ModAccess = ModPublic | ModProtected | ModPrivate
};

/// The built-in types of a type or a literal.
enum EType : std::uint32_t {
    TypeInt = 1 << 0,
    TypeFloat = 1 << 1,
    TypeString = 1 << 2,
    TypeFalse = 1 << 3,
    TypeTrue = 1 << 4,
    TypeBool = TypeFalse | TypeTrue,
    TypeNull = 1 << 5,
    TypeArray = 1 << 6,
    TypeCallable = 1 << 7,
    TypeIterable = 1 << 8,
    TypeObject = 1 << 9,
    TypeMixed = 1 << 10,
    TypeVoid = 1 << 11,
    TypeNever = 1 << 12,
    TypeStatic = 1 << 13,
    TypeClass = 1 << 14,
    TypeTraversable = 1 << 15 ///< with TypeClass: a class that a generator is one of
};

struct SModifiers
{
    std::uint16_t set = 0;
    std::uint32_t first = 0; ///< token
    std::uint32_t last = 0;
};

/// What a jump may leave but not enter, or not even leave.
struct SBlock
{
    enum EKind : std::uint8_t { Function, Loop, Switch, Finally } kind;
    bool inLoop = false; ///< it or what surrounds it is one, or a switch
    std::uint32_t defaultWord = NoToken;
    std::uint32_t parent = 0;
    std::uint32_t end = ~0U;   ///< the number of the first block behind it
    std::uint32_t finally = 0; ///< the innermost finally block that it is or stands in; 0: none
    std::uint32_t loops = 0;   ///< loops and switches from there inwards
};

struct SJump
{
    std::uint32_t token;
    std::uint32_t block;
};

/// A member of a class, as its declaration says.
struct SMember
{
    enum EKind : std::uint8_t { Constant, Property, Method } kind;
    std::uint16_t modifiers;
    std::uint32_t name;           ///< token
    std::uint32_t type = NoToken; ///< where its type begins; NoToken: it has none, or is a method
    bool isOverride = false;      ///< an attribute says that it overrides something
};

/// A class that has a name, as its declaration says.
struct SDeclaredClass
{
    EClassKind kind;
    std::uint16_t modifiers;
    bool isTop = false;             ///< declared whatever happens
    bool isLate = false;            ///< what it is made of is put together when the program runs
    std::uint32_t name;             ///< token
    std::uint32_t parent = NoToken; ///< token
    std::vector<SMember> members;
};

struct SFunctionScope
{
    enum EKind : std::uint8_t { File, Function, Method, Closure, Arrow, Hook } kind = File;
    std::uint32_t token = 0;
    bool inClass = false;
    bool hasBody = false;
    bool inBody = false;
    bool byReference = false;
    SModifiers modifiers;

    CNameTokens parameters{CNameTokens::ECase::Differs}; ///< the variables
    std::set<std::wstring> statics;        ///< static variables, and those that a closure takes along
    std::vector<std::uint32_t> references; ///< those that are passed by reference
    std::uint32_t variadic = 0;            ///< the `...`; 0: none
    bool promoting = false;                ///< the parameter being read becomes a property
    SModifiers promotion;
    std::uint32_t parameterType = 0;
    std::uint32_t parameterTypeToken = 0;
    bool hasParameterType = false;
    std::array<std::uint32_t, 2> firstTypes{}; ///< of the first parameters; 0: none

    std::uint32_t returnType = 0;
    bool hasReturnType = false;
    bool returnNullable = false;
    std::vector<std::uint32_t> emptyReturns;
    std::uint32_t yield = 0;       ///< token; 0: no generator
    std::uint32_t valueReturn = 0; ///< token of a return with a value; 0: none

    std::vector<SBlock> blocks{{SBlock::Function}};
    std::uint32_t block = 0;
    std::unordered_map<std::wstring, SJump> labels;
    std::vector<SJump> jumps;
};

struct SClassScope
{
    EClassKind kind = ClassKind;
    std::uint32_t name = 0;
    std::uint16_t modifiers = 0;
    std::size_t depth = 0;          ///< functions open around it
    std::uint32_t parent = NoToken; ///< the name of what it extends
    bool isLate = false;            ///< it has interfaces or traits
    bool backed = false;
    std::uint32_t abstractMethod = 0;              ///< token; 0: none
    std::map<std::wstring, std::uint32_t> methods; ///< tokens by name
    std::map<std::wstring, std::uint32_t> properties;
    std::map<std::wstring, std::uint32_t> constants;

    SModifiers member; ///< those of the properties or constants being read
    std::uint32_t memberType = 0;
    std::uint32_t memberTypeToken = NoToken;
    std::uint32_t constantTypeToken = NoToken;
    bool hasMemberType = false;
    std::vector<SMember> members;
    std::map<std::wstring, std::uint32_t> constantTypes; ///< of those whose value is known
};

/// Holes in arrays, lists among elements, `[]`: right only where something is assigned to them, which is seen
/// later than they are.
class CPendingUses
{
public:
    void Add(std::uint32_t token, std::int32_t code, std::optional<EFeature> feature = {})
    {
        m_uses.try_emplace(token, SUse{code, feature});
    }
    void Drop(std::uint32_t token) { m_uses.erase(token); }
    /// Those from one token up to another are right.
    void Drop(std::uint32_t first, std::uint32_t end)
    {
        if (!m_uses.empty())
            m_uses.erase(m_uses.lower_bound(first), m_uses.lower_bound(end));
    }
    void Clear() { m_uses.clear(); }

private:
    friend class CRuleScopes;
    struct SUse
    {
        std::int32_t code;
        std::optional<EFeature> feature;
    };
    std::map<std::uint32_t, SUse> m_uses; ///< by token
};

/// What all rules share: where in the document the grammar is, and what has been found.
class CRuleScopes
{
public:
    /// `tokens` outlives the scopes.
    explicit CRuleScopes(const CGrammarTokens& documentTokens) : tokens(documentTokens) {}

    /// A new document. `phpVersion` as IGrammarCheck::SetPhpVersion() takes it.
    void Begin(std::int32_t phpVersion);
    /// What nobody has assigned to by the end of the document.
    void ReportPending();
    /// What is recognised from now on was put right by guesses: it breaks no rule that would be worth
    /// telling.
    void Distrust() { m_trusted = false; }
    /// What has been found from the token on, but for what no version of PHP is needed to read, is about a
    /// mistake of another kind.
    void Forget(std::uint32_t from);
    /// What has been found last, from the token on, is in code that PHP does not compile.
    void ForgetLast(std::uint32_t from)
    {
        while (!m_reports.empty() && !m_reports.back().feature && m_reports.back().token >= from)
            m_reports.pop_back();
    }
    bool IsTrusted() const { return m_trusted; }
    const std::vector<SRuleReport>& Reports() const { return m_reports; }

    void Report(std::int32_t code, std::uint32_t token, SRelatedToken related = {}, EFix fix = EFix::None)
    {
        Report({code, token, related, fix});
    }
    void Report(SRuleReport report)
    {
        if (m_trusted)
            m_reports.push_back(std::move(report));
    }
    /// Something stands at the token that only some versions have.
    void Needs(EFeature feature, std::uint32_t token)
    {
        if (!FeatureOf(feature).IsIn(version))
            ReportFeature(feature, token);
    }

    const CGrammarTokens& tokens;
    std::int32_t version = 0;
    std::vector<SFunctionScope> functions; ///< the file's is the first
    std::vector<SClassScope> classes;
    std::vector<SDeclaredClass> declaredClasses; ///< in the order of their ends
    SModifiers modifiers;                        ///< of the declaration being read
    std::uint32_t namespaceName = NoToken; ///< the token that names the namespace; NoToken: the global one
    CImports imports{tokens};
    CPendingUses pending;

private:
    void ReportFeature(EFeature feature, std::uint32_t token);

    bool m_trusted = true;
    std::vector<SRuleReport> m_reports;
};

} // namespace Kesh::CodeAnalyzer
