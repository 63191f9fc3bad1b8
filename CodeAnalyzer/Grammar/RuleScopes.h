#pragma once

#include "Grammar/GrammarValue.h"

#include <cstdint>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

namespace Kesh::CodeAnalyzer {

enum EClassKind : std::uint8_t { ClassKind, InterfaceKind, TraitKind, EnumKind, AnonymousKind };
enum EImport : std::uint8_t { ImportClass, ImportFunction, ImportConstant };

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
    std::uint32_t parent;
    bool hasDefault = false;
};

struct SJump
{
    std::uint32_t token;
    std::uint32_t block;
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

    std::vector<std::uint32_t> parameters; ///< tokens of the variables
    std::set<std::wstring> statics;        ///< static variables, and those that a closure takes along
    std::vector<std::uint32_t> references; ///< those that are passed by reference
    std::uint32_t variadic = 0;            ///< the `...`; 0: none
    bool promoting = false;                ///< the parameter being read becomes a property
    SModifiers promotion;
    std::uint32_t parameterType = 0;
    bool hasParameterType = false;

    std::uint32_t returnType = 0;
    bool hasReturnType = false;
    bool returnNullable = false;
    std::vector<std::uint32_t> emptyReturns;
    std::uint32_t yield = 0; ///< token; 0: no generator

    std::vector<SBlock> blocks{{SBlock::Function, 0}};
    std::uint32_t block = 0;
    std::unordered_map<std::wstring, SJump> labels;
    std::vector<SJump> jumps;
};

struct SClassScope
{
    EClassKind kind = ClassKind;
    std::uint32_t name = 0;
    std::uint16_t modifiers = 0;
    std::size_t depth = 0; ///< functions open around it
    bool hasParent = false;
    bool backed = false;
    std::uint32_t abstractMethod = 0; ///< token; 0: none
    std::set<std::wstring> methods;
    std::set<std::wstring> properties;
    std::set<std::wstring> constants;

    SModifiers member; ///< those of the properties or constants being read
    std::uint32_t memberType = 0;
    bool hasMemberType = false;
};

} // namespace Kesh::CodeAnalyzer
