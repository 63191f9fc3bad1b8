#pragma once

#include "Grammar/NameRules.h"
#include "Grammar/RuleSet.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// Namespaces, imports, declarations of the file.
class CFileRules final : public CRuleSet
{
public:
    CFileRules(CRuleScopes& scopes, CNameRules& names) : CRuleSet(scopes), m_names(names) {}
    void Begin();

    /// Of a function or a block.
    void InnerDeclaration(const SGrammarValue& declaration);
    void TopStatement(const SGrammarValue& statement);
    void Halt(const SGrammarValue& word);
    void NamespaceStatement(const SGrammarValue& word);
    void BeginNamespace(const SGrammarValue& word);
    void EndNamespace(const SGrammarValue& brace);
    /// Of a group of imports, what all of its names begin with.
    void UsePrefix(const SGrammarValue& name) { m_usePrefix = name.first; }
    void UseItem(const SGrammarValue& name, const SGrammarValue& alias);
    void RetypeUse(EImport import);
    void Uses(const SGrammarValue& word, EImport import);
    void Constant(const SGrammarValue& name, const SGrammarValue& value);
    void ConstStatement(const SGrammarValue& word);
    void DeclareItem(const SGrammarValue& name, const SGrammarValue& value);
    void EndDeclare(const SGrammarValue& word, const SGrammarValue& statement);
    void EndDeclareBlock(const SGrammarValue& word);

private:
    /// By type of import and name, as its kind is compared.
    using TNames = std::map<std::pair<EImport, std::wstring>, std::uint32_t>;

    void BeginNames(std::uint32_t token, std::uint32_t namespaceName);
    std::wstring FullName(EImport type, const SImport& item) const;
    bool CollidesWithImport(EImport type, const std::wstring& key, std::uint32_t name);
    void DeclareFunction(std::uint32_t name);
    void DeclareClass(std::uint32_t name);
    void CheckNamespaceName(std::uint32_t name);
    void BeginCodeInNamespace(std::uint32_t token);
    /// In front of what has to be first, where nobody sees it.
    SRelatedToken WhatIsFirst() const;

    enum class ENamespaces : std::uint8_t { None, Plain, Braces } m_namespaces = ENamespaces::None;
    bool m_inNamespaceBraces = false;
    bool m_anyStatement = false; ///< one came before that a namespace may not follow
    bool m_anyCode = false;      ///< one before which strict_types may not stand
    std::vector<SImport> m_useItems;
    std::uint32_t m_usePrefix = NoToken;
    TNames m_declared;
    bool m_strictTypes = false;
    std::uint32_t m_strictTypesWord = 0;

    CNameRules& m_names;
};

} // namespace Kesh::CodeAnalyzer
