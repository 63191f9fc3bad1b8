#include "SyntaxParser/SPDocument.h"

#include <array>
#include <memory>
#include <string>

namespace Kesh::SyntaxParser {

namespace {

class CNamedRegion final : public ISynRegion
{
public:
    explicit CNamedRegion(std::wstring name) : m_name(std::move(name)) {}
    std::wstring GetName() const override { return m_name; }

private:
    std::wstring m_name;
};

/// Owns one definition per index of a table and fills the table with them.
template <std::size_t Size> class CTable
{
public:
    CTable(const wchar_t* name, ISynRegion* (&table)[Size])
    {
        for (std::size_t i = 1; i < Size; ++i) {
            m_defs[i] = std::make_unique<CNamedRegion>(std::wstring(name) + L"[" + std::to_wstring(i) + L"]");
            table[i] = m_defs[i].get();
        }
    }

private:
    std::array<std::unique_ptr<CNamedRegion>, Size> m_defs;
};

class CPhpDefRegions : public CDefRegions
{
public:
    CPhpDefRegions()
        : m_tags(L"TagDefs", Php.TagDefs),
          m_tokens(L"TokenDefs", Php.TokenDefs),
          m_extras(L"ExtraDefs", Php.ExtraDefs),
          m_vars(L"VarDefs", Php.VarDefs),
          m_comments(L"CommentDefs", Php.CommentDefs),
          m_classes(L"ClassDefs", Php.ClassDefs),
          m_interfaces(L"InterfaceDefs", Php.InterfaceDefs)
    {
    }

private:
    CTable<PhpTag::Count> m_tags;
    CTable<PhpToken::Count> m_tokens;
    CTable<PhpExtra::Count> m_extras;
    CTable<PhpVar::Count> m_vars;
    CTable<PhpComment::Count> m_comments;
    CTable<PhpClass::Count> m_classes;
    CTable<PhpInterface::Count> m_interfaces;
};

} // namespace

CDefRegions* GetDefRegions()
{
    static CPhpDefRegions regions;
    return &regions;
}

} // namespace Kesh::SyntaxParser
