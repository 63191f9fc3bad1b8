#pragma once

#include "Grammar/Inheritance/ClassType.h"
#include "Grammar/RuleScopes.h"

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace Kesh::CodeAnalyzer {

struct SBoundClass;

struct SParameter
{
    SClassType type;
    bool byReference = false;
    bool isOptional = false;
    bool isVariadic = false;
    std::wstring name;
    std::wstring value; ///< its default, as it is written; may be cut short
};

/// What callers of a method go by.
struct SSignature
{
    bool isUnknown = false; ///< cannot be read
    bool byReference = false;
    bool isTentative = false; ///< PHP only warns when the result is another
    std::vector<SParameter> parameters;
    SClassType result;

    std::size_t Required() const;
    bool IsVariadic() const { return !parameters.empty() && parameters.back().isVariadic; }
};

struct SBoundMember
{
    std::uint16_t modifiers = 0;
    std::uint32_t token = NoToken; ///< of its name; NoToken: PHP's own
    std::uint32_t typeToken = NoToken;
    bool isOverride = false; ///< it says that it overrides something
    std::wstring name;       ///< as it is written
    SClassType type;
    const SBoundClass* owner = nullptr;

    bool Is(EModifier modifier) const { return (modifiers & modifier) != 0; }
};

struct SBoundMethod : SBoundMember
{
    std::optional<SSignature> signature;     ///< read when somebody asks
    const SBoundMethod* prototype = nullptr; ///< of a constructor: the abstract one that it must be like
};

/// Members by name, in the order of their declaration.
template <class TMember> struct SBoundMembers
{
    std::vector<TMember> all;
    std::unordered_map<std::wstring, std::uint32_t> places;

    TMember* Find(const std::wstring& key)
    {
        const auto found = places.find(key);
        return found == places.end() ? nullptr : &all[found->second];
    }
    void Add(std::wstring key, TMember member)
    {
        if (places.try_emplace(std::move(key), static_cast<std::uint32_t>(all.size())).second)
            all.push_back(std::move(member));
    }
};

/// A class whose ancestors are all known.
struct SBoundClass
{
    const SDeclaredClass* declaration = nullptr; ///< null: PHP's own
    std::wstring key;                            ///< its full name, as names are compared
    std::wstring parentKey;
    std::wstring name; ///< for messages
    EClassKind kind = ClassKind;
    std::uint16_t modifiers = 0;
    SBoundClass* parent = nullptr;
    std::uint32_t depth = 0;              ///< ancestors
    std::vector<std::wstring> interfaces; ///< all of them; only PHP's own classes have some

    bool isRead = false; ///< the members are there
    SBoundMembers<SBoundMethod> methods;
    SBoundMembers<SBoundMember> properties;
    SBoundMembers<SBoundMember> constants;
    std::vector<const SBoundMethod*> open; ///< abstract methods that it has, own and inherited ones

    bool IsAbstract() const { return kind != ClassKind || (modifiers & ModAbstract); }
    /// Whether it is that class or interface, or comes from it.
    bool IsA(const SBoundClass& other) const;
};

/// `A::f(int $x = 1): string`
std::wstring Written(const SBoundMethod& method);
/// `A::f()`, `A::$p`, `A::C`
std::wstring FullName(const SBoundMember& member, std::wstring_view behind = {});

} // namespace Kesh::CodeAnalyzer
