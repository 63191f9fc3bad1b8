#pragma once

#include "Grammar/Inheritance/DeclarationReader.h"

#include <deque>
#include <string>
#include <unordered_map>

namespace Kesh::CodeAnalyzer {

/// The classes that PHP knows while it compiles a file: its own, and those of the file that come before and
/// whose ancestors it knows. A class with interfaces or traits is put together later.
class CClassTable
{
public:
    /// `scopes` outlives the table.
    explicit CClassTable(const CRuleScopes& scopes) : m_reader(scopes) {}

    /// Null if it is not known. With its members.
    SBoundClass* Find(const std::wstring& key);
    /// A class of the file, which nobody finds yet. The declaration stays where it is.
    SBoundClass& Make(const SDeclaredClass& declaration, std::wstring key, std::wstring name);
    /// From now on it is found, unless another one has its name.
    void Add(SBoundClass& type);
    /// Nothing of that name is ever found.
    void Hide(std::wstring key) { m_classes.insert_or_assign(std::move(key), nullptr); }

    /// Gives a class of the file its members.
    void Read(SBoundClass& type) const;
    /// The ancestors and the abstract methods that it gets from them; both are read.
    static void Inherit(SBoundClass& type, SBoundClass& parent);
    const SSignature& SignatureOf(SBoundMethod& method) const;
    void ReadType(SBoundMember& member) const
    {
        if (!member.type.isSet)
            member.type = m_reader.Type(member);
    }

private:
    SBoundClass* LoadBuiltin(const std::wstring& key);
    static void AddOwnOpen(SBoundClass& type);

    CDeclarationReader m_reader;
    std::deque<SBoundClass> m_all;
    std::unordered_map<std::wstring, SBoundClass*> m_classes;
};

} // namespace Kesh::CodeAnalyzer
