#include "Grammar/FileRules.h"

#include <algorithm>

namespace Kesh::CodeAnalyzer {

void CFileRules::Begin()
{
    m_namespaces = ENamespaces::None;
    m_inNamespaceBraces = m_anyStatement = m_anyCode = false;
    m_useItems.clear();
    m_imports.clear();
    m_declared.clear();
    m_strictTypes = false;
}

// One statement of the file, or of a namespace in braces, is complete.
void CFileRules::TopStatement(const SGrammarValue& statement)
{
    switch (statement.kind) {
    case EValue::Nop: return;
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

void CFileRules::NamespaceStatement(const SGrammarValue& word)
{
    if (m_namespaces == ENamespaces::Braces)
        Report(Code::NamespaceStyles, word);
    else if (m_namespaces == ENamespaces::None && m_anyStatement)
        Report(Code::NamespaceNotFirst, word);
    m_namespaces = ENamespaces::Plain;
    m_anyStatement = m_anyCode = true;
    m_imports.clear();
    m_declared.clear();
}

void CFileRules::BeginNamespace(const SGrammarValue& word)
{
    if (m_inNamespaceBraces)
        Report(Code::NamespaceNested, word);
    else if (m_namespaces == ENamespaces::Plain)
        Report(Code::NamespaceStyles, word);
    else if (m_namespaces == ENamespaces::None && m_anyStatement)
        Report(Code::NamespaceNotFirst, word);
    m_namespaces = ENamespaces::Braces;
    m_inNamespaceBraces = true;
    m_anyStatement = m_anyCode = true;
    m_imports.clear();
    m_declared.clear();
}

void CFileRules::EndNamespace()
{
    m_inNamespaceBraces = false;
    m_imports.clear();
    m_declared.clear();
}

void CFileRules::UseItem(const SGrammarValue& /*name*/, const SGrammarValue& alias)
{
    m_useItems.push_back({alias.first, ImportClass, false});
}

void CFileRules::RetypeUse(EImport import)
{
    m_useItems.back().type = import;
    m_useItems.back().retyped = true;
}

namespace {

/// The last part of a name.
std::wstring_view LastPart(std::wstring_view name)
{
    const std::size_t slash = name.rfind(L'\\');
    return slash == std::wstring_view::npos ? name : name.substr(slash + 1);
}

/// Names of constants differ by case, the others do not.
std::wstring NameKey(EImport type, std::wstring_view name)
{
    return type == ImportConstant ? std::wstring(name) : LowerAscii(name);
}

} // namespace

// An import statement is complete: its names must be free.
void CFileRules::Uses(const SGrammarValue& word, EImport import)
{
    if (import != ImportClass)
        Needs(EFeature::UseFunction, word);
    BeginCodeInNamespace(word.first);
    m_anyStatement = m_anyCode = true;
    for (const SImport& item : m_useItems) {
        const EImport type = item.retyped ? item.type : import;
        const std::wstring key = NameKey(type, LastPart(Text(item.alias)));
        if (type == ImportClass && m_names.IsReservedClassName(key)) {
            Report(Code::ReservedName, item.alias);
            continue;
        }
        const auto [at, isNew] = m_imports.try_emplace({type, key}, item.alias);
        if (!isNew) {
            Report(Code::NameInUse, item.alias, FirstIs(at->second));
            continue;
        }
        const auto declared = m_declared.find({type, key});
        if (declared != m_declared.end())
            Report(Code::NameInUse, item.alias, FirstIs(declared->second));
    }
    m_useItems.clear();
}

void CFileRules::DeclareFunction(std::uint32_t name)
{
    const std::wstring key = Tokens().Lower(name);
    const auto imported = m_imports.find({ImportFunction, key});
    if (imported != m_imports.end()) {
        Report(Code::NameInUse, name, FirstIs(imported->second));
        return;
    }
    const auto [at, isNew] = m_declared.try_emplace({ImportFunction, key}, name);
    if (!isNew)
        Report(Code::FunctionTwice, name, FirstIs(at->second));
}

// A class may stand twice in a file: which one counts is told when the file runs.
void CFileRules::DeclareClass(std::uint32_t name)
{
    const std::wstring key = Tokens().Lower(name);
    const auto imported = m_imports.find({ImportClass, key});
    if (imported != m_imports.end())
        Report(Code::NameInUse, name, FirstIs(imported->second));
    m_declared.try_emplace({ImportClass, key}, name);
}

void CFileRules::Constant(const SGrammarValue& name, const SGrammarValue& value)
{
    CheckConstant(value, true);
    if (IsWord(name.first, L"true") || IsWord(name.first, L"false") || IsWord(name.first, L"null")) {
        Report(Code::ReservedName, name);
        return;
    }
    const auto imported = m_imports.find({ImportConstant, std::wstring(Text(name.first))});
    if (imported != m_imports.end())
        Report(Code::NameInUse, name.first, FirstIs(imported->second));
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
    if (!strict && !IsWord(name.first, L"ticks"))
        return;
    if (value.kind != EValue::Literal && value.kind != EValue::Text) {
        Report(Code::DeclareMisused, value);
        return;
    }
    if (!strict)
        return;
    m_strictTypes = true;
    m_strictTypesWord = name.first;
    const std::wstring_view number = Text(value.first);
    if (number != L"0" && number != L"1")
        Report(Code::DeclareMisused, value);
    else if (m_anyCode || m_scopes.functions.size() > 1)
        Report(Code::DeclareMisused, name);
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
