#include "Markup/HtmlCustomItemsKeeper.h"

#include "Base/CommonString.h"

namespace Kesh::CodeAnalyzer {

using Base::CCommonString;

namespace {

void AddLower(std::set<std::wstring>& set, const std::vector<std::wstring>& names)
{
    for (const std::wstring& name : names)
        set.insert(CCommonString::LowerCaseFast(name));
}

} // namespace

bool CHtmlCustomItemsKeeper::HaveTag(const std::wstring& name) const
{
    return m_tags.contains(CCommonString::LowerCaseFast(name));
}

bool CHtmlCustomItemsKeeper::HaveAttribute(const std::wstring& name) const
{
    return m_attributes.contains(CCommonString::LowerCaseFast(name));
}

void CHtmlCustomItemsKeeper::AddTags(const std::vector<std::wstring>& names)
{
    AddLower(m_tags, names);
}

void CHtmlCustomItemsKeeper::AddAttributes(const std::vector<std::wstring>& names)
{
    AddLower(m_attributes, names);
}

} // namespace Kesh::CodeAnalyzer
