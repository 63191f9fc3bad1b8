#pragma once

#include "Grammar/GrammarTokens.h"
#include "Grammar/RuleReport.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Kesh::CodeAnalyzer {

enum EImport : std::uint8_t { ImportClass, ImportFunction, ImportConstant };

/// Names of constants differ by case, the others do not: a name as it is compared.
std::wstring NameKey(EImport type, std::wstring_view name);
/// The last part of a name.
std::wstring_view LastPart(std::wstring_view name);

struct SImport
{
    std::uint32_t name;
    std::uint32_t alias;
    EImport type;
    bool retyped;
    std::wstring full; ///< the whole name, as its kind is compared
};

/// The namespaces of a document and what each imports: what a name stands for where it is written.
class CImports
{
public:
    using TImports = std::map<std::pair<EImport, std::wstring>, SImport>;

    /// `tokens` outlives the imports.
    explicit CImports(const CGrammarTokens& tokens) : m_tokens(tokens) {}

    void Begin();
    /// A namespace begins at a token, where nothing is imported yet; `name` is NoToken for the global one.
    void BeginNamespace(std::uint32_t token, std::uint32_t name);
    /// Of the namespace that is open.
    TImports& Names() { return m_parts.back().imports; }
    std::uint32_t NamespaceName() const { return m_parts.back().name; }
    /// What a name declared in the open namespace is called in full.
    std::wstring NameHere(EImport type, std::wstring_view key) const
    {
        return NameIn(m_parts.back(), type, key);
    }

    /// The full name, as it is compared, of a class that is declared at a token.
    std::wstring DeclaredClass(std::uint32_t token) const;
    /// The full name, as it is compared, of the class that a name means at a token.
    std::wstring ClassAt(std::uint32_t token, std::wstring_view name) const;

private:
    struct SPart
    {
        std::uint32_t token;
        std::uint32_t name;
        TImports imports;
    };
    const SPart& PartAt(std::uint32_t token) const;
    std::wstring NameIn(const SPart& part, EImport type, std::wstring_view key) const;

    const CGrammarTokens& m_tokens;
    std::vector<SPart> m_parts{{0, NoToken, {}}};
};

} // namespace Kesh::CodeAnalyzer
