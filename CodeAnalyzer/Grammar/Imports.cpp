#include "Grammar/Imports.h"

#include <algorithm>

namespace Kesh::CodeAnalyzer {

std::wstring_view LastPart(std::wstring_view name)
{
    const std::size_t slash = name.rfind(L'\\');
    return slash == std::wstring_view::npos ? name : name.substr(slash + 1);
}

std::wstring NameKey(EImport type, std::wstring_view name)
{
    return type == ImportConstant ? std::wstring(name) : LowerAscii(name);
}

void CImports::Begin()
{
    m_parts.clear();
    m_parts.push_back({0, NoToken, {}});
}

void CImports::BeginNamespace(std::uint32_t token, std::uint32_t name)
{
    m_parts.push_back({token, name, {}});
}

const CImports::SPart& CImports::PartAt(std::uint32_t token) const
{
    const auto behind = std::upper_bound(m_parts.begin(), m_parts.end(), token,
                                         [](std::uint32_t at, const SPart& part) { return at < part.token; });
    return behind == m_parts.begin() ? m_parts.front() : *(behind - 1);
}

std::wstring CImports::NameIn(const SPart& part, EImport type, std::wstring_view key) const
{
    return part.name == NoToken ? std::wstring(key)
                                : NameKey(type, m_tokens.Text(part.name)) + L'\\' + std::wstring(key);
}

std::wstring CImports::DeclaredClass(std::uint32_t token) const
{
    return NameIn(PartAt(token), ImportClass, m_tokens.Lower(token));
}

std::wstring CImports::ClassAt(std::uint32_t token, std::wstring_view name) const
{
    const SPart& part = PartAt(token);
    std::wstring key = LowerAscii(name);
    if (key.starts_with(L'\\'))
        return key.substr(1);
    constexpr std::wstring_view relative = L"namespace\\";
    if (key.starts_with(relative))
        return NameIn(part, ImportClass, std::wstring_view(key).substr(relative.size()));
    const std::size_t slash = std::min(key.find(L'\\'), key.size());
    const auto imported = part.imports.find({ImportClass, key.substr(0, slash)});
    if (imported != part.imports.end() && imported->second.alias < token)
        return imported->second.full + key.substr(slash);
    return NameIn(part, ImportClass, key);
}

} // namespace Kesh::CodeAnalyzer
