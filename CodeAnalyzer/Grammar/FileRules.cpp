#include "Grammar/FileRules.h"

#include "Grammar/BuiltinFunctions.h"

#include <algorithm>

namespace Kesh::CodeAnalyzer {

void CFileRules::Begin()
{
    m_namespaces = ENamespaces::None;
    m_inNamespaceBraces = m_anyStatement = m_anyCode = false;
    m_useItems.clear();
    m_usePrefix = NoToken;
    m_declared.clear();
    m_scopes.namespaceName = NoToken;
    m_strictTypes = false;
}

// A namespace of that name begins at a token, where nothing is imported or declared yet.
void CFileRules::BeginNames(std::uint32_t token, std::uint32_t namespaceName)
{
    m_scopes.namespaceName = namespaceName;
    m_scopes.imports.BeginNamespace(token, namespaceName);
    m_declared.clear();
}

// One statement of the file, or of a namespace in braces, is complete.
void CFileRules::TopStatement(const SGrammarValue& statement)
{
    switch (statement.kind) {
    case EValue::Nop: m_anyCode = true; return;
    case EValue::DeclareStatement:
        // Its own rules have been asked.
        BeginCodeInNamespace(NoToken);
        return;
    case EValue::FunctionDeclaration: DeclareFunction(statement.first); break;
    case EValue::ClassDeclaration: DeclareClass(statement.first); break;
    default: break;
    }
    BeginCodeInNamespace(statement.first);
    m_anyStatement = m_anyCode = true;
}

// It is declared when the program gets there, and must not be called what is imported all the same.
void CFileRules::InnerDeclaration(const SGrammarValue& declaration)
{
    const EImport type = declaration.kind == EValue::FunctionDeclaration ? ImportFunction : ImportClass;
    CollidesWithImport(type, Tokens().Lower(declaration.first), declaration.first);
}

// Code stands here: outside of the braces of namespaces there must be none.
void CFileRules::BeginCodeInNamespace(std::uint32_t token)
{
    if (token != NoToken && m_namespaces == ENamespaces::Braces && !m_inNamespaceBraces)
        Report(Code::NamespaceStyles, token);
}

void CFileRules::Halt(const SGrammarValue& word)
{
    if (m_inNamespaceBraces)
        Report(Code::HaltInside, word);
}

void CFileRules::CheckNamespaceName(std::uint32_t name)
{
    if (IsWord(name, L"namespace") && IsFrom(800))
        Report(Code::ReservedName, name);
}

void CFileRules::NamespaceStatement(const SGrammarValue& word)
{
    CheckNamespaceName(word.first + 1);
    if (m_namespaces == ENamespaces::Braces)
        Report(Code::NamespaceStyles, word);
    else if (m_namespaces == ENamespaces::None && m_anyStatement)
        Report(Code::NamespaceNotFirst, word.first, WhatIsFirst());
    m_namespaces = ENamespaces::Plain;
    m_anyStatement = m_anyCode = true;
    BeginNames(word.first, word.first + 1);
}

void CFileRules::BeginNamespace(const SGrammarValue& word)
{
    CheckNamespaceName(word.first + 1);
    if (m_inNamespaceBraces)
        Report(Code::NamespaceNested, word);
    else if (m_namespaces == ENamespaces::Plain)
        Report(Code::NamespaceStyles, word);
    else if (m_namespaces == ENamespaces::None && m_anyStatement)
        Report(Code::NamespaceNotFirst, word.first, WhatIsFirst());
    m_namespaces = ENamespaces::Braces;
    m_inNamespaceBraces = true;
    m_anyStatement = m_anyCode = true;
    const std::uint32_t next = word.first + 1;
    BeginNames(word.first, Tokens()[next].kind == SyntaxParser::EPhpTokenKind::OpenBrace ? NoToken : next);
}

void CFileRules::EndNamespace(const SGrammarValue& brace)
{
    m_inNamespaceBraces = false;
    BeginNames(brace.first, NoToken);
}

void CFileRules::UseItem(const SGrammarValue& name, const SGrammarValue& alias)
{
    m_useItems.push_back({name.first, alias.first, ImportClass, false, {}});
}

void CFileRules::RetypeUse(EImport import)
{
    m_useItems.back().type = import;
    m_useItems.back().retyped = true;
}

std::wstring CFileRules::FullName(EImport type, const SImport& item) const
{
    std::wstring name(Text(item.name));
    if (m_usePrefix != NoToken)
        name = std::wstring(Text(m_usePrefix)) + L'\\' + name;
    if (name.starts_with(L'\\'))
        name.erase(0, 1);
    return NameKey(type, name);
}

// Something of that name is declared, which an import of something else would hide.
bool CFileRules::CollidesWithImport(EImport type, const std::wstring& key, std::uint32_t name)
{
    const auto imported = m_scopes.imports.Names().find({type, key});
    if (imported == m_scopes.imports.Names().end() ||
        imported->second.full == m_scopes.imports.NameHere(type, key))
        return false;
    Report(Code::NameInUse, name, FirstIs(imported->second.alias));
    return true;
}

// An import statement is complete: its names must be free.
void CFileRules::Uses(const SGrammarValue& word, EImport import)
{
    if (import != ImportClass)
        Needs(EFeature::UseFunction, word);
    BeginCodeInNamespace(word.first);
    m_anyStatement = m_anyCode = true;
    for (SImport& item : m_useItems) {
        const EImport type = item.retyped ? item.type : import;
        const std::wstring key = NameKey(type, LastPart(Text(item.alias)));
        if (type == ImportClass && m_names.IsReservedClassName(key)) {
            Report(Code::ReservedName, item.alias);
            continue;
        }
        item.full = FullName(type, item);
        const std::uint32_t alias = item.alias;
        const bool isItself = item.full == m_scopes.imports.NameHere(type, key);
        const auto [at, isNew] = m_scopes.imports.Names().try_emplace({type, key}, std::move(item));
        if (!isNew) {
            Report(Code::NameInUse, alias, FirstIs(at->second.alias));
            continue;
        }
        const auto declared = m_declared.find({type, key});
        if (declared != m_declared.end() && !isItself)
            Report(Code::NameInUse, alias, FirstIs(declared->second));
    }
    m_useItems.clear();
    m_usePrefix = NoToken;
}

void CFileRules::DeclareFunction(std::uint32_t name)
{
    const std::wstring key = Tokens().Lower(name);
    if (CollidesWithImport(ImportFunction, key, name))
        return;
    if (m_scopes.namespaceName == NoToken) {
        const auto since = BuiltinFunctionSince(key);
        if (since && (Version() != 0 ? Version() >= *since : *since == 0)) {
            Report(Code::FunctionOfPhp, name);
            return;
        }
    }
    const auto [at, isNew] = m_declared.try_emplace({ImportFunction, key}, name);
    if (!isNew)
        Report(Code::FunctionTwice, name, FirstIs(at->second));
}

// A class may stand twice in a file: which one counts is told when the file runs.
void CFileRules::DeclareClass(std::uint32_t name)
{
    const std::wstring key = Tokens().Lower(name);
    CollidesWithImport(ImportClass, key, name);
    if (!m_scopes.declaredClasses.empty() && m_scopes.declaredClasses.back().name == name)
        m_scopes.declaredClasses.back().isTop = true;
    m_declared.try_emplace({ImportClass, key}, name);
}

void CFileRules::Constant(const SGrammarValue& name, const SGrammarValue& value)
{
    CheckConstant(value, true);
    if (value.kind == EValue::ArrayLiteral)
        Needs(EFeature::ConstantArray, value);
    if (IsWord(name.first, L"true") || IsWord(name.first, L"false") || IsWord(name.first, L"null")) {
        Report(Code::ReservedName, name);
        return;
    }
    CollidesWithImport(ImportConstant, std::wstring(Text(name.first)), name.first);
    m_declared.try_emplace({ImportConstant, std::wstring(Text(name.first))}, name.first);
}

void CFileRules::ConstStatement(const SGrammarValue& word)
{
    BeginCodeInNamespace(word.first);
    m_anyStatement = m_anyCode = true;
}

void CFileRules::DeclareItem(const SGrammarValue& name, const SGrammarValue& value)
{
    const bool strict = IsWord(name.first, L"strict_types");
    if (IsWord(name.first, L"encoding") && (m_anyStatement || m_scopes.functions.size() > 1))
        Report(Code::DeclareMisused, name);
    const EValue kind = Ungrouped(value).kind;
    if ((kind != EValue::Literal && kind != EValue::Text) || (value.flags & NotConstant)) {
        Report(Code::DeclareMisused, value);
        return;
    }
    if (!strict)
        return;
    m_strictTypes = true;
    m_strictTypesWord = name.first;
    const std::wstring_view number = Text(value.kind == EValue::Group ? value.bad : value.first);
    if (number != L"0" && number != L"1")
        Report(Code::DeclareMisused, value);
    else if (m_anyCode || m_scopes.functions.size() > 1)
        Report(Code::DeclareMisused, name.first, WhatIsFirst());
}

// Nobody sees a byte order mark, whose token has no text.
SRelatedToken CFileRules::WhatIsFirst() const
{
    const bool isMark = Tokens()[0].kind == SyntaxParser::EPhpTokenKind::InlineHtml && Text(0).empty();
    return isMark ? SRelatedToken{0, "A byte order mark stands before the first line"} : SRelatedToken{};
}

// `declare(...)` with the statement that it holds for; a lone `;` says that it holds for the rest of the
// file.
void CFileRules::EndDeclare(const SGrammarValue& /*word*/, const SGrammarValue& statement)
{
    if (m_strictTypes && statement.kind != EValue::Nop)
        Report(Code::DeclareMisused, m_strictTypesWord);
    m_strictTypes = false;
}

void CFileRules::EndDeclareBlock(const SGrammarValue& /*word*/)
{
    if (m_strictTypes)
        Report(Code::DeclareMisused, m_strictTypesWord);
    m_strictTypes = false;
}

} // namespace Kesh::CodeAnalyzer
