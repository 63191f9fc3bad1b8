#include "Grammar/Inheritance/ClassTable.h"

#include "Grammar/Inheritance/BuiltinClasses.h"

namespace Kesh::CodeAnalyzer {

SBoundClass* CClassTable::Find(const std::wstring& key)
{
    const auto found = m_classes.find(key);
    SBoundClass* type = found != m_classes.end() ? found->second : LoadBuiltin(key);
    if (type)
        Read(*type);
    return type;
}

SBoundClass* CClassTable::LoadBuiltin(const std::wstring& key)
{
    auto builtin = ReadBuiltinClass(key);
    if (!builtin)
        return nullptr;
    SBoundClass& type = m_all.emplace_back(std::move(*builtin));
    OwnMembers(type);
    SBoundClass* parent = type.parentKey.empty() ? nullptr : Find(type.parentKey);
    AddOwnOpen(type);
    if (parent)
        Inherit(type, *parent);
    m_classes.try_emplace(key, &type);
    return &type;
}

void CClassTable::Add(SBoundClass& type)
{
    if (!Find(type.key))
        m_classes.try_emplace(type.key, &type);
}

void CClassTable::AddOwnOpen(SBoundClass& type)
{
    for (const SBoundMethod& method : type.methods.all)
        if (method.Is(ModAbstract))
            type.open.push_back(&method);
}

void CClassTable::Read(SBoundClass& type) const
{
    if (type.isRead)
        return;
    m_reader.ReadMembers(type);
    AddOwnOpen(type);
}

void CClassTable::Inherit(SBoundClass& type, SBoundClass& parent)
{
    type.parent = &parent;
    type.parentKey = parent.key;
    type.depth = parent.depth + 1;
    for (const SBoundMethod* method : parent.open)
        if (!type.methods.Find(LowerAscii(method->name)))
            type.open.push_back(method);
}

SBoundClass& CClassTable::Make(const SDeclaredClass& declaration, std::wstring key, std::wstring name)
{
    SBoundClass& type = m_all.emplace_back();
    type.declaration = &declaration;
    type.key = std::move(key);
    type.name = std::move(name);
    type.kind = declaration.kind;
    type.modifiers = declaration.modifiers;
    return type;
}

const SSignature& CClassTable::SignatureOf(SBoundMethod& method) const
{
    if (!method.signature)
        method.signature = m_reader.Signature(method);
    return *method.signature;
}

} // namespace Kesh::CodeAnalyzer
